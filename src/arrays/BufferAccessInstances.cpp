// The instances that the library exports, so that clients compile none.
#include <foundation/vexadata/BufferAccess.hpp>

namespace foundation::vexadata {

#define VEXADATA_ACCESS template
#include <foundation/vexadata/detail/BufferAccessInstances.inc>

} // namespace foundation::vexadata
