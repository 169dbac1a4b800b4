// Handle objects and the engines that own them.

#include "Check.hpp"
#include "Samples.hpp"

#include <climits>

namespace vexa::check {

namespace {

using data::impl::HandleObjectRefImpl;
using data::impl::ZVMID;

ZVMID engineOf(unsigned char first) {
    ZVMID engine{};
    for (std::size_t k = 0; k < sizeof engine.bytes; ++k)
        engine.bytes[k] = static_cast<unsigned char>(first + 13 * k);
    return engine;
}

Owned<ObjectImpl> newHandle(const Backend& backend, const ZVMID& engine, long id) {
    return adopt(backend.factory().createHandleObjectRefImpl(engine, id), "createHandleObjectRefImpl");
}

HandleObjectRefImpl& handleOf(ObjectImpl& object, const std::string& what) {
    auto* handle = dynamic_cast<HandleObjectRefImpl*>(&object);
    expect(handle != nullptr, what + " has no HandleObjectRefImpl beside its ObjectImpl");
    return *handle;
}

/// All sixteen bytes, the whole number.
void expectHandle(ObjectImpl& object, const ZVMID& engine, long id, const std::string& what) {
    const HandleObjectRefImpl& handle = handleOf(object, what);
    expectEqual("getId of " + what, handle.getId(), id);
    const ZVMID found = handle.getZVMID();
    for (std::size_t k = 0; k < sizeof engine.bytes; ++k)
        expectEqual("byte " + show(k) + " of getZVMID of " + what, +found.bytes[k], +engine.bytes[k]);
}

const std::vector<long> ids{0,           1,        7,  255, 256,     65536,   INT_MAX,
                            0x100000007, LONG_MAX, -1, -7,  INT_MIN, LONG_MIN};

void namesWhatItDenotes(Backend& backend) {
    std::vector<Owned<ObjectImpl>> held;
    std::vector<Owned<ObjectImpl>> others; // of the same numbers, of another engine
    for (const long id : ids)
        others.push_back(newHandle(backend, engineOf(200), id));
    for (std::size_t k = 0; k < ids.size(); ++k)
        held.push_back(newHandle(backend, engineOf(static_cast<unsigned char>(k)), ids[k]));
    for (std::size_t k = 0; k < ids.size(); ++k) {
        const ZVMID engine = engineOf(static_cast<unsigned char>(k));
        expectHandle(*others[k], engineOf(200), ids[k], "a handle object");
        expectHandle(*held[k], engine, ids[k], "a handle object");
        auto copy = adopt(held[k]->sharedCopy(), "sharedCopy of a handle object");
        expect(copy != held[k], "sharedCopy of a handle object is the object itself");
        expectOneReference("a copy of a handle object", *copy);
        expectOneReference("a copied handle object", *held[k]);
        held[k].reset();
        expectHandle(*copy, engine, ids[k], "a copy of a handle object that is gone");
        handleOf(*copy, "a copy of a handle object").addReference();
        expectHandle(*copy, engine, ids[k], "a handle object after addReference");
        expectOneReference("a handle object after addReference", *copy);
    }
}

Owned<ArrayImpl> handleArray(const Backend& backend, const Dimensions& dimensions) {
    return offered(backend, "createArrayImpl for handle objects", [&] {
        return backend.factory().createArrayImpl(ArrayType::HANDLE_OBJECT_REF, dimensions);
    });
}

/// By setElementValue and setElementObject, read by address and by object.
void inArrays(Backend& backend) {
    const auto array = handleArray(backend, {1, 2 * ids.size()});
    ObjectArrayImpl& objects = asObjects(*array);
    const ZVMID engine = engineOf(1);
    for (std::size_t k = 0; k < 2 * ids.size(); ++k) {
        const auto handle = newHandle(backend, engine, ids[k / 2]);
        array->unshare();
        if (k % 2 == 0)
            objects.setElementValue(k, {}, fv::HandleObjectRef(share(*handle).detach()));
        else
            objects.setElementObject(k, handle.get());
    }
    const auto copy = adopt(array->sharedCopy(), "sharedCopy");
    for (ArrayImpl* one : {array.get(), copy.get()})
        for (std::size_t k = 0; k < 2 * ids.size(); ++k) {
            const std::string what = "the handle object at element " + show(k);
            expectHandle(*adopt(asObjects(*one).getElementObject(k), "getElementObject"), engine, ids[k / 2],
                         what);
            const fv::HandleObjectRef* address = asObjects(*one).getElementAddress(k, {}, false);
            expect(address != nullptr, "getElementAddress of an array of handle objects is null");
            expectHandle(*fv::detail::Access::impl(*address), engine, ids[k / 2], what + " (by its address)");
        }
    expect(array->isEqual(copy.get()), "isEqual of an array of handle objects and its copy is false");
}

/// Arrays whose handles differ in one byte of the engine, or in one of the number.
void differInOneByte(Backend& backend) {
    const auto arrayOf = [&](const ZVMID& engine, long id) {
        auto array = handleArray(backend, {1, 2});
        asObjects(*array).setElementObject(0, newHandle(backend, engineOf(9), 9).get());
        asObjects(*array).setElementObject(1, newHandle(backend, engine, id).get());
        return array;
    };
    const ZVMID engine = engineOf(1);
    const auto array = arrayOf(engine, 7);
    expect(array->isEqual(arrayOf(engine, 7).get()), "isEqual of arrays with handles of one object is false");
    for (std::size_t byte = 0; byte < sizeof engine.bytes; ++byte) {
        ZVMID other = engine;
        other.bytes[byte] ^= 0x40;
        expect(!array->isEqual(arrayOf(other, 7).get()),
               "isEqual of arrays with handle objects whose engines differ in byte " + show(byte) +
                   " is true");
    }
    for (unsigned bit = 0; bit < 64; ++bit) {
        const long other = static_cast<long>(7UL ^ (1UL << bit));
        expect(!array->isEqual(arrayOf(engine, other).get()),
               "isEqual of arrays with handle objects whose numbers differ in bit " + show(bit) + " is true");
    }
}

void balance(Backend& backend) {
    const auto handle = newHandle(backend, engineOf(1), 7);
    {
        const auto array = handleArray(backend, {1, 2});
        asObjects(*array).setElementObject(0, handle.get());
        asObjects(*array).setElementValue(1, {}, fv::HandleObjectRef(share(*handle).detach()));
        adopt(array->sharedCopy(), "sharedCopy");
        adopt(asObjects(*array).getElementObject(0), "getElementObject");
        asObjects(*array).setElementObject(0, handle.get());
    }
    expectOneReference("a handle object after its arrays are gone", *handle);
}

} // namespace

void addHandleChecks(Checks& checks) {
    Family handles(checks, "handles");
    const std::vector<std::string> needs{"handle-object"};
    handles.add(
        "handle objects name what they denote",
        "getZVMID is the engine instance, getId the number in it (slots 3, 4 of handle objects; slot 16 of the factory)",
        needs, namesWhatItDenotes);
    handles.add("handle objects in arrays",
                "slot 39 answers with the handle object at an element, slot 40 stores one", needs, inArrays);
    handles.add("handle objects are told apart", "isEqual is element-wise equality (slot 36)", needs,
                differInOneByte);
    handles.add("handle objects are retained and released", "setElementObject borrows (slot 60)", needs,
                balance);
}

} // namespace vexa::check
