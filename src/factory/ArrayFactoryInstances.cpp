// The instances that the library exports, so that clients compile none.
#include <foundation/vexadata/ArrayFactory.hpp>

namespace foundation::vexadata {

#define VEXADATA_CREATORS template
#include <foundation/vexadata/detail/ArrayFactoryInstances.inc>

} // namespace foundation::vexadata
