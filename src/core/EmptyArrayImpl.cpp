// The array of default-constructed handles.
#include <foundation/vexadata/detail/Access.hpp>
#include <vexa/data/impl/EmptyArrayImpl.hpp>

// Operations that no correct caller asks of an empty array consist of a bare `throw;`. With no exception in
// flight it ends the process where the mistake is made (docs/decisions.md).

namespace vexa::data::impl {

namespace {

const std::vector<std::size_t>& zeroByZero() {
    static const auto& dimensions =
        *new std::vector<std::size_t>{0, 0}; // never destroyed, as the array below
    return dimensions;
}

/// Made when the library is loaded, because default constructors of handles are `noexcept` and could not
/// report that memory is out.
[[maybe_unused]] const bool madeWhenLoaded = (EmptyArrayImpl::processWide(), zeroByZero(), true);

} // namespace

EmptyArrayImpl::EmptyArrayImpl() noexcept = default;
EmptyArrayImpl::~EmptyArrayImpl() = default;

const std::shared_ptr<ArrayImpl>& EmptyArrayImpl::processWide() noexcept {
    // Never destroyed: handles with static storage may be destroyed after it.
    static const auto& empty = *new std::shared_ptr<ArrayImpl>(
        foundation::vexadata::detail::Access::createSharedPtr<ArrayImpl>(new EmptyArrayImpl));
    return empty;
}

ArrayImpl* EmptyArrayImpl::sharedCopy() const { return new EmptyArrayImpl; }
detail::IteratorImpl* EmptyArrayImpl::beginIterator(void*, bool) { throw; }
detail::IteratorImpl* EmptyArrayImpl::endIterator(void*, bool) { throw; }
ArrayType EmptyArrayImpl::getType() const { return ArrayType::UNKNOWN; }
MemoryLayout EmptyArrayImpl::getMemoryLayout() const { return MemoryLayout::NONE; }
detail::ReferenceImpl* EmptyArrayImpl::createElementReference(std::size_t, const std::string&, bool) {
    throw;
}
const std::vector<std::size_t>& EmptyArrayImpl::getDimensions() const { return zeroByZero(); }
std::size_t EmptyArrayImpl::getNumberOfElements() const { return 0; }
const std::size_t* EmptyArrayImpl::getJc() const { throw; }
const std::size_t* EmptyArrayImpl::getIr() const { throw; }
std::size_t EmptyArrayImpl::getRows() const { throw; }
std::size_t EmptyArrayImpl::getCols() const { throw; }
bool EmptyArrayImpl::isEmpty() const { return true; }
std::uint64_t EmptyArrayImpl::getArrayID() const { return 0; }
void EmptyArrayImpl::unshare() {}
bool EmptyArrayImpl::isEqual(const ArrayImpl*) const { return true; }

} // namespace vexa::data::impl
