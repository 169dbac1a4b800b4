// Cell arrays.
#include "World.hpp"

#include <numeric>

namespace vexa::fuzz {

namespace {

using Cell = TypedArray<Array>;

class Cells final : public Model {
public:
    explicit Cells(Dims dims)
        : Model(ArrayType::CELL, std::move(dims)), elements_(elementCount(dims_), emptyModel()) {}

    std::unique_ptr<Model> clone() const override { return std::make_unique<Cells>(*this); }

    void act(World& world, Array& array) override {
        switch (world.input.below(7)) {
        case 0:
            return store(world, array);
        case 1:
            return storeUntyped(world, array);
        case 2:
            return storeItself(world, array);
        case 3:
            return fill(world, array);
        case 4:
            return readOut(world, array);
        case 5:
            return writeScalarInside(world, array);
        default:
            return writeInside(world, array);
        }
    }

    void writeThrough(World& world, Reference<Array> held) override {
        operation = "cells inside: store";
        Reference<Cell> cells(held);
        if (isEmpty() || world.input.flip()) {
            return storeAt(world, cells);
        }
        const Indices indices = world.input.validIndices(dims_);
        atIndices(cells, indices, [&](auto& ref) {
            elements_[place(indices).position]->writeThrough(world, Reference<Array>(ref));
        });
    }

    std::size_t weight() const override {
        return std::accumulate(elements_.begin(), elements_.end(), std::size_t{1},
                               [](std::size_t sum, const Plain& held) { return sum + held->weight(); });
    }

protected:
    void checkElements(const Array& array) const override {
        const Cell cells = array;
        std::size_t k = 0;
        for (const auto& element : cells) {
            require(k < elements_.size(), "the walk is long");
            elements_[k++]->check(Array(element));
        }
        require(k == elements_.size(), "the walk is short");
    }
    Likeness compareElements(const Model& other) const override {
        return compareAll(elements_, static_cast<const Cells&>(other).elements_,
                          [](const Plain& a, const Plain& b) { return a->compare(*b); });
    }

private:
    template <class Handle>
    void storeAt(World& world, Handle& cells) {
        const Slot other = world.pick();
        const Indices indices = world.input.indices(dims_);
        const Place at = place(indices);
        if (succeeds(at.error, [&] { atIndices(cells, indices, [&](auto& ref) { ref = other.array; }); })) {
            elements_[at.position] = other.model;
        }
    }
    void store(World& world, Array& array) {
        operation = "cells: store";
        as<Cell>(array, [&](Cell& cells) { storeAt(world, cells); });
    }
    void storeUntyped(World& world, Array& array) {
        operation = "cells: store through an untyped handle";
        storeAt(world, array);
    }

    /// Into one of its cells, or into a cell of a cell.
    void storeItself(World& world, Array& array) {
        operation = "cells: store the array into itself";
        if (isEmpty() || weight() > 12 || !World::isNested) {
            return;
        }
        const Indices indices = world.input.validIndices(dims_);
        Plain& target = elements_[place(indices).position];
        const Plain before(clone());
        as<Cell>(array, [&](Cell& cells) {
            if (target->type() != ArrayType::CELL || elementCount(target->dims()) == 0) {
                atIndices(cells, indices, [&](auto& ref) { ref = cells; });
                target = before;
                return;
            }
            auto& inner = static_cast<Cells&>(*target);
            const Indices deeper = world.input.validIndices(inner.dims_);
            atIndices(cells, indices, [&](auto& ref) {
                Reference<Cell> held(ref);
                atIndices(held, deeper, [&](auto& cell) { cell = cells; });
            });
            inner.elements_[inner.place(deeper).position] = before;
        });
    }

    void fill(World& world, Array& array) {
        operation = "cells: fill in a loop";
        const Slot other = world.pick();
        if (other.model->weight() > 3) {
            return;
        }
        as<Cell>(array, [&](Cell& cells) {
            for (auto element : cells) {
                element = other.array;
            }
        });
        elements_.assign(elements_.size(), other.model);
    }

    void readOut(World& world, const Array& array) const {
        operation = "cells: read an element";
        const Cell cells = array;
        const Indices indices = world.input.indices(dims_);
        const Place at = place(indices);
        requireOutcome(at.error, outcomeOf([&] {
                           atIndices(cells, indices, [&](auto& ref) {
                               const Array found = ref;
                               elements_[at.position]->check(found);
                           });
                       }));
    }

    /// `cells[i].held()[j] = 5.0`, and reading that again.
    void writeScalarInside(World& world, Array& array) {
        operation = "cells: write a scalar in a cell";
        if (isEmpty()) {
            return;
        }
        const Indices indices = world.input.validIndices(dims_);
        Model& inner = *elements_[place(indices).position];
        const Indices deeper = world.input.indices(inner.dims());
        const double value = world.input.value<double>();
        const auto inCell = [&](auto& cells, auto use) {
            atIndices(cells, indices, [&](auto& cell) {
                auto held = cell.held();
                atIndices(held, deeper, use);
            });
        };
        as<Cell>(array, [&](Cell& cells) {
            if (succeeds(inner.writeScalar(deeper, value),
                         [&] { inCell(cells, [&](auto& element) { element = value; }); })) {
                inCell(std::as_const(cells), [&](auto& element) {
                    const double found = element;
                    require(found == value || value != value, "another value");
                });
            }
        });
    }

    void writeInside(World& world, Array& array) {
        if (isEmpty()) {
            return;
        }
        const Indices indices = world.input.validIndices(dims_);
        const auto write = [&](auto& ref) {
            elements_[place(indices).position]->writeThrough(world, Reference<Array>(ref));
        };
        if (world.input.flip()) {
            atIndices(array, indices, write);
        } else {
            as<Cell>(array, [&](Cell& cells) { atIndices(cells, indices, write); });
        }
    }

    std::vector<Plain> elements_;
};

} // namespace

Slot makeCells(World& world) {
    const Dims dims = world.input.dims(9);
    return {world.factory.createArray<Array>(dims), plain<Cells>(normalized(dims))};
}

} // namespace vexa::fuzz
