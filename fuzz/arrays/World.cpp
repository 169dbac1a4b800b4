// Operations on arrays of every kind, beside plain containers.
#include "World.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace vexa::fuzz {

namespace {

constexpr std::size_t mostSlots = 6;
constexpr std::size_t mostSteps = 100;
constexpr std::size_t heaviestStored = 12; // models in what is stored in other arrays
constexpr std::size_t heaviest = 80;

constexpr std::array makers{&makeReal,  &makeComplex, &makeChars,  &makeStrings, &makeEnums,
                            &makeCells, &makeStructs, &makeSparse, &makeObjects};

/// Says at the end how much was done.
struct Tally {
    std::uint64_t steps = 0;
    ~Tally() { std::fprintf(stderr, "%llu operations\n", static_cast<unsigned long long>(steps)); }
};
Tally tally;

/// A write that goes around copy-on-write.
void plantFault(const Array& array) {
    if (array.getType() == ArrayType::DOUBLE && !array.isEmpty()) {
        const TypedArray<double> typed = array;
        const_cast<double&>(*typed.begin()) = -42;
    }
}

bool holdsArrays(ArrayType type) {
    return type == ArrayType::CELL || type == ArrayType::STRUCT || type == ArrayType::VALUE_OBJECT;
}

} // namespace

void World::run() {
    slots_.push_back({Array(), emptyModel()});
    for (std::size_t k = 0; k < mostSteps && !input.isEmpty(); ++k) {
        step();
        if (k % (Operations::kept / 2) == 0) {
            checkAll(); // takes longer than the step
        }
    }
    checkAll();
}

void World::step() {
    ++tally.steps;
    switch (input.below(13)) {
    case 0:
    case 1: {
        operation = "make an array";
        Slot made = makers[input.below(makers.size())](*this);
        if (slots_.size() < mostSlots) {
            slots_.push_back(std::move(made));
        } else {
            slots_[any()] = std::move(made);
        }
        break;
    }
    case 2:
        copy();
        break;
    case 3:
        compare();
        break;
    case 4:
        variables_.act(*this);
        break;
    default:
        Slot& slot = slots_[any()];
        slot.model->act(*this, slot.array);
        slot.model->check(slot.array);
        if (slot.model->weight() > heaviest) {
            slot = {Array(), emptyModel()};
        }
    }
}

void World::copy() {
    operation = "copy a handle";
    const std::size_t from = any();
    const std::size_t to = any();
    Slot copied = slots_[from];
    if (isFaultPlanted) {
        plantFault(copied.array);
    }
    if (input.flip()) {
        slots_[to] = copied;
    } else if (slots_.size() < mostSlots) {
        slots_.push_back(std::move(copied));
    }
}

/// Two arrays, or one and a copy of it that was changed once.
void World::compare() {
    const Slot a = slots_[any()];
    Slot b = input.flip() ? a : slots_[any()];
    if (input.flip()) {
        b.model->act(*this, b.array);
    }
    operation = "compare";
    const Likeness likeness = a.model->compare(*b.model);
    if (likeness != Likeness::doubtful) {
        const bool equal = likeness == Likeness::equal;
        require((a.array == b.array) == equal && (a.array != b.array) != equal, "equality");
        require((b.array == a.array) == equal, "equality the other way round");
    }
}

void World::checkAll() const {
    for (const Slot& slot : slots_) {
        slot.model->check(slot.array);
    }
}

Slot World::pick() {
    const Slot& slot = slots_[any()];
    const bool atWork = detail::Access::impl(slot.array) == nullptr; // moved into a typed handle
    const std::size_t most = isNested ? heaviestStored : 1;
    return atWork || slot.model->weight() > most || (!isNested && holdsArrays(slot.model->type()))
               ? Slot{Array(), emptyModel()}
               : slot;
}

} // namespace vexa::fuzz
