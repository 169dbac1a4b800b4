// Arrays of every kind, each shared with a second handle, for operations that are made to fail.
#pragma once

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Workspace.hpp>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace failure {

using namespace foundation::vexadata;

class World {
public:
    /// Makes nothing: each part is made when it is first used.
    explicit World(ArrayFactory maker) : factory(std::move(maker)) {}
    /// Makes all parts.
    World& made();
    /// Everything in it as text, which makes all parts. Two equal texts mean that nothing was changed.
    std::string text();

    ArrayFactory factory;
    TypedArray<double>& numbers(); ///< 2 by 3
    TypedArray<double>& alone();   ///< not shared
    CharArray& characters();
    TypedArray<String>& strings(); ///< "long text", missing
    EnumArray& members();
    TypedArray<Array>& cells(); ///< numbers, a cell that holds them
    StructArray& records();     ///< two of them; the field "inner" holds a struct with the field "deep"
    SparseArray<double>& sparse();
    ClassInfo& point();
    ValueObject& object();
    ValueObjectArray& objects();
    TypedArray<HandleObjectRef>& handles();
    vexa::client::WorkspaceEngine& engine(); ///< "a" is numbers

private:
    /// A handle and its partner over the same array.
    template <class T>
    using Pair = std::optional<std::pair<T, T>>;

    template <class T, class Make>
    T& pair(Pair<T>& both, Make make) {
        if (!both) {
            const T one = make(factory);
            both.emplace(one, one);
        }
        return both->first;
    }

    Pair<TypedArray<double>> numbers_;
    std::optional<TypedArray<double>> alone_;
    Pair<CharArray> characters_;
    Pair<TypedArray<String>> strings_;
    Pair<EnumArray> members_;
    Pair<TypedArray<Array>> cells_;
    Pair<StructArray> records_;
    Pair<SparseArray<double>> sparse_;
    std::optional<ClassInfo> point_;
    Pair<ValueObject> object_;
    Pair<ValueObjectArray> objects_;
    Pair<TypedArray<HandleObjectRef>> handles_;
    std::optional<vexa::client::WorkspaceEngine> engine_;
};

/// Makes the compiler believe that the value is looked at, or it would leave allocations out.
template <class T>
void use(const T& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

/// A chain to an element of an array that is not copied for it.
std::shared_ptr<vexa::data::detail::ReferenceImpl> elementOf(const Array& array, std::uint64_t index);

/// A public operation. Runs over a fresh world; what it returns is dropped at once.
struct Operation {
    std::string name;
    std::function<void(World& world)> run;
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

/// What has to fail for an operation to end the process.
enum class Cause { memory, operation, query, result, stack, nothing };

/// An operation that ends the process.
struct Ending {
    Operation operation;
    const char* listed; ///< how docs/errors.md says so
    std::vector<Cause> causes;
};
const std::vector<Ending>& endings();

} // namespace failure
