// Arrays of primitive elements, among them those that were made from buffers in row-major order.
#pragma once

#include "World.hpp"

#include <cstring>
#include <type_traits>
#include <vector>

namespace vexa::fuzz {

template <class T>
class Primitive : public Model {
public:
    using Stored = std::conditional_t<std::is_same_v<T, bool>, unsigned char, T>; // no vector of bits

    Primitive(Dims dims, std::vector<Stored> elements)
        : Model(detail::arrayTypeOf<T>, std::move(dims)), elements_(std::move(elements)) {}

    static Slot make(World& world) {
        const Dims dims = world.input.dims(300);
        std::vector<Stored> elements(elementCount(dims));
        if (world.input.flip()) {
            return {world.factory.createArray<T>(dims), plain<Primitive>(normalized(dims), elements)};
        }
        for (std::size_t k = 0; k < elements.size() && k < 20; ++k) {
            elements[k] = world.input.value<T>();
        }
        Array array = world.factory.createArray<T>(dims, elements.begin(), elements.end());
        return {std::move(array), plain<Primitive>(normalized(dims), std::move(elements))};
    }

    std::unique_ptr<Model> clone() const override { return std::make_unique<Primitive>(*this); }

    void act(World& world, Array& array) override {
        Input& input = world.input;
        switch (input.below(9)) {
        case 0:
            return read(input, array);
        case 1:
            return writeTyped(input, array);
        case 2:
            return writeUntyped(input, array);
        case 3:
            return writeNamed(input, array);
        case 4:
            return writeIterator(input, array);
        case 5:
            return fill(input, array);
        case 6:
            return exchangeBuffer(world, array);
        case 7:
            return writeView(input, array);
        default:
            return convertWrongly(input, array);
        }
    }

    void writeThrough(World& world, Reference<Array> held) override {
        Input& input = world.input;
        const Indices indices = input.indices(dims_);
        const T value = input.value<T>();
        const auto assign = [&](auto& ref) { ref = value; };
        switch (input.below(3)) {
        case 0:
            operation = "primitive inside: write through a typed reference";
            return wrote(indices, value, [&] {
                Reference<TypedArray<T>> typed(held);
                atIndices(typed, indices, assign);
            });
        case 1:
            operation = "primitive inside: write through an untyped reference";
            return wrote(indices, value, [&] { atIndices(held, indices, assign); });
        default:
            operation = "primitive inside: fill";
            for (T& element : getWritableElements<T>(held)) {
                element = value;
            }
            elements_.assign(elements_.size(), value);
        }
    }

    Outcome writeScalar(const Indices& indices, double value) override {
        if constexpr (std::is_same_v<T, double>) {
            const Place at = place(indices);
            if (at.error == nullptr) {
                elements_[at.position] = value;
            }
            return at.error;
        } else {
            return Model::writeScalar(indices, value);
        }
    }

protected:
    void checkElements(const Array& array) const override {
        const TypedArray<T> typed = array;
        std::size_t k = 0;
        for (const T& element : typed) {
            require(k < elements_.size() && same(element, elements_[k]), "another value");
            ++k;
        }
        require(k == elements_.size(), "the walk is short");
    }
    Likeness compareElements(const Model& other) const override {
        const auto& right = static_cast<const Primitive&>(other);
        Likeness worst = Likeness::equal;
        Indices indices(dims_.size(), 0);
        for (std::size_t k = 0; k < elements_.size(); ++k, advance(indices)) {
            const Stored& a = elements_[place(indices).position];
            const Stored& b = right.elements_[right.place(indices).position];
            const bool doubtful = a != a && b != b && same(a, b);
            worst = std::max(worst, a == b     ? Likeness::equal
                                    : doubtful ? Likeness::doubtful
                                               : Likeness::different);
        }
        return worst;
    }
    bool rowMajor() const override { return rowMajor_; }

    const std::vector<Stored>& elements() const { return elements_; }

private:
    static bool same(const Stored& a, const Stored& b) { return std::memcmp(&a, &b, sizeof a) == 0; }
    void advance(Indices& indices) const {
        for (std::size_t k = 0; k < dims_.size() && ++indices[k] == dims_[k]; ++k) {
            indices[k] = 0;
        }
    }

    /// Performs what should write the element at `indices`.
    template <class F>
    void wrote(const Indices& indices, const T& value, F perform) {
        const Place at = place(indices);
        if (succeeds(at.error, perform)) {
            elements_[at.position] = value;
        }
    }

    void read(Input& input, const Array& array) {
        operation = "primitive: read an element";
        const Indices indices = input.indices(dims_);
        const Place at = place(indices);
        const auto compare = [&](auto& ref) {
            const T value = ref;
            require(same(value, elements_[at.position]), "another value");
        };
        if (input.flip()) {
            const TypedArray<T> typed = array;
            requireOutcome(at.error, outcomeOf([&] { atIndices(typed, indices, compare); }));
        } else {
            requireOutcome(at.error, outcomeOf([&] { atIndices(array, indices, compare); }));
        }
    }
    void writeTyped(Input& input, Array& array) {
        operation = "primitive: write through indices";
        const Indices indices = input.indices(dims_);
        const T value = input.value<T>();
        as<TypedArray<T>>(array, [&](TypedArray<T>& typed) {
            wrote(indices, value, [&] { atIndices(typed, indices, [&](auto& ref) { ref = value; }); });
        });
    }
    void writeUntyped(Input& input, Array& array) {
        operation = "primitive: write through an untyped handle";
        const Indices indices = input.indices(dims_);
        const T value = input.value<T>();
        wrote(indices, value, [&] { atIndices(array, indices, [&](auto& ref) { ref = value; }); });
    }
    void writeNamed(Input& input, Array& array) {
        operation = "primitive: write through a named reference";
        const Indices indices = input.indices(dims_);
        const T value = input.value<T>();
        const auto assign = [&](auto& ref) {
            Reference<T> named(ref);
            named = value;
        };
        if (input.flip()) {
            wrote(indices, value, [&] { atIndices(array, indices, assign); });
        } else {
            as<TypedArray<T>>(array, [&](TypedArray<T>& typed) {
                wrote(indices, value, [&] { atIndices(typed, indices, assign); });
            });
        }
    }
    void writeIterator(Input& input, Array& array) {
        operation = "primitive: write through an iterator";
        if (isEmpty()) {
            return;
        }
        const std::size_t position = input.below(elements_.size());
        const T value = input.value<T>();
        as<TypedArray<T>>(array, [&](TypedArray<T>& typed) {
            auto it = typed.begin() + static_cast<std::ptrdiff_t>(position);
            require(same(*it, elements_[position]), "another value");
            *it = value;
            require(typed.end() - it == static_cast<std::ptrdiff_t>(elements_.size() - position), "distance");
        });
        elements_[position] = value;
    }
    void fill(Input& input, Array& array) {
        operation = "primitive: fill in a loop";
        const T value = input.value<T>();
        as<TypedArray<T>>(array, [&](TypedArray<T>& typed) {
            for (T& element : typed) {
                element = value;
            }
        });
        elements_.assign(elements_.size(), value);
    }

    /// Releases the buffer and makes another array over it, perhaps in the other layout.
    void exchangeBuffer(World& world, Array& array) {
        operation = "primitive: release the buffer";
        const bool shared = array.isShared();
        TypedArray<T> typed(std::move(array));
        buffer_ptr<T> buffer = typed.release();
        for (std::size_t k = 0; k < elements_.size(); ++k) {
            require(same(buffer[k], elements_[k]), "another value in the buffer");
        }
        if (shared || !typed.isEmpty()) {
            check(typed);
        } else {
            require(typed.getDimensions() == Dims{0, 0} || isEmpty(), "dimensions of a released array");
        }
        operation = "primitive: make an array from a buffer";
        rowMajor_ = world.input.flip();
        const auto layout =
            rowMajor_ ? vexa::data::MemoryLayout::ROW_MAJOR : vexa::data::MemoryLayout::COLUMN_MAJOR;
        array = world.factory.createArrayFromBuffer<T>(dims_, std::move(buffer), layout);
    }

    void writeView(Input& input, Array& array) {
        operation = "primitive: write through a view";
        constexpr std::size_t rank = 3;
        Dims extents = dims_;
        extents.resize(rank, 1);
        const std::size_t i = input.below(extents[0] + 1);
        const std::size_t j = input.below(extents[1] + 1);
        const std::size_t k = input.below(extents[2] + 1);
        const T value = input.value<T>();
        const bool inside = i < extents[0] && j < extents[1] && k < extents[2];
        const Outcome wanted = dims_.size() > rank ? thrown<NotEnoughIndicesProvidedException>
                               : inside            ? nullptr
                                                   : thrown<EArrayIndexOutOfRange>;
        as<TypedArray<T>>(array, [&](TypedArray<T>& typed) {
            if (succeeds(wanted, [&] { writableView<rank>(typed)(i, j, k) = value; })) {
                elements_[resolve(extents, rowMajor_, {i, j, k}).position] = value;
            }
        });
    }
    void convertWrongly(Input& input, Array& array) {
        operation = "primitive: use as an array of another kind";
        using Wrong = std::conditional_t<std::is_same_v<T, double>, float, double>;
        requireOutcome(thrown<InvalidArrayTypeException>, outcomeOf([&] { TypedArray<Wrong>{array}; }));
        requireOutcome(thrown<InvalidArrayTypeException>, outcomeOf([&] { StructArray{array}; }));
        if (!isEmpty()) {
            const Indices indices = input.validIndices(dims_);
            requireOutcome(thrown<TypeMismatchException>,
                           outcomeOf([&] { atIndices(array, indices, [](auto& ref) { ref = Wrong(1); }); }));
            requireOutcome(thrown<CantAssignArrayToThisArrayException>,
                           outcomeOf([&] { atIndices(array, indices, [](auto& ref) { ref = Array(); }); }));
        }
    }

    std::vector<Stored> elements_;
    bool rowMajor_ = false;
};

} // namespace vexa::fuzz
