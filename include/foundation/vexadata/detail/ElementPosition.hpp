// The index chain of an element handle, held in place. An element access through it allocates nothing; a
// shared chain is made only when something needs one.
#pragma once

#include <foundation/vexadata/detail/HeldError.hpp>
#include <foundation/vexadata/detail/InPlaceClass.hpp>
#include <foundation/vexadata/detail/ReferenceFunctions.hpp>
#include <vexa/data/detail/IndexRules.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace foundation::vexadata::detail {

/// Either up to three indices into an array, or a shared chain. Follows the rules of the shared chain in the
/// same order, and asks the back-end for the same operations. The array is borrowed and never counted: a
/// position is valid while its array lives. Not synchronised.
///
/// The short functions are forced inline: only when a compiler sees a whole access at once does it drop the
/// chain, which is never there, and keep the indices in registers. Conditions of the fast branch carry the hint
/// that the other one is never taken, so that compilers spill the sums of a loop in that one alone. The hint
/// stands on the condition itself: on the result of a function it would not reach the parts of an `&&`.
class ElementPosition {
public:
    /// A first index into `array`.
    /// @throws CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException
    VEXADATA_INLINE static ElementPosition first(ArrayImpl* array, std::size_t index) {
        const Shape shape = askedForFirst(array, index);
        if (shape.way == Way::NONE) {
            raiseFirst(shape.dimensions, index);
        }
        return ElementPosition(array, &shape.dimensions, shape.way, 1, index);
    }

    /// The same into an array of elements `T`. In a matrix of a class that is recognised nothing is asked,
    /// and nothing can fail before the element is read or written.
    template <class T>
    VEXADATA_INLINE static ElementPosition firstOf(ArrayImpl* array, std::size_t index) {
        if constexpr (InPlaceClass<T>::exists) {
            if (__builtin_expect_with_probability(
                    InPlaceClass<T>::recognises(*array) && inPlaceOf<T>(array).rows != 0, 1, 1.0)) {
                return ElementPosition(array, nullptr, Way::IN_PLACE, 1, index);
            }
        }
        return first(array, index);
    }

    /// The same into an array of any kind. In a matrix of the most usual kinds nothing is asked.
    VEXADATA_INLINE static ElementPosition firstOfAny(ArrayImpl* array, std::size_t index) {
        return __builtin_expect(isPlainMatrix<double>(*array) || isPlainMatrix<char16_t>(*array), 1)
                   ? ElementPosition(array, nullptr, Way::PLAIN, 1, index)
                   : first(array, index);
    }

    /// An element of the array that the element of `chain` holds, everything on the way made private. In
    /// place when it is the field of a record of a recognised class.
    /// @throws NotEnoughIndicesProvidedException when the element holds no array; index errors of either
    /// level
    VEXADATA_API static ElementPosition inside(std::shared_ptr<ReferenceImpl>& chain, std::size_t index);

    /// An element whose position is known, as iterators know it. Whether it may be written was decided when
    /// the iterator was made: nothing happens before a write.
    VEXADATA_INLINE static ElementPosition at(ArrayImpl* array, std::uint64_t linearIndex) noexcept {
        return ElementPosition(array, nullptr, Way::OTHER, known, linearIndex);
    }

    /// Adopts the one reference that `chain` carries.
    static ElementPosition adopt(ReferenceImpl* chain) noexcept { return ElementPosition(chain); }

    explicit ElementPosition(const std::shared_ptr<ReferenceImpl>& chain) noexcept : chain_(chain.get()) {
        retainChain();
    }
    ElementPosition(const ElementPosition& other) noexcept
        : array_(other.array_),
          dimensions_(other.dimensions_),
          way_(other.way_),
          count_(other.count_),
          indices_{other.indices_[0], other.indices_[1], other.indices_[2]},
          chain_(other.chain_) {
        retainChain();
    }
    VEXADATA_INLINE ElementPosition(ElementPosition&& other) noexcept
        : array_(other.array_),
          dimensions_(other.dimensions_),
          way_(other.way_),
          count_(other.count_),
          indices_{other.indices_[0], other.indices_[1], other.indices_[2]},
          chain_(std::exchange(other.chain_, nullptr)) {}
    /// Refers to the place of `other` from now on.
    ElementPosition& operator=(ElementPosition other) noexcept {
        swap(other);
        return *this;
    }
    VEXADATA_INLINE ~ElementPosition() {
        if (chain_ != nullptr) {
            chain_->release();
        }
    }

    void swap(ElementPosition& other) noexcept {
        std::swap(array_, other.array_);
        std::swap(dimensions_, other.dimensions_);
        std::swap(way_, other.way_);
        std::swap(count_, other.count_);
        std::swap(indices_, other.indices_);
        std::swap(chain_, other.chain_);
    }

    /// Appends an index. A shared chain that others hold is copied before. An element whose position is known
    /// needs none: it takes zeros, without effect, and nothing else.
    /// @throws StringIndexMustBeLastException, CantIndexIntoEmptyArrayException,
    /// TooManyIndicesProvidedException
    VEXADATA_INLINE void append(std::size_t index) {
        if (chain_ == nullptr && count_ < capacity) {
            if ((count_ != 1 || way_ >= Way::OTHER) && !takesFurther(array_, dimensions_, count_, index)) {
                raise<TooManyIndicesProvidedException>();
            }
            indices_[count_++] = index;
        } else {
            chain_ = longerChain(parts(), index);
            way_ = Way::OTHER;
        }
    }

    /// The array indexed into, borrowed.
    VEXADATA_INLINE ArrayImpl* array() const {
        return chain_ == nullptr ? array_ : isInside() ? *place() : chain_->getArrayImpl();
    }

    VEXADATA_INLINE void prepareForWrite() const {
        if (chain_ != nullptr) {
            end().prepareForWrite();
        } else if (count_ != known) {
            array_->unshare();
        }
    }

    /// The array indexed into, made ready for a write; see the function for chains. A position in place
    /// belongs to the caller's own handle, which outlives the call, so that its indices may be read after the
    /// back-end's operation.
    VEXADATA_INLINE ArrayImpl* arrayForWrite() const {
        if (chain_ != nullptr) {
            return detail::arrayForWrite(end());
        }
        prepareForWrite();
        return array_;
    }

    VEXADATA_INLINE const std::string& fieldName() const noexcept {
        return chain_ == nullptr || isInside() ? noFieldName : chain_->stringIndex();
    }

    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    VEXADATA_INLINE std::size_t linearIndex() const {
        if (chain_ != nullptr) {
            return end().getLinearIndex();
        }
        if (count_ == known) {
            return indices_[0];
        }
        return isInMatrix() ? indexInMatrix() : keepRewrite(resolve(parts())).index;
    }

    /// Value of the element, which must be one of an array of `T`.
    template <class T>
    VEXADATA_INLINE T value() const {
        if constexpr (isPrimitiveElement<T>) {
            if (__builtin_expect_with_probability(way_ == Way::IN_PLACE && chain_ == nullptr && count_ <= 2,
                                                  1, 1.0)) {
                return *addressInPlace<T>();
            }
        } else if constexpr (std::is_same_v<T, String>) {
            if (__builtin_expect_with_probability(way_ == Way::IN_PLACE && chain_ == nullptr && count_ <= 2,
                                                  1, 1.0)) {
                return readElement<T>(*array_, indexInPlace<T>(), noFieldName);
            }
        }
        if (count_ == 1) { // the rewrite stays
            if (isInMatrix()) {
                indexInMatrix();
            } else if (chain_ == nullptr) {
                keepRewrite(resolve(parts()));
            }
        }
        Outcome<T> outcome = chain_ == nullptr && count_ == 2
                                 ? readByTwo<T>(array_, dimensions_, way_, indices_[0], indices_[1])
                                 : readAsked<T>(array_, dimensions_, way_, count_, indices_[0], indices_[1],
                                                indices_[2], chain_);
        if (outcome.error != nullptr) {
            rethrowHeldError(outcome.error);
        }
        return std::move(outcome.value);
    }

    /// Writes the element, which must be one of an array of `T`.
    template <class T>
    VEXADATA_INLINE void setValue(T value) const {
        if constexpr (isPrimitiveElement<T>) {
            if (__builtin_expect_with_probability(way_ == Way::IN_PLACE && chain_ == nullptr && count_ <= 2,
                                                  1, 1.0)) {
                *addressInPlace<T>() = value;
                return;
            }
        }
        if (isInMatrix()) {
            array_->unshare();
            writeElement<T>(*array_, indexInMatrix(), noFieldName, std::move(value));
            return;
        }
        const Target target = keepRewrite(resolveForWrite(parts()));
        writeElement<T>(*target.array, target.index, *target.fieldName, std::move(value));
    }

    /// Whether it is known that `indexInPlace` tells the position: in a matrix of the recognised class.
    VEXADATA_INLINE bool isInPlace() const noexcept {
        return way_ == Way::IN_PLACE && chain_ == nullptr && count_ <= 2;
    }
    /// The position in an array of elements `T`.
    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    template <class T>
    VEXADATA_INLINE std::size_t indexInPlace() const {
        const auto& matrix = inPlaceOf<T>(array_);
        if (count_ == 1) {
            spread(matrix.rows, matrix.columns);
        }
        if (__builtin_expect(indices_[0] >= matrix.rows || indices_[1] >= matrix.columns, 0)) {
            raise<EArrayIndexOutOfRange>();
        }
        return indices_[0] + indices_[1] * matrix.rows;
    }

    /// The element itself when it is known to be reached in place: of a matrix of a recognised class with
    /// elements `T`. Null otherwise, and when it is not there.
    template <class T>
    VEXADATA_INLINE T* tryInPlace() const noexcept {
        return isInPlace() ? inPlaceOf<T>(array_).element(count_, indices_[0], indices_[1]) : nullptr;
    }
    /// The same where the kind of the array was not known when the position was made.
    template <class T>
    VEXADATA_INLINE T* tryRecognised(bool forWrite) const noexcept {
        if (chain_ != nullptr) {
            return way_ == insideOf(arrayTypeOf<T>) ? tryInside<T>(forWrite) : nullptr;
        }
        return way_ < Way::OTHER && count_ <= 2 && InPlaceClass<T>::recognises(*array_)
                   ? inPlaceOf<T>(array_).element(count_, indices_[0], indices_[1])
                   : nullptr;
    }

    /// Whether the element was known without indices: an iterator stands on it, or it is a field.
    bool isFixed() const noexcept {
        return chain_ == nullptr ? count_ == known : !isInside() && chain_->indexCount() == 0;
    }

    /// Whether a shared chain leads there, on which the array can be another one at the next call.
    bool hasChain() const noexcept { return chain_ != nullptr; }

    /// The shared chain; made at the first call, and the position stays with it from then on.
    VEXADATA_API std::shared_ptr<ReferenceImpl> chain() const;

private:
    static constexpr std::uint64_t capacity = 3;
    static constexpr std::uint64_t known =
        capacity + 1; // in place of a count: the position is in the first index

    /// How the element is reached while the indices are in place. As wide as a count: compilers compare two
    /// neighbouring halves of a word at once, and wait for both to be written.
    enum class Way : std::uint64_t {
        IN_PLACE,        ///< a matrix of the class recognised for these elements; nothing was asked so far
        NONE,            ///< no first index is possible; never the way of a position
        PLAIN,           ///< as IN_PLACE, of some recognised class of plain values
        MATRIX,          ///< a column-major matrix
        OTHER,           ///< plus the layout: any other array, and elements whose position is known
        INSIDE = 1 << 16 ///< plus the type: a matrix in a field, see `inside`
    };

    // Inside a field the chain leads to the field, and other members have a meaning of their own: the place
    // of the field's pointer, the index, and the extents that its array had when the position was made. In an
    // array of another kind or shape the index means nothing. For whatever is not done in place, `end` makes
    // the chain into the array.

    /// The count inside a field once the element was reached: further indices do not move it then.
    static constexpr std::uint64_t resolved = 2;
    static constexpr Way insideOf(ArrayType type) noexcept {
        return static_cast<Way>(static_cast<std::uint64_t>(Way::INSIDE) + static_cast<std::uint64_t>(type));
    }
    bool isInside() const noexcept { return way_ >= Way::INSIDE; }
    /// In the room of the dimensions.
    ArrayImpl* const* place() const noexcept { return reinterpret_cast<ArrayImpl* const*>(dimensions_); }
    template <class T>
    VEXADATA_INLINE T* tryInside(bool forWrite) const noexcept {
        const ArrayImpl* const array = *place();
        if (!InPlaceClass<T>::recognises(*array)) {
            return nullptr;
        }
        const auto& matrix = inPlaceOf<T>(array);
        if (matrix.rows != indices_[1] || matrix.columns != indices_[2]) {
            return nullptr;
        }
        T* const element = matrix.element(1, indices_[0], 0);
        if (element != nullptr) {
            count_ = resolved;
        }
        return forWrite && array->referenceCount() != 1 ? nullptr : element;
    }
    /// The chain to the element.
    /// @throws TypeMismatchException, EArrayIndexOutOfRange when the field holds another kind of array by now
    ReferenceImpl& end() const { return isInside() ? settled() : *chain_; }
    [[gnu::cold]] VEXADATA_API ReferenceImpl& settled() const;

    /// A position without ownership, passed by value: its address never escapes, and it stays in registers.
    struct Parts {
        ArrayImpl* array;
        const std::vector<std::size_t>* dimensions;
        Way way;
        std::uint64_t count;
        std::uint64_t indices[capacity];
        ReferenceImpl* chain;
    };
    /// What the operations of an array are asked with, and the indices to go on with.
    struct Target {
        ArrayImpl* array;
        std::uint64_t index;
        const std::string* fieldName;
        std::uint64_t count;
        std::uint64_t first;
        std::uint64_t second;
    };
    struct Shape {
        const std::vector<std::size_t>& dimensions;
        Way way;
    };

    VEXADATA_INLINE ElementPosition(ArrayImpl* array, const std::vector<std::size_t>* dimensions, Way way,
                                    std::uint64_t count, std::uint64_t index) noexcept
        : array_(array), dimensions_(dimensions), way_(way), count_(count), indices_{index, 0, 0} {}
    /// Adopts the one reference that the chain carries.
    explicit ElementPosition(ReferenceImpl* chain) noexcept : chain_(chain) {}
    explicit ElementPosition(const Parts& parts) noexcept
        : array_(parts.array),
          dimensions_(parts.dimensions),
          way_(parts.way),
          count_(parts.count),
          indices_{parts.indices[0], parts.indices[1], parts.indices[2]},
          chain_(parts.chain) {}

    VEXADATA_INLINE Parts parts() const noexcept {
        return {array_, dimensions_, way_, count_, {indices_[0], indices_[1], indices_[2]}, chain_};
    }
    /// A single index into a matrix is rewritten as two. That stays, as in a shared chain, so that a further
    /// index follows them.
    VEXADATA_INLINE const Target& keepRewrite(const Target& target) const noexcept {
        if (chain_ == nullptr) {
            count_ = target.count;
            indices_[0] = target.first;
            indices_[1] = target.second;
        }
        return target;
    }

    /// Makes one index into a row or column two.
    /// @throws NotEnoughIndicesProvidedException
    VEXADATA_INLINE void spread(std::size_t rows, std::size_t columns) const {
        if (rows == 1) {
            indices_[1] = indices_[0];
            indices_[0] = 0;
        } else if (columns != 1) {
            raise<NotEnoughIndicesProvidedException>();
        }
        count_ = 2;
    }

    // In a matrix of a class that is recognised.

    template <class T>
    VEXADATA_INLINE static bool isPlainMatrix(const ArrayImpl& array) noexcept {
        return InPlaceClass<T>::recognises(array) && inPlaceOf<T>(&array).rows != 0;
    }
    template <class T>
    VEXADATA_INLINE static const auto& inPlaceOf(const ArrayImpl* array) noexcept {
        return static_cast<const typename InPlaceClass<T>::Base*>(array)->inPlace();
    }
    template <class T>
    VEXADATA_INLINE T* addressInPlace() const {
        return inPlaceOf<T>(array_).data + indexInPlace<T>();
    }

    // In an array that is asked. What is out of line takes no address of a position.

    /// NONE when there may be no such first index.
    [[gnu::noinline]] static Shape askedForFirst(const ArrayImpl* array, std::size_t index) noexcept {
        const std::vector<std::size_t>& dimensions = array->getDimensions();
        const vexa::data::MemoryLayout layout = array->getMemoryLayout();
        const bool isMatrix = dimensions.size() == 2;
        if ((!isMatrix || dimensions[0] == 0 || dimensions[1] == 0) && !takesFirst(dimensions, index)) {
            return {dimensions, Way::NONE};
        }
        return {dimensions,
                isMatrix && layout == vexa::data::MemoryLayout::COLUMN_MAJOR ? Way::MATRIX : wayOf(layout)};
    }
    static Way wayOf(vexa::data::MemoryLayout layout) noexcept {
        return static_cast<Way>(static_cast<std::uint64_t>(Way::OTHER) + static_cast<std::uint64_t>(layout));
    }
    static vexa::data::MemoryLayout layoutOf(Way way) noexcept {
        return way < Way::OTHER
                   ? vexa::data::MemoryLayout::COLUMN_MAJOR
                   : static_cast<vexa::data::MemoryLayout>(static_cast<std::uint64_t>(way) -
                                                           static_cast<std::uint64_t>(Way::OTHER));
    }
    VEXADATA_API static bool takesFirst(const std::vector<std::size_t>& dimensions,
                                        std::size_t index) noexcept;
    /// @throws CantIndexIntoEmptyArrayException, TooManyIndicesProvidedException
    [[noreturn, gnu::cold]] VEXADATA_API static void raiseFirst(const std::vector<std::size_t>& dimensions,
                                                                std::size_t index);
    [[gnu::cold]] VEXADATA_API static bool takesFurther(const ArrayImpl* array,
                                                        const std::vector<std::size_t>* dimensions,
                                                        std::uint64_t count, std::size_t index) noexcept;

    VEXADATA_INLINE bool isInMatrix() const noexcept {
        return way_ == Way::MATRIX && count_ <= 2 && chain_ == nullptr;
    }
    /// @throws NotEnoughIndicesProvidedException, EArrayIndexOutOfRange
    VEXADATA_INLINE std::size_t indexInMatrix() const {
        const std::size_t* extents = dimensions_->data();
        if (count_ == 1) {
            spread(extents[0], extents[1]);
        }
        if (indices_[0] >= extents[0] || indices_[1] >= extents[1]) {
            raise<EArrayIndexOutOfRange>();
        }
        return indices_[0] + indices_[1] * extents[0];
    }

    /// @throws index errors
    [[gnu::cold]] VEXADATA_API static Target resolve(Parts position);
    /// The same after everything on the way was made ready for a write.
    [[gnu::cold]] VEXADATA_API static Target resolveForWrite(Parts position);
    static std::uint64_t indexOf(Parts& position);
    static Target targetOf(Parts position);
    static Target settledTarget(Parts position);
    static Target targetOf(ReferenceImpl& chain, ArrayImpl* array);

    /// Without exceptions: compilers keep what lives across a call that may throw in memory.
    template <class T>
    struct Outcome {
        T value;
        void* error; // of holdError; null after a success
    };
    /// With few arguments and nothing cold: this is how arrays are read that no handle recognises.
    template <class T>
    [[gnu::noinline]] static Outcome<T> readByTwo(ArrayImpl* array,
                                                  const std::vector<std::size_t>* dimensions, Way way,
                                                  std::uint64_t row, std::uint64_t column) noexcept {
        if (way != Way::MATRIX) {
            return readAsked<T>(array, dimensions, way, 2, row, column, 0, nullptr);
        }
        try {
            const std::size_t index = vexa::data::detail::rules::inMatrix(*dimensions, row, column);
            return {readElement<T>(*array, index, noFieldName), nullptr};
        } catch (...) {
            return {T(), holdError()};
        }
    }
    template <class T>
    [[gnu::noinline, gnu::cold]] static Outcome<T> readAsked(
        ArrayImpl* array, const std::vector<std::size_t>* dimensions, Way way, std::uint64_t count,
        std::uint64_t first, std::uint64_t second, std::uint64_t third, ReferenceImpl* chain) noexcept {
        try {
            const Target target = resolve({array, dimensions, way, count, {first, second, third}, chain});
            return {readElement<T>(*target.array, target.index, *target.fieldName), nullptr};
        } catch (...) {
            return {T(), holdError()};
        }
    }

    void retainChain() const noexcept {
        if (chain_ != nullptr) {
            chain_->retain();
        }
    }
    VEXADATA_API ReferenceImpl& makeChain() const;
    /// The chain of `position` with one more index, in its place: the reference to `position.chain` goes over
    /// to the result.
    [[gnu::cold]] VEXADATA_API static ReferenceImpl* longerChain(Parts position, std::size_t index);
    void appendToChain(std::size_t index);

    ArrayImpl* array_ = nullptr;
    const std::vector<std::size_t>* dimensions_ = nullptr; // null in place
    mutable Way way_ = Way::OTHER;
    mutable std::uint64_t count_ = 0;
    mutable std::uint64_t indices_[capacity] = {0, 0, 0};
    mutable ReferenceImpl* chain_ = nullptr; // owns one reference
};

} // namespace foundation::vexadata::detail
