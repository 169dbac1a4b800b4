// What the back-end of the example throws and catches, built with hidden visibility as it is.
#include "BackEnd.hpp"

std::vector<Thrower> throwersOfBackEnd() { return AllErrors::throwers(); }

std::vector<bool> caughtByBackEnd(Thrower thrower) { return AllErrors::caughtBy(thrower); }
