// The operations that end the process, and how docs/errors.md lists each.
#include "World.hpp"
#include "support/AllocationCountdown.hpp"

#include <vexa/testing/BareArray.hpp>

namespace failure {

namespace {

using detail::Access;
using vexa::data::impl::ArrayImpl;

[[noreturn]] void fail() { throw 1; }

struct ThrowsInTheEnd final : vexa::testing::BareArray<ArrayImpl, ArrayType::CELL, 0> {
    ~ThrowsInTheEnd() override { fail(); }
};

/// Cells in cells, so deep that no stack goes down to the innermost.
Array deepCells(World& world) {
    Array deep = world.numbers();
    for (int k = 0; k < 200'000; ++k) {
        auto outer = world.factory.createArray<Array>({1, 1});
        outer[0] = deep;
        deep = outer;
    }
    return deep;
}
/// The same with objects of a class.
Array deepObjects(World& world, const char* className) {
    const ClassInfo description = world.factory.createClassInfo(className, {"inner"});
    Array deep = world.numbers();
    for (int k = 0; k < 100'000; ++k) {
        ValueObject outer = world.factory.createValueObject(description);
        outer["inner"] = deep;
        deep = world.factory.createValueObjectScalar(outer);
    }
    return deep;
}
void loseMemory() {
    support::AllocationCountdown::start();
    support::AllocationCountdown::failAt(1, true);
}

ArrayImpl& emptyArray() { return *Access::impl(std::as_const(*new Array)); }

constexpr const char* sparseListed = "`begin`, `end`, `cbegin`, `cend` and `getIndex` of `SparseArray`";
constexpr const char* kindListed = "the test of its kind when a typed handle is formed or assigned";
constexpr const char* emptyListed = "operations of the empty array that nobody asks of it";
constexpr const char* deepListed = "destroying or comparing arrays that hold arrays";

} // namespace

const std::vector<Ending>& endings() {
    using enum Cause;
    static const std::vector<Ending> all{
        {{"Array::getDimensions", [](World& w) { use(w.numbers().getDimensions()); }},
         "`Array::getDimensions`",
         {memory, query}},
        {{"equality of arrays", [](World& w) { use(Array(w.numbers()) == Array(w.alone())); }},
         "`==` and `!=` of arrays and of object arrays",
         {query}},
        {{"equality of object arrays", [](World& w) { use(w.objects() == ValueObjectArray(w.objects())); }},
         "`==` and `!=` of arrays and of object arrays",
         {operation}},
        {{"EnumArray::getClassName", [](World& w) { use(w.members().getClassName()); }},
         "`EnumArray::getClassName`",
         {memory, operation}},
        {{"comparison of a member", [](World& w) { use(std::as_const(w.members())[0] == "sun"); }},
         "comparing an enumeration element with a name",
         {operation}},
        {{"SparseArray::begin", [](World& w) { use(w.sparse().begin()); }},
         sparseListed,
         {memory, operation}},
        {{"SparseArray::end", [](World& w) { use(w.sparse().end()); }}, sparseListed, {memory, operation}},
        {{"SparseArray::cbegin", [](World& w) { use(w.sparse().cbegin()); }},
         sparseListed,
         {memory, operation}},
        {{"SparseArray::cend", [](World& w) { use(w.sparse().cend()); }}, sparseListed, {memory, operation}},
        {{"SparseArray::getIndex",
          [](World& w) {
              const SparseArray<double>& matrix = w.sparse();
              use(matrix.getIndex(matrix.begin()));
          }},
         sparseListed,
         {memory, operation}},
        {{"forming a typed handle", [](World& w) { use(TypedArray<double>(Array(w.numbers()))); }},
         kindListed,
         {query}},
        {{"assigning to a typed handle", [](World& w) { w.alone() = Array(w.numbers()); }},
         kindListed,
         {query}},
        {{"beginIterator of nothing", [](World&) { emptyArray().beginIterator(nullptr, false); }},
         emptyListed,
         {nothing}},
        {{"createElementReference of nothing",
          [](World&) { emptyArray().createElementReference(0, {}, false); }},
         emptyListed,
         {nothing}},
        {{"getJc of nothing", [](World&) { emptyArray().getJc(); }}, emptyListed, {nothing}},
        {{"an error in a destructor", [](World&) { Access::createSharedPtr<ArrayImpl>(new ThrowsInTheEnd); }},
         "an error thrown while a back-end object is destroyed",
         {nothing}},
        {{"creating without a back-end",
          [](World& w) {
              const ArrayFactory taken = std::move(w.factory);
              w.factory.createScalar(1.0);
          }},
         "creating with an `ArrayFactory` that has no back-end",
         {nothing}},
        {{"destroying deep cells",
          [](World& w) {
              const Array deep = deepCells(w);
              loseMemory();
          }},
         deepListed,
         {stack}},
        {{"comparing deep cells",
          [](World& w) {
              const Array one = deepCells(w), other = deepCells(w);
              loseMemory();
              use(one == other);
          }},
         deepListed,
         {stack}},
        {{"comparing deep objects of two classes",
          [](World& w) { use(deepObjects(w, "One") == deepObjects(w, "Other")); }},
         deepListed,
         {stack}},
        {{"null from a back-end", [](World& w) { use(w.numbers().getType()); }},
         "a null pointer from a back-end that has to give an object",
         {result}},
    };
    return all;
}

} // namespace failure
