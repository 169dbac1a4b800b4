#include "Dimensions.hpp"

namespace vexa::client {

const Dimensions& dimensionsOfScalars = *new Dimensions{1, 1};
const Dimensions& dimensionsOfNothing = *new Dimensions{0, 0};

} // namespace vexa::client
