// Sparse matrices.
#include "World.hpp"

#include <algorithm>
#include <array>
#include <complex>
#include <map>

namespace vexa::fuzz {

namespace {

template <class T>
void add(T& sum, T value) {
    sum += value;
}
void add(bool& sum, bool value) { sum = sum || value; }

template <class T>
buffer_ptr<T> bufferOf(ArrayFactory& factory, const std::vector<T>& values) {
    auto buffer = factory.createBuffer<T>(values.size());
    std::copy(values.begin(), values.end(), buffer.get());
    return buffer;
}

template <class T>
class Sparse final : public Model {
public:
    struct Position {
        std::size_t column;
        std::size_t row;
        bool operator<(const Position& other) const {
            return column != other.column ? column < other.column : row < other.row;
        }
    };
    using Values = std::map<Position, T>;

    Sparse(Dims dims, Values values)
        : Model(detail::sparseTypeOf<T>, std::move(dims)), values_(std::move(values)) {}

    static Slot make(World& world) {
        return world.input.flip() ? makeFromTriplets(world) : makeCompressed(world);
    }

    std::unique_ptr<Model> clone() const override { return std::make_unique<Sparse>(*this); }

    void act(World& world, Array& array) override {
        write(world, array);
        compareWithFresh(world, array);
    }

    void writeThrough(World&, Reference<Array> held) override {
        operation = "sparse inside: use as another kind";
        requireOutcome(thrown<TypeMismatchException>, outcomeOf([&] { Reference<TypedArray<T>>{held}; }));
    }

protected:
    void checkElements(const Array& array) const override {
        const SparseArray<T> typed = array;
        require(isSparse(array), "not sparse");
        require(typed.getNumberOfNonZeroElements() == values_.size(), "another number of stored values");
        require(typed.getRows() == dims_[0] && typed.getCols() == dims_[1], "rows or columns");
        auto it = typed.begin();
        std::size_t k = 0;
        for (const auto& [position, value] : values_) {
            require(it != typed.end(), "the walk is short");
            require(typed.getIndex(it) == std::pair(position.row, position.column), "another place");
            require(*it == value || (value != value && *it != *it), "another value");
            require(typed.getIr()[k] == position.row, "rows of stored values");
            require(typed.getJc()[position.column] <= k && k < typed.getJc()[position.column + 1], "columns");
            ++it;
            ++k;
        }
        require(it == typed.end(), "the walk is long");
    }

    /// Zeros that are stored are like values that are not.
    Likeness compareElements(const Model& other) const override {
        const auto nonZeros = [](const Values& values) {
            std::vector<std::pair<Position, T>> found;
            std::copy_if(values.begin(), values.end(), std::back_inserter(found),
                         [](const auto& entry) { return entry.second != T(); });
            return found;
        };
        const auto a = nonZeros(values_);
        const auto b = nonZeros(static_cast<const Sparse&>(other).values_);
        return a.size() != b.size() ? Likeness::different
                                    : compareAll(a, b, [](const auto& x, const auto& y) {
                                          const bool samePlace =
                                              x.first.column == y.first.column && x.first.row == y.first.row;
                                          const bool doubtful = x.second != x.second && y.second != y.second;
                                          return !samePlace             ? Likeness::different
                                                 : x.second == y.second ? Likeness::equal
                                                 : doubtful             ? Likeness::doubtful
                                                                        : Likeness::different;
                                      });
    }

private:
    struct Triplets {
        std::vector<T> values;
        std::vector<std::size_t> rows;
        std::vector<std::size_t> columns;
        bool inside = true;

        void append(std::size_t row, std::size_t column, T value, const Dims& dims) {
            rows.push_back(row);
            columns.push_back(column);
            values.push_back(value);
            inside = inside && row < dims[0] && column < dims[1];
        }
    };
    static constexpr std::size_t mostValues = 400;

    /// Small whole values, whose sums do not depend on the order; some cancel.
    static T smallValue(Input& input) {
        if constexpr (std::is_same_v<T, bool>) {
            return input.flip();
        } else {
            return T(static_cast<double>(input.below(5)) - 2.0);
        }
    }

    static Values summed(const Triplets& triplets) {
        Values values;
        for (std::size_t k = 0; k < triplets.values.size(); ++k) {
            add(values[{triplets.columns[k], triplets.rows[k]}], triplets.values[k]);
        }
        std::erase_if(values, [](const auto& entry) { return entry.second == T(); });
        return values;
    }

    static Dims anyDims(Input& input) {
        Dims dims = input.dims(30);
        if (input.below(8) == 0) {
            dims = {std::size_t{1} << (5 + input.below(55)), 1 + input.below(40)};
        }
        return dims;
    }
    static Outcome expected(const Dims& dims, const Triplets& triplets) {
        return dims.size() > 2   ? thrown<EInvalidDimensionsInSparseArray>
               : triplets.inside ? nullptr
                                 : thrown<EArrayIndexOutOfRange>;
    }
    static std::size_t rowIn(Input& input, const Dims& dims) {
        return input.below(dims[0] + (input.below(16) == 0 ? 1 : dims[0] == 0 ? 1 : 0));
    }

    void write(World& world, Array& array) {
        operation = "sparse: write the stored values";
        const T value = world.input.value<T>();
        const bool all = world.input.flip();
        const std::size_t which = world.input.below(values_.size() + 1);
        as<SparseArray<T>>(array, [&](SparseArray<T>& typed) {
            std::size_t k = 0;
            for (T& stored : typed) {
                if (all || k++ == which) {
                    stored = value;
                }
            }
        });
        std::size_t k = 0;
        for (auto& [position, stored] : values_) {
            if (all || k++ == which) {
                stored = value;
            }
        }
    }

    /// Zeros that are stored do not count.
    void compareWithFresh(World& world, const Array& array) const {
        operation = "sparse: compare with a matrix that stores no zeros";
        Triplets triplets;
        bool doubtful = false;
        for (const auto& [position, value] : values_) {
            triplets.append(position.row, position.column, value, dims_);
            doubtful = doubtful || value != value;
        }
        const Array fresh = fromTriplets(world.factory, dims_, triplets);
        require(doubtful || (array == fresh && fresh == array), "equality");
    }

    static Array fromTriplets(ArrayFactory& factory, const Dims& dims, const Triplets& triplets) {
        return factory.createSparseArray<T>(dims, triplets.values.size(), bufferOf(factory, triplets.values),
                                            bufferOf(factory, triplets.rows),
                                            bufferOf(factory, triplets.columns));
    }

    static Slot makeFromTriplets(World& world) {
        operation = "sparse: make from triplets";
        Input& input = world.input;
        const Dims dims = normalized(anyDims(input));
        Triplets triplets;
        for (std::size_t n = input.below(mostValues); n > 0 && !input.isEmpty(); --n) {
            const bool again = !triplets.rows.empty() && input.below(4) == 0;
            const std::size_t row = again ? triplets.rows.back() : rowIn(input, dims);
            const std::size_t column = input.below(dims[1] == 0 ? 1 : dims[1]);
            triplets.append(row, column, smallValue(input), dims);
        }
        Slot made{Array(), emptyModel()};
        if (succeeds(expected(dims, triplets),
                     [&] { made.array = fromTriplets(world.factory, dims, triplets); })) {
            made.model = plain<Sparse>(dims, summed(triplets));
        }
        return made;
    }

    static Slot makeCompressed(World& world) {
        operation = "sparse: make from compressed columns";
        Input& input = world.input;
        const Dims dims = normalized(anyDims(input));
        Triplets triplets;
        std::vector<std::size_t> starts{0};
        for (std::size_t column = 0; column < dims[1]; ++column) {
            for (std::size_t n = input.below(4); n > 0 && !input.isEmpty(); --n) {
                triplets.append(rowIn(input, dims), column, smallValue(input), dims);
            }
            starts.push_back(triplets.values.size());
        }
        Slot made{Array(), emptyModel()};
        const auto create = [&] {
            ArrayFactory& factory = world.factory;
            made.array = factory.createVEXASparseArray<T>(
                dims, triplets.values.size(), bufferOf(factory, triplets.values),
                bufferOf(factory, triplets.rows), bufferOf(factory, starts));
        };
        if (succeeds(expected(dims, triplets), create)) {
            made.model = plain<Sparse>(dims, summed(triplets));
        }
        return made;
    }

    Values values_;
};

} // namespace

Slot makeSparse(World& world) {
    constexpr std::array makers{&Sparse<double>::make, &Sparse<bool>::make,
                                &Sparse<std::complex<double>>::make};
    return makers[world.input.below(makers.size())](world);
}

} // namespace vexa::fuzz
