#include <vexa/testing/AllocationFunctions.hpp>
