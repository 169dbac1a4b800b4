// All arrays of one run.
#pragma once

#include "Model.hpp"

#include <vexa/client/Workspace.hpp>

#include <map>
#include <string>
#include <vector>

namespace vexa::fuzz {

/// A workspace beside a map.
class Variables {
public:
    void act(World& world);

private:
    void set(World& world);
    void get(World& world);
    void clear(World& world);

    client::WorkspaceEngine engine_;
    std::map<std::string, Plain> models_;
};

class World {
public:
    World(const std::uint8_t* data, std::size_t size, ArrayFactory maker)
        : input(data, size), factory(std::move(maker)) {}

    /// Uses the input up. Ends the process when an array and its model differ.
    void run();

    /// Whether arrays that hold arrays may be stored into others. Not in front of a back-end whose doubles
    /// would hold themselves.
    static inline bool isNested = true;
    /// Whether copies are written to behind the back of their handles, to see that this is noticed.
    static inline bool isFaultPlanted = false;

    /// An array to be stored in another one, or the empty array in place of one that holds too many already.
    Slot pick();

    Input input;
    ArrayFactory factory;

private:
    void step();
    void copy();
    void compare();
    void checkAll() const;
    std::size_t any() { return input.below(slots_.size()); }

    std::vector<Slot> slots_;
    Variables variables_;
};

// One maker a kind.
Slot makeReal(World& world);
Slot makeComplex(World& world);
Slot makeChars(World& world);
Slot makeStrings(World& world);
Slot makeEnums(World& world);
Slot makeCells(World& world);
Slot makeStructs(World& world);
Slot makeSparse(World& world);
Slot makeObjects(World& world);

} // namespace vexa::fuzz
