// Arrays of every kind, each shared with a second handle, for operations that are made to fail.
#pragma once

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Workspace.hpp>

#include <memory>
#include <string>
#include <vector>

namespace failure {

using namespace foundation::vexadata;

struct World {
    explicit World(const ArrayFactory& maker);

    /// Everything in it as text. Two equal texts mean that nothing was changed.
    std::string text() const;

    ArrayFactory factory;
    TypedArray<double> numbers; // 2 by 3
    TypedArray<double> alone;   // not shared
    CharArray characters;
    TypedArray<String> strings; // "long text", missing
    EnumArray members;
    TypedArray<Array> cells; // numbers, a cell that holds them
    StructArray records;     // two of them; the field "inner" holds a struct with the field "deep"
    SparseArray<double> sparse;
    ClassInfo point;
    ValueObject object;
    ValueObjectArray objects;
    TypedArray<HandleObjectRef> handles;
    vexa::client::WorkspaceEngine engine; // "a" is numbers
    std::vector<Array> partners;
    ValueObject objectPartner;
};

/// A public operation. Runs over a fresh world; what it returns is dropped at once.
struct Operation {
    const char* name;
    void (*run)(World& world);
    /// True when a failure inside is an answer, not an error.
    bool swallows = false;
};

/// The operations of one family of handles.
struct Family {
    const char* name;
    std::vector<Operation> operations;
};

const std::vector<Family>& families();
Family cFunctions(); ///< one of them

/// Operations that end the process when memory runs out, and those that do when the back-end fails.
const std::vector<Operation>& endingWithoutMemory();
const std::vector<Operation>& endingWithTheBackEnd();

} // namespace failure
