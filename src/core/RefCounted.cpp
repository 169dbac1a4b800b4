// Home of the vtable and the type information of counted objects.
#include <vexa/data/detail/RefCounted.hpp>

namespace vexa::data::detail {

RefCounted::~RefCounted() = default;

} // namespace vexa::data::detail
