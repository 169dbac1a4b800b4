// Tests of kinds that may throw.
#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Exception.hpp>

namespace foundation::vexadata {

void detail::typeIsPrimitive(ArrayType type) {
    if (!isPrimitive(type)) {
        raise<MustBePrimitiveTypeException>();
    }
}

} // namespace foundation::vexadata
