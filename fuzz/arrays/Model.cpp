#include "Model.hpp"

#include "World.hpp"

namespace vexa::fuzz {

namespace {

using vexa::data::MemoryLayout;

Outcome appendError(const Dims& dims, const Indices& indices) {
    if (elementCount(dims) == 0) {
        return thrown<CantIndexIntoEmptyArrayException>;
    }
    for (std::size_t k = dims.size(); k < indices.size(); ++k) {
        if (indices[k] != 0) {
            return thrown<TooManyIndicesProvidedException>;
        }
    }
    return nullptr;
}

class Empty final : public Model {
public:
    Empty() : Model(ArrayType::UNKNOWN, {0, 0}) {}
    std::unique_ptr<Model> clone() const override { return std::make_unique<Empty>(*this); }
    void act(World&, Array& array) override {
        operation = "empty array: index";
        requireOutcome(thrown<CantIndexIntoEmptyArrayException>, outcomeOf([&] { array[0] = 1.0; }));
    }
    void writeThrough(World&, Reference<Array> held) override {
        operation = "empty array inside: index";
        requireOutcome(thrown<CantIndexIntoEmptyArrayException>, outcomeOf([&] { held[0] = 1.0; }));
    }

protected:
    void checkElements(const Array& array) const override {
        require(array.getArrayID() == 0, "the empty array has an identity");
    }
    Likeness compareElements(const Model&) const override { return Likeness::equal; }
};

} // namespace

Place resolve(const Dims& dims, bool rowMajor, const Indices& indices) {
    if (const Outcome error = appendError(dims, indices)) {
        return {error};
    }
    Indices full = indices;
    if (dims.size() == 2 && indices.size() == 1) {
        if (dims[0] == 1) {
            full.insert(full.begin(), 0);
        } else if (dims[1] == 1) {
            full.push_back(0);
        }
    }
    if (full.size() < dims.size()) {
        return {thrown<NotEnoughIndicesProvidedException>};
    }
    std::size_t position = 0;
    for (std::size_t k = 0; k < dims.size(); ++k) {
        const std::size_t d = rowMajor ? k : dims.size() - 1 - k; // from the slowest dimension to the fastest
        if (full[d] >= dims[d]) {
            return {thrown<EArrayIndexOutOfRange>};
        }
        position = position * dims[d] + full[d];
    }
    return {nullptr, position};
}

Outcome Model::writeScalar(const Indices& indices, double) {
    const Outcome error = appendError(dims_, indices);
    return error != nullptr ? error : thrown<TypeMismatchException>;
}

void Model::check(const Array& array) const {
    require(array.getType() == type_, "another type");
    require(array.getDimensions() == dims_, "other dimensions");
    require(array.getNumberOfElements() == elementCount(dims_), "another number of elements");
    require(array.isEmpty() == isEmpty(), "emptiness");
    if (type_ != ArrayType::UNKNOWN) {
        require(array.getMemoryLayout() ==
                    (rowMajor() ? MemoryLayout::ROW_MAJOR : MemoryLayout::COLUMN_MAJOR),
                "another layout");
    }
    checkElements(array);
}

Likeness Model::compare(const Model& other) const {
    return type_ == other.type_ && dims_ == other.dims_ ? compareElements(other) : Likeness::different;
}

Plain emptyModel() { return plain<Empty>(); }

} // namespace vexa::fuzz
