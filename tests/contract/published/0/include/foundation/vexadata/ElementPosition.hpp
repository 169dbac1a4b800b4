// The index chain of an element handle, held in place. An element access through it allocates nothing; a shared chain is
// made only when something needs one.
#pragma once

#include <foundation/vexadata/ReferenceFunctions.hpp>
#include <vexa/data/detail/IndexRules.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace foundation::vexadata::detail {

/// Either up to three indices into an array, or a shared chain. Follows the rules of the shared chain in the same order,
/// and asks the back-end for the same operations. The array is borrowed and never counted: a position is valid while
/// its array lives. Not synchronised.
///
/// The short functions are forced inline: only when a compiler sees a whole access at once does it drop the chain, which
/// is never there, and keep the indices in registers.
class ElementPosition {
public:
    /// A first index into `array`.
    /// @throws CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException
    [[gnu::always_inline]] static ElementPosition first(ArrayImpl* array, std::size_t index) {
        const std::vector<std::size_t>& dimensions = array->getDimensions();
        const vexa::data::MemoryLayout layout = array->getMemoryLayout();
        vexa::data::detail::checkAppend(dimensions, 0, index);
        return ElementPosition(array, dimensions, layout, index);
    }

    /// An element whose position is known, as iterators know it. Whether it may be written was decided when the iterator
    /// was made: nothing happens before a write.
    [[gnu::always_inline]] static ElementPosition at(ArrayImpl* array, std::uint64_t linearIndex) noexcept {
        return ElementPosition(array, linearIndex);
    }

    /// Adopts the one reference that `chain` carries.
    static ElementPosition adopt(ReferenceImpl* chain) noexcept { return ElementPosition(chain); }

    explicit ElementPosition(const std::shared_ptr<ReferenceImpl>& chain) noexcept : chain_(chain.get()) {
        retainChain();
    }
    ElementPosition(const ElementPosition& other) noexcept
        : array_(other.array_),
          dimensions_(other.dimensions_),
          layout_(other.layout_),
          count_(other.count_),
          indices_{other.indices_[0], other.indices_[1], other.indices_[2]},
          chain_(other.chain_) {
        retainChain();
    }
    [[gnu::always_inline]] ElementPosition(ElementPosition&& other) noexcept
        : array_(other.array_),
          dimensions_(other.dimensions_),
          layout_(other.layout_),
          count_(other.count_),
          indices_{other.indices_[0], other.indices_[1], other.indices_[2]},
          chain_(std::exchange(other.chain_, nullptr)) {}
    /// Refers to the place of `other` from now on.
    ElementPosition& operator=(ElementPosition other) noexcept {
        swap(other);
        return *this;
    }
    [[gnu::always_inline]] ~ElementPosition() {
        if (chain_ != nullptr) {
            chain_->release();
        }
    }

    void swap(ElementPosition& other) noexcept {
        std::swap(array_, other.array_);
        std::swap(dimensions_, other.dimensions_);
        std::swap(layout_, other.layout_);
        std::swap(count_, other.count_);
        std::swap(indices_, other.indices_);
        std::swap(chain_, other.chain_);
    }

    /// Appends an index. A shared chain that others hold is copied before. An element whose position is known needs none:
    /// it takes zeros, without effect, and nothing else.
    /// @throws StringIndexMustBeLastException, CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException
    [[gnu::always_inline]] void append(std::size_t index) {
        if (chain_ == nullptr && count_ < capacity) {
            appendInPlace(index);
        } else {
            appendToChain(index);
        }
    }

    /// The array indexed into, borrowed.
    [[gnu::always_inline]] ArrayImpl* array() const {
        return chain_ == nullptr ? array_ : chain_->getArrayImpl();
    }

    [[gnu::always_inline]] void prepareForWrite() const {
        if (chain_ != nullptr) {
            chain_->prepareForWrite();
        } else if (count_ != known) {
            array_->unshare();
        }
    }

    /// The array indexed into, made ready for a write; see the function for chains. A position in place belongs to the
    /// caller's own handle, which outlives the call, so that its indices may be read after the back-end's operation.
    [[gnu::always_inline]] ArrayImpl* arrayForWrite() const {
        if (chain_ != nullptr) {
            return detail::arrayForWrite(*chain_);
        }
        prepareForWrite();
        return array_;
    }

    [[gnu::always_inline]] const std::string& fieldName() const noexcept {
        return chain_ == nullptr ? noFieldName : chain_->stringIndex();
    }

    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    [[gnu::always_inline]] std::size_t linearIndex() const {
        return chain_ == nullptr ? linearIndexInPlace() : chain_->getLinearIndex();
    }

    /// Value of the element, which must be one of an array of `T`.
    template <class T>
    [[gnu::always_inline]] T value() const {
        ArrayImpl* array = this->array();
        return readElement<T>(*array, linearIndex(), fieldName());
    }

    /// Writes the element, which must be one of an array of `T`.
    template <class T>
    [[gnu::always_inline]] void setValue(T value) const {
        ArrayImpl* array = arrayForWrite();
        writeElement<T>(*array, linearIndex(), fieldName(), std::move(value));
    }

    /// Whether the element was known without indices: an iterator stands on it, or it is a field.
    bool isFixed() const noexcept { return chain_ == nullptr ? count_ == known : chain_->indexCount() == 0; }

    /// Whether a shared chain leads there, on which the array can be another one at the next call.
    bool hasChain() const noexcept { return chain_ != nullptr; }

    /// The shared chain; made at the first call, and the position stays with it from then on.
    VEXADATA_API std::shared_ptr<ReferenceImpl> chain() const;

private:
    static constexpr std::uint32_t capacity = 3;
    static constexpr std::uint32_t known =
        capacity + 1; // in place of a count: the position is in the first index

    [[gnu::always_inline]] ElementPosition(ArrayImpl* array, const std::vector<std::size_t>& dimensions,
                                           vexa::data::MemoryLayout layout, std::size_t index) noexcept
        : array_(array), dimensions_(&dimensions), layout_(layout), count_(1), indices_{index, 0, 0} {}
    [[gnu::always_inline]] ElementPosition(ArrayImpl* array, std::uint64_t linearIndex) noexcept
        : array_(array), count_(known), indices_{linearIndex, 0, 0} {}

    explicit ElementPosition(ReferenceImpl* chain) noexcept : chain_(chain) {}

    void retainChain() const noexcept {
        if (chain_ != nullptr) {
            chain_->retain();
        }
    }
    VEXADATA_API ReferenceImpl& makeChain() const;

    [[gnu::always_inline]] void appendInPlace(std::size_t index) {
        vexa::data::detail::checkAppend(*dimensions_, count_, index);
        indices_[count_++] = index;
    }
    VEXADATA_API void appendToChain(std::size_t index);

    [[gnu::always_inline]] std::size_t linearIndexInPlace() const {
        if (count_ == known) {
            return indices_[0];
        }
        if (dimensions_->size() == 2) {
            if (count_ == 1) {
                spread();
            }
            if (layout_ == vexa::data::MemoryLayout::COLUMN_MAJOR) {
                return vexa::data::detail::rules::inMatrix(*dimensions_, indices_[0], indices_[1]);
            }
        } else if (count_ < dimensions_->size()) {
            raise<NotEnoughIndicesProvidedException>();
        }
        return positionOf(*dimensions_, indices_[0], indices_[1], indices_[2], layout_);
    }
    /// For up to three dimensions. Out of line and by value: a caller's indices need no address.
    VEXADATA_API static std::size_t positionOf(const std::vector<std::size_t>& dimensions, std::size_t first,
                                               std::size_t second, std::size_t third,
                                               vexa::data::MemoryLayout layout);
    /// The rewrite stays, as in a shared chain, so that a further index follows the spread ones.
    [[gnu::always_inline]] void spread() const {
        vexa::data::detail::spreadSingleIndex(*dimensions_, indices_);
        count_ = 2;
    }

    ArrayImpl* array_ = nullptr;
    const std::vector<std::size_t>* dimensions_ = nullptr;
    vexa::data::MemoryLayout layout_ = vexa::data::MemoryLayout::COLUMN_MAJOR;
    mutable std::uint32_t count_ = 0;
    mutable std::uint64_t indices_[capacity] = {0, 0, 0};
    mutable ReferenceImpl* chain_ = nullptr; // owns one reference
};

} // namespace foundation::vexadata::detail
