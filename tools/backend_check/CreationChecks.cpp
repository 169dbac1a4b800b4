// Every kind of thing that a factory makes. These checks find out what a back-end offers.

#include "Check.hpp"
#include "Samples.hpp"

#include <algorithm>

namespace vexa::check {

namespace {

using data::MemoryLayout;

void expectNewArray(const Backend& backend, const ArrayImpl& array, const std::vector<ArrayType>& types,
                    const Dimensions& dimensions) {
    const std::string of = " of a " + describe(types.front(), dimensions);
    const auto step = [&](const char* operation) { return backend.step(operation + of), operation + of; };
    expectOneReference("a new " + describe(types.front(), dimensions), array);
    const std::string getType = step("getType");
    if (std::find(types.begin(), types.end(), array.getType()) == types.end())
        expectEqual(getType, array.getType(), types.front());
    expectEqual(step("getDimensions"), array.getDimensions(), dimensions);
    expectEqual(step("getNumberOfElements"), array.getNumberOfElements(), 6);
    expectEqual(step("isEmpty"), array.isEmpty(), false);
    const std::string getMemoryLayout = step("getMemoryLayout");
    const MemoryLayout layout = array.getMemoryLayout();
    expect(layout == MemoryLayout::COLUMN_MAJOR || layout == MemoryLayout::ROW_MAJOR,
           getMemoryLayout + " is neither COLUMN_MAJOR nor ROW_MAJOR");
    const std::string getArrayID = step("getArrayID");
    expect(array.getArrayID() != 0, getArrayID + " is 0, which stands for an empty array");
}

const std::string creates = "every result of a factory carries one reference for the caller";

/// Arrays that `createArrayImpl` makes; those of kinds that have another creator too are "new".
void addKind(Family& family, ArrayType type, const std::string& isNew = {}) {
    const std::string name(nameOf(type));
    const std::string capability = isNew.empty() ? name : isNew + "-" + name;
    family.addCapability((isNew.empty() ? name : isNew + " " + name) + " arrays", creates, capability, {},
                         [type](Backend& backend) {
                             const Dimensions dimensions{2, 3};
                             const auto array = offered(backend, "createArrayImpl", [&] {
                                 return backend.factory().createArrayImpl(type, dimensions);
                             });
                             expectNewArray(backend, *array, {type}, dimensions);
                             if (isSparse(type))
                                 expectEqual("getNumberOfNonZeroElements of a new matrix",
                                             array->getNumberOfNonZeroElements(), 0);
                         });
}

void fromData(Backend& backend) {
    bool any = false;
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const std::array<T, 6> data{};
        const auto create = [&] {
            return backend.factory().createArrayWithDataImpl(tag.arrayType, {2, 3}, data.data(), data.size());
        };
        const auto array = any ? adopt(create(), "createArrayWithDataImpl")
                               : offered(backend, "createArrayWithDataImpl", create);
        any = true;
        expectNewArray(backend, *array, {tag.arrayType}, {2, 3});
    });
}

void structs(Backend& backend) {
    const auto array = offered(backend, "createStructArrayImpl", [&] {
        return backend.factory().createStructArrayImpl({2, 3}, {"b", "a"});
    });
    expectNewArray(backend, *array, {ArrayType::STRUCT}, {2, 3});
    asStructs(*array);
}

void enums(Backend& backend) {
    const auto array = offered(backend, "createEnumArrayImpl", [&] {
        return backend.factory().createEnumArrayImpl({2, 3}, "Colors", {"A", "B", "A", "B", "A", "C"});
    });
    expectNewArray(backend, *array, {ArrayType::ENUM}, {2, 3});
    asEnums(*array);
}

void addSparse(Family& family, ArrayType type) {
    const std::string name(nameOf(type));
    family.addCapability(name + " arrays", creates, name, {}, [type](Backend& backend) {
        const auto array = offered(backend, "the creator", [&] {
            return createSparse(backend.factory(), type, {2, 3}, {1, 2}, {1, 0}, {0, 2}, false);
        });
        expectNewArray(backend, *array, {type}, {2, 3});
    });
}

void compressedColumns(Backend& backend) {
    bool any = false;
    eachSample(backend, [&](const Sample& sample) {
        if (!sample.sparse) return;
        const ArrayType type = make(backend, sample, {1, 1})->getType();
        const auto create = [&] {
            return createSparse(backend.factory(), type, {2, 3}, {1, 2}, {1, 0}, {0, 1, 1, 2}, true);
        };
        const auto array = any ? adopt(create(), "the creator") : offered(backend, "the creator", create);
        any = true;
        expectNewArray(backend, *array, {type}, {2, 3});
    });
    if (!any) throw NotOffered{"no sparse arrays are offered"};
    backend.note({});
}

void classes(Backend& backend) {
    const auto made = offered(backend, "createClassInfoImpl", [&] {
        return backend.factory().createClassInfoImpl(fv::VexaClassIdentifier("Point"), {property("x")}, {},
                                                     {});
    });
    expectOneReference("a new class description", *made);
}

void valueObjects(Backend& backend) {
    const auto description = pointClass(backend);
    const auto object = offered(backend, "createValueObjectImpl",
                                [&] { return backend.factory().createValueObjectImpl(description.get()); });
    expectOneReference("a new value object", *object);
}

const std::vector<ArrayType> objectTypes{ArrayType::OBJECT, ArrayType::VALUE_OBJECT,
                                         ArrayType::HANDLE_OBJECT_REF};

void objectArrays(Backend& backend) {
    const auto description = pointClass(backend);
    const auto array = offered(backend, "createValueObjectArrayImpl", [&] {
        return backend.factory().createValueObjectArrayImpl({2, 3}, description.get());
    });
    expectNewArray(backend, *array, objectTypes, {2, 3});
    asObjects(*array);
}

void objectScalars(Backend& backend) {
    const auto object = newPoint(backend, 1, 2);
    const auto array = offered(backend, "createValueObjectScalarImpl",
                               [&] { return backend.factory().createValueObjectScalarImpl(object.get()); });
    expectOneReference("a new array of one object", *array);
    expectEqual("getDimensions of an array of one object", array->getDimensions(), {1, 1});
    asObjects(*array);
}

void handleObjects(Backend& backend) {
    const auto object = offered(backend, "createHandleObjectRefImpl", [&] {
        return backend.factory().createHandleObjectRefImpl({{1, 2}}, 7);
    });
    expectOneReference("a new handle object", *object);
}

void enumerationObjects(Backend& backend) {
    const auto object = offered(backend, "createEnumerationObjectImpl", [&] {
        return backend.factory().createEnumerationObjectImpl("Colors", "Red");
    });
    expectOneReference("a new enumeration object", *object);
}

using Deleter = void (*)(void*);

/// What `create` fills in. An exception means not offered.
template <class F>
void expectBuffer(const char* creator, F create) {
    void* memory = nullptr;
    Deleter deleter = nullptr;
    try {
        create(memory, deleter);
    } catch (...) {
        throw NotOffered{std::string(creator) + " throws " + describeException()};
    }
    expect(memory != nullptr, std::string(creator) + " fills in no buffer, where it should throw");
    expect(deleter != nullptr, std::string(creator) + " fills in no deleter");
    deleter(memory);
}

void buffers(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        expectBuffer("createBufferImpl", [&](void*& memory, Deleter& deleter) {
            backend.factory().createBufferImpl(memory, deleter, tag.arrayType, 6);
        });
    });
}
void untypedBuffers(Backend& backend) {
    expectBuffer("createUntypedBufferImpl", [&](void*& memory, Deleter& deleter) {
        backend.factory().createUntypedBufferImpl(memory, deleter, 6);
    });
}

void fromBuffer(Backend& backend) {
    bool any = false;
    backend.eachPrimitive([&](auto tag) {
        using T = typename decltype(tag)::type;
        const auto create = [&] {
            auto typed = bufferOf(std::vector<T>(6));
            Buffer<void> buffer(typed.release(), &std::free);
            return backend.factory().createArrayFromBufferImpl({2, 3}, tag.arrayType, std::move(buffer),
                                                               MemoryLayout::COLUMN_MAJOR);
        };
        const auto array = any ? adopt(create(), "createArrayFromBufferImpl")
                               : offered(backend, "createArrayFromBufferImpl", create);
        any = true;
        expectNewArray(backend, *array, {tag.arrayType}, {2, 3});
    });
}

void buffersCopiedOut(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        const auto array = backend.array(tag.arrayType, {2, 3});
        expectBuffer("copyOutBuffer",
                     [&](void*& memory, Deleter& deleter) { array->copyOutBuffer(memory, deleter); });
    });
}
void buffersHandedOver(Backend& backend) {
    backend.eachPrimitive([&](auto tag) {
        const auto array = backend.array(tag.arrayType, {2, 3});
        expectBuffer("releaseBuffer",
                     [&](void*& memory, Deleter& deleter) { array->releaseBuffer(memory, deleter); });
    });
}

} // namespace

void addCreationChecks(Checks& checks) {
    Family creation(checks, "creation");
    forEachPrimitive([&](auto tag) { addKind(creation, tag.arrayType); });
    for (const auto type : {ArrayType::CELL, ArrayType::STRING})
        addKind(creation, type);
    creation.addCapability("struct arrays", creates, "struct", {}, structs);
    creation.addCapability("enumeration arrays", creates, "enumeration", {}, enums);
    for (const auto type :
         {ArrayType::SPARSE_LOGICAL, ArrayType::SPARSE_DOUBLE, ArrayType::SPARSE_COMPLEX_DOUBLE})
        addSparse(creation, type);
    for (const auto type : {ArrayType::STRUCT, ArrayType::ENUM, ArrayType::OBJECT, ArrayType::VALUE_OBJECT,
                            ArrayType::HANDLE_OBJECT_REF, ArrayType::SPARSE_LOGICAL, ArrayType::SPARSE_DOUBLE,
                            ArrayType::SPARSE_COMPLEX_DOUBLE})
        addKind(creation, type, "new");
    creation.addCapability("arrays from compressed columns", creates, "compressed-columns", {},
                           compressedColumns);
    creation.addCapability("arrays from data", creates, "data", {}, fromData);
    creation.addCapability("typed buffers", creates, "buffer", {}, buffers);
    creation.addCapability("untyped buffers", creates, "untyped-buffer", {}, untypedBuffers);
    creation.addCapability("arrays from buffers", creates, "from-buffer", {}, fromBuffer);
    creation.addCapability("buffers copied out",
                           "copyOutBuffer and its deleter belong to the caller (slot 33)", "copy-out-buffer",
                           {}, buffersCopiedOut);
    creation.addCapability("buffers handed over", "releaseBuffer hands over in the same way (slot 34)",
                           "release-buffer", {}, buffersHandedOver);
    creation.addCapability("class descriptions", creates, "class", {}, classes);
    creation.addCapability("value objects", creates, "value-object", {"class"}, valueObjects);
    creation.addCapability("object arrays", creates, "object-array", {"class"}, objectArrays);
    creation.addCapability("arrays of one object", creates, "object-scalar", {"value-object", "double"},
                           objectScalars);
    creation.addCapability("handle objects", creates, "handle-object", {}, handleObjects);
    creation.addCapability("enumeration objects", creates, "enumeration-object", {}, enumerationObjects);
}

} // namespace vexa::check
