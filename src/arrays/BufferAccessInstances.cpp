#include <foundation/vexadata/BufferAccess.hpp>

namespace foundation::vexadata {

#define VEXADATA_ACCESS template
#include <foundation/vexadata/detail/BufferAccessInstances.inc>

} // namespace foundation::vexadata
