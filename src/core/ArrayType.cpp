#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ArrayType.hpp>
#include <foundation/vexadata/Exception.hpp>

namespace foundation::vexadata {

void detail::typeIsPrimitive(ArrayType type) {
    if (!isPrimitive(type)) {
        raise<MustBePrimitiveTypeException>();
    }
}

bool isSparse(const Array& array) { return static_cast<std::uint32_t>(array.getType()) - 30U < 3U; }

} // namespace foundation::vexadata
