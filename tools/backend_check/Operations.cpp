#include "Operations.hpp"

#include <foundation/vexadata/Enumeration.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <vexa/data/detail/ForwardIteratorImpl.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>

#include <cstdint>
#include <cstring>

namespace vexa::check {

namespace {

using data::detail::ForwardIteratorImpl;
using data::impl::PropertyImpl;
using Deleter = void (*)(void*);
using Needs = std::vector<std::string>;

const Needs objectNeeds{"object-array", "value-object", "class", "double"};

Iterator owned(IteratorImpl* iterator, const char* operation) {
    if (iterator == nullptr) fail(std::string(operation) + " returns null");
    return Iterator(iterator);
}

bool isPrimitive(const ArrayImpl& array) {
    return withElementType(array.getType(), [](auto) {});
}

/// What an iterator that was made in a trial stands on.
void expectDistance(const IteratorImpl& from, const IteratorImpl& to, std::size_t wanted) {
    expectEqual("the distance between the iterators that it gives", from.distanceTo(to),
                static_cast<std::int64_t>(wanted));
}

/// Walks what two calls give, each in a trial.
template <class Begin, class End>
void walk(Trial& trial, Begin begin, End end, std::size_t wanted) {
    const auto here = adopt(trial(begin), "the beginning");
    const auto last = adopt(trial(end), "the end");
    std::size_t count = 0;
    for (; !here->equal(last.get()) && count <= wanted; here->increment(), ++count) {
        adopt(trial([&] { return here->get(); }), "get of an iterator");
        adopt(trial([&] { return here->clone(); }), "clone of an iterator");
    }
    expectEqual("the number of objects that an iterator passes", count, wanted);
}

// --- arrays of every kind

void addForAll(std::vector<Operation>& all) {
    all.push_back({"sharedCopy", "any", true, {}, [](const Backend&, Subject& subject, Trial& trial) {
                       const auto copy =
                           adopt(trial([&] { return subject.array->sharedCopy(); }), "sharedCopy");
                       expectContents("the copy", *copy, subject.model.contents());
                   }});
    for (const bool writable : {false, true})
        all.push_back(
            {writable ? "a writable iterator" : "an iterator",
             "any",
             false,
             {},
             [writable](const Backend&, Subject& subject, Trial& trial) {
                 ArrayImpl& array = *subject.array;
                 const Iterator begin =
                     owned(trial([&] { return array.beginIterator(nullptr, writable); }), "beginIterator");
                 const Iterator end =
                     owned(trial([&] { return array.endIterator(nullptr, writable); }), "endIterator");
                 expectDistance(*begin, *end, subject.model.size());
                 const Iterator clone = owned(trial([&] { return end->clone(); }), "clone");
                 expectDistance(*begin, *clone, subject.model.size());
                 if (isPrimitive(array) || isSparse(array.getType())) return;
                 const auto chain = adopt(trial([&] { return begin->createReference(); }), "createReference");
                 expectEqual("getLinearIndex of the chain", chain->getLinearIndex(), 0);
             }});
    all.push_back(
        {"a chain kept by an iterator", "any", false, {}, [](const Backend&, Subject& subject, Trial& trial) {
             auto* chain = new data::detail::ArrayReferenceImpl(subject.array.get());
             const Owned<ReferenceImpl> kept(chain);
             const Iterator begin = beginOf(*subject.array);
             trial([&] {
                 chain->retain();
                 begin->saveReference(chain);
             });
             owned(trial([&] { return begin->clone(); }), "clone");
         }});
    all.push_back({"unshare", "any", false, {}, [](const Backend&, Subject& subject, Trial& trial) {
                       trial([&] { subject.array->unshare(); });
                   }});
    all.push_back(
        {"isEqual", "any", true, {}, [](const Backend&, Subject& subject, Trial& trial) {
             if (subject.others.empty()) return;
             bool equal = false;
             try {
                 equal = trial([&] { return subject.array->isEqual(subject.others.front().first.get()); });
             } catch (...) {
                 fail("isEqual throws " + describeException() + ", which it must not");
             }
             if (trial.fired() || subject.model.contents() != subject.others.front().second.contents())
                 return;
             const std::optional<bool> wanted = subject.model.equalsItself();
             expect(!wanted || equal == *wanted, "isEqual of an array and its copy is " + show(equal));
         }});
    all.push_back(
        {"isEqual of another", "any", true, {}, [](const Backend& backend, Subject& subject, Trial& trial) {
             const auto other = subject.origin->make(backend, subject.dimensions, alike);
             const bool equal = subject.array->isEqual(other.get());
             try {
                 const bool answers[]{trial([&] { return subject.array->isEqual(other.get()); }),
                                      trial([&] { return other->isEqual(subject.array.get()); })};
                 expect(equal || !(answers[0] || answers[1]), "isEqual of different arrays is true");
             } catch (const Failure&) {
                 throw;
             } catch (...) {
                 fail("isEqual throws " + describeException() + ", which it must not");
             }
             expectOneReference("an array that was compared", *other);
         }});
    all.push_back(
        {"questions that do not throw", "any", true, {}, [](const Backend&, Subject& subject, Trial& trial) {
             const ArrayImpl& array = *subject.array;
             try {
                 trial([&] {
                     array.getType();
                     array.getMemoryLayout();
                     array.getNumberOfElements();
                     array.isEmpty();
                     array.getArrayID();
                     return array.getDimensions().data();
                 });
             } catch (...) {
                 fail("one of the operations that must not throw throws " + describeException());
             }
             expectEqual("getDimensions", array.getDimensions(), subject.dimensions);
         }});
    all.push_back(
        {"making the array", "any", false, {}, [](const Backend& backend, Subject& subject, Trial& trial) {
             const auto made = trial(
                 [&] { return subject.origin->make(backend, subject.dimensions, subject.model.pattern()); });
             const Model model(backend, subject.model.sample(), subject.model.pattern(), subject.dimensions);
             expectContents("the array made", *made, model.contents());
         }});
    for (std::size_t number = 0; number < 4; ++number)
        all.push_back({"a write by writer " + show(number + 1),
                       "any",
                       false,
                       {},
                       [number](const Backend& backend, Subject& subject, Trial& trial) {
                           const auto& writers = subject.model.sample().writers;
                           if (number < writers.size())
                               trial([&] {
                                   subject.model.change(backend, *subject.array, subject.model.size() - 1,
                                                        writers[number]);
                               });
                       }});
}

// --- numbers

/// Elements in the order of positions.
void expectBuffer(const ArrayImpl& shape, const Subject& subject, const void* memory, Deleter deleter) {
    expect(memory != nullptr && deleter != nullptr, "the buffer or its deleter is null");
    const Buffer<void> buffer(const_cast<void*>(memory), deleter);
    withElementType(subject.array->getType(), [&](auto tag) {
        using T = typename decltype(tag)::type;
        for (std::size_t k = 0; k < subject.model.size(); ++k)
            expectEqual("an element of the buffer", show(static_cast<const T*>(memory)[positionAt(shape, k)]),
                        subject.model.contents()[k]);
    });
}

void addForNumbers(std::vector<Operation>& all) {
    all.push_back({"copyOutBuffer",
                   "number",
                   true,
                   {"copy-out-buffer"},
                   [](const Backend&, Subject& subject, Trial& trial) {
                       void* memory = nullptr;
                       Deleter deleter = nullptr;
                       trial([&] { subject.array->copyOutBuffer(memory, deleter); });
                       expectBuffer(*subject.array, subject, memory, deleter);
                   }});
    all.push_back({"releaseBuffer",
                   "number",
                   false,
                   {"release-buffer"},
                   [](const Backend&, Subject& subject, Trial& trial) {
                       void* memory = nullptr;
                       Deleter deleter = nullptr;
                       const auto copy = adopt(subject.array->sharedCopy(), "sharedCopy");
                       trial([&] { subject.array->releaseBuffer(memory, deleter); });
                       expectBuffer(*copy, subject, memory, deleter);
                       subject.array = share(*copy); // what is left of it is the back-end's choice
                   },
                   true});
    all.push_back(
        {"reading elements", "number", true, {}, [](const Backend&, Subject& subject, Trial& trial) {
             withElementType(subject.array->getType(), [&](auto tag) {
                 const auto& array = std::as_const(asNumbers<typename decltype(tag)::type>(*subject.array));
                 const auto* first = trial([&] { return array.getTypedDataPtr(); });
                 trial([&] { return array.getUntypedDataPtr(); });
                 expectEqual("the first element", show(*first), subject.model.contents()[0]);
             });
         }});
}

// --- cells, structs

void addForHolders(std::vector<Operation>& all) {
    for (const char* kind : {"cell", "struct"}) {
        const std::string field = *kind == 's' ? "a" : "";
        for (const bool forWrite : {false, true})
            all.push_back({"createElementReference",
                           kind,
                           false,
                           {},
                           [=](const Backend&, Subject& subject, Trial& trial) {
                               const auto chain =
                                   adopt(trial([&] {
                                             return subject.array->createElementReference(1, field, forWrite);
                                         }),
                                         "createElementReference");
                               expect(chain->getArrayImpl() != nullptr, "the chain has no array");
                               trial([&] { chain->prepareForWrite(); });
                               expect(subject.model.contents()[1].find(shownArray(*chain->getArrayImpl())) !=
                                          std::string::npos,
                                      "the chain leads to another array");
                           }});
        all.push_back({"slot 14", kind, false, {}, [=](const Backend&, Subject& subject, Trial& trial) {
                           const auto chain =
                               adopt(trial([&] { return subject.array->forwardingOp(1, field); }), "slot 14");
                           expect(chain->getArrayImpl() != nullptr, "the chain has no array");
                       }});
        all.push_back(
            {"a write inside an element",
             kind,
             false,
             {},
             [=](const Backend& backend, Subject& subject, Trial& trial) {
                 if (subject.model.pattern() != counting) return;
                 const std::size_t k = subject.model.size() - 1;
                 const auto held =
                     adopt(subject.array->createElementReference(k, field, false), "createElementReference");
                 const auto owner = share(*held->getArrayImpl());
                 const std::string before = shownArray(*owner);
                 trial([&] {
                     const auto chain = adopt(subject.array->createElementReference(k, field, true),
                                              "createElementReference");
                     chain->prepareForWrite();
                     auto& array = asNumbers<double>(*chain->getArrayImpl());
                     array.setElementValue(0, {}, read(array, 0));
                 });
                 expectEqual("the array that is in the element and elsewhere", shownArray(*owner), before);
                 static_cast<void>(backend);
             }});
    }
    all.push_back(
        {"getField", "struct", true, {}, [](const Backend&, Subject& subject, Trial& trial) {
             const auto value =
                 adopt(trial([&] { return asStructs(*subject.array).getField(1, "a"); }), "getField");
             expect(subject.model.contents()[1].find("a=" + shownArray(*value)) != std::string::npos,
                    "it gives another array");
         }});
    all.push_back(
        {"the field names", "struct", false, {}, [](const Backend&, Subject& subject, Trial& trial) {
             StructArrayImpl& structs = asStructs(*subject.array);
             walk(
                 trial, [&] { return structs.fieldNamesBegin(); }, [&] { return structs.fieldNamesEnd(); },
                 structs.getNumFields());
         }});
    all.push_back(
        {"the field values", "struct", false, {}, [](const Backend&, Subject& subject, Trial& trial) {
             StructArrayImpl& structs = asStructs(*subject.array);
             const Iterator here = owned(trial([&] { return structs.createFieldValuesIterator(1, false); }),
                                         "createFieldValuesIterator");
             const Iterator end = owned(trial([&] { return structs.createFieldValuesIterator(1, true); }),
                                        "createFieldValuesIterator");
             expectDistance(*here, *end, 2);
             owned(trial([&] { return here->clone(); }), "clone");
             const auto chain = adopt(trial([&] { return here->createReference(); }), "createReference");
             expect(trial([&] { return chain->getElementArray(false); }) != nullptr,
                    "the chain has no array");
         }});
}

// --- texts, members, sparse matrices

void addForTexts(std::vector<Operation>& all) {
    all.push_back({"castToString", "string", true, {}, [](const Backend&, Subject& subject, Trial& trial) {
                       if (subject.model.pattern() != counting) return;
                       expectEqual("castToString",
                                   show(trial([&] { return subject.array->castToString(1, {}); })),
                                   subject.model.contents()[1]);
                   }});
    all.push_back(
        {"getStringElement", "string", true, {}, [](const Backend&, Subject& subject, Trial& trial) {
             const char16_t* text = nullptr;
             std::size_t length = 0;
             trial([&] { subject.array->getStringElement(1, text, length); });
             expectEqual("getStringElement", text == nullptr ? "missing" : show(std::u16string(text, length)),
                         subject.model.contents()[1]);
         }});
    all.push_back(
        {"setString", "string", false, {}, [](const Backend& backend, Subject& subject, Trial& trial) {
             const std::string text(40, 'n');
             trial([&] { subject.array->setString(0, {}, text); });
             expectEqual("the text written", shownString(*subject.array, 0), show(text));
             const Element element = subject.model[0];
             subject.model.sample().writers[0].write(backend, *subject.array, 0, subject.model.pattern(),
                                                     element);
         }});
    all.push_back(
        {"castToString", "enumeration", true, {}, [](const Backend&, Subject& subject, Trial& trial) {
             expectEqual("castToString", trial([&] { return subject.array->castToString(1, {}); }),
                         subject.model.contents()[1]);
         }});
    all.push_back({"names of members and of the class",
                   "enumeration",
                   true,
                   {},
                   [](const Backend&, Subject& subject, Trial& trial) {
                       const EnumArrayImpl& array = asEnums(*subject.array);
                       const char* name = trial([&] { return array.getEnumNameAt(1); });
                       const char* className = trial([&] { return array.getClassName(); });
                       expectEqual("getEnumNameAt", std::string(name == nullptr ? "null" : name),
                                   subject.model.contents()[1]);
                       expectEqual("getClassName", std::string(className == nullptr ? "null" : className),
                                   "Colors");
                   }});
    for (const char* kind : {"sparse-logical", "sparse-double", "sparse-complex-double"})
        all.push_back(
            {"places of non-zeros", kind, true, {}, [](const Backend&, Subject& subject, Trial& trial) {
                 const ArrayImpl& array = *subject.array;
                 for (std::size_t k = 0; k < subject.model.size(); ++k) {
                     const auto place = trial([&] { return array.getIndex(k); });
                     expect(subject.model.contents()[k].rfind(show(place), 0) == 0,
                            "getIndex gives another place");
                     const std::size_t* starts = trial([&] { return array.getJc(); });
                     const std::size_t* rows = trial([&] { return array.getIr(); });
                     expect(rows[k] == place.first && starts[place.second] <= k &&
                                k < starts[place.second + 1],
                            "getJc and getIr give another place");
                 }
                 expectEqual("getRows", trial([&] { return array.getRows(); }), subject.dimensions[0]);
                 expectEqual("getCols", trial([&] { return array.getCols(); }), subject.dimensions[1]);
             }});
}

// --- objects

void expectTwo(const std::vector<std::string>& names, const std::vector<std::string>& wanted) {
    expectEqual("the names", names, wanted);
}

void addForObjects(std::vector<Operation>& all) {
    const auto add = [&](const char* name, bool constant, auto run) {
        all.push_back({name,
                       "object-array",
                       constant,
                       {},
                       [run](const Backend& backend, Subject& subject, Trial& trial) {
                           run(backend, subject, asObjects(*subject.array), trial);
                       }});
    };
    add("getElementObject", true, [](const Backend&, Subject& subject, ObjectArrayImpl& array, Trial& trial) {
        const auto object = adopt(trial([&] { return array.getElementObject(1); }), "getElementObject");
        expectEqual("the object", shownObject(*object), subject.model.contents()[1]);
    });
    add("getElementProperty", true,
        [](const Backend&, Subject& subject, ObjectArrayImpl& array, Trial& trial) {
            const fv::VexaPropertyIdentifier id = property("x");
            fv::Array value = trial([&] { return array.getElementProperty(1, id); });
            expect(subject.model.contents()[1].rfind(
                       "x=" + shownArray(*fv::detail::Access::impl(value)) + ",", 0) == 0,
                   "it gives another value");
        });
    add("the properties of an element", false,
        [](const Backend&, Subject&, ObjectArrayImpl& array, Trial& trial) {
            walk(
                trial, [&] { return array.beginElementProperties(1); },
                [&] { return array.endElementProperties(1); }, 2);
        });
    add("the array properties", false, [](const Backend&, Subject&, ObjectArrayImpl& array, Trial& trial) {
        walk(
            trial, [&] { return array.beginArrayProp(); }, [&] { return array.endArrayProp(); }, 1);
        walk(
            trial, [&] { return array.cbeginArrayProp(); }, [&] { return array.cendArrayProp(); }, 1);
    });
    add("questions about array properties", true,
        [](const Backend&, Subject& subject, ObjectArrayImpl& array, Trial& trial) {
            const fv::VexaPropertyIdentifier id = property("unit");
            expect(trial([&] { return array.hasArrayProperty(id); }), "hasArrayProperty is false");
            expectEqual("numOfArrayProperties", trial([&] { return array.numOfArrayProperties(); }), 1);
            const fv::Array unit = trial([&] { return array.getArrayProperty(id); });
            expectEqual("getArrayProperty", shownArray(*fv::detail::Access::impl(unit)), "1x1 double [0]");
            trial([&] { return array.getExternalDimensions(); });
            trial([&] { return array.isExternalDimensionsSet(); });
            expect(!trial([&] { return array.isHeterogeneous(); }), "isHeterogeneous is true");
            expectTwo(trial([&] { return array.getExternalRepresentationArrayPropertyNames(); }), {"unit"});
            if (!subject.others.empty())
                expect(
                    trial([&] { return array.isEqualArrayProperties(subject.others.front().first.get()); }) ||
                        trial.fired(),
                    "isEqualArrayProperties of a copy is false");
        });
    add("a write to an array property", false,
        [](const Backend& backend, Subject&, ObjectArrayImpl& array, Trial& trial) {
            const auto value = scalar(backend, 5);
            const auto chain = adopt(trial([&] { return array.getArrayPropertyReference(property("unit")); }),
                                     "getArrayPropertyReference");
            trial([&] { chain->setArray(value.get()); });
            const fv::Array before = array.getArrayProperty(property("unit"));
            ArrayImpl* held = trial([&] { return chain->getElementArray(true); });
            expect(held != nullptr, "the reference to an array property has no array");
            write(asNumbers<double>(*held), 0, 6.0);
            expectEqual("a value taken before the write", shownArray(*fv::detail::Access::impl(before)),
                        "1x1 double [5]");
            chain->setArray(scalar(backend, 0).get());
        });
    add("getClassInfo", false, [](const Backend&, Subject&, ObjectArrayImpl& array, Trial& trial) {
        expectEqual("the class", trial([&] { return array.getClassInfo(); }).getClassIdentifier().getString(),
                    "Point");
    });
    add("sharedCopy of an object", true,
        [](const Backend&, Subject& subject, ObjectArrayImpl& array, Trial& trial) {
            const auto object = adopt(array.getElementObject(1), "getElementObject");
            const auto copy = adopt(trial([&] { return std::as_const(*object).sharedCopy(); }), "sharedCopy");
            expectEqual("the copy", shownObject(*copy), subject.model.contents()[1]);
        });
    add("getProperty", true, [](const Backend&, Subject& subject, ObjectArrayImpl& array, Trial& trial) {
        const auto object = adopt(array.getElementObject(1), "getElementObject");
        const fv::VexaPropertyIdentifier id = property("x");
        const auto value = trial([&] { return object->getProperty(id); });
        expect(value != nullptr, "getProperty returns null");
        expect(subject.model.contents()[1].rfind("x=" + shownArray(*value) + ",", 0) == 0,
               "it gives another value");
        expect(trial([&] { return object->hasProperty(id); }), "hasProperty is false");
        expectEqual("numOfProperties", trial([&] { return object->numOfProperties(); }), 2);
        expectTwo(trial([&] { return object->getExternalRepresentationPropertyNames(); }), {"x", "y"});
    });
    add("the properties of an object", false,
        [](const Backend& backend, Subject&, ObjectArrayImpl&, Trial& trial) {
            const auto object = newPoint(backend, 1, 2);
            walk(
                trial, [&] { return object->begin(); }, [&] { return object->end(); }, 2);
            walk(
                trial, [&] { return object->cbegin(); }, [&] { return object->cend(); }, 2);
            const auto here = adopt(object->begin(), "begin");
            const auto one = adopt(here->get(), "get");
            auto& view = dynamic_cast<PropertyImpl&>(*one);
            expect(trial([&] { return view.getValue(); }) != nullptr, "getValue returns null");
            const auto chain = adopt(trial([&] { return view.getReference(); }), "getReference");
            const auto before = object->getProperty(property("x"));
            ArrayImpl* held = trial([&] { return chain->getElementArray(true); });
            expect(held != nullptr, "the reference to a property has no array");
            write(asNumbers<double>(*held), 0, 6.0);
            expectEqual("a value taken before the write", scalarValue(*before), 1.0);
            expect(trial([&] { return chain->getElementArrayForCopy(); }) != nullptr,
                   "the reference to a property has no array to copy");
            const auto value = scalar(backend, 7);
            try {
                trial([&] { chain->setArray(value.get()); });
            } catch (...) {
                expectEqual("the property after a write that failed",
                            shownArray(*object->getProperty(property("x"))), "1x1 double [6]");
                throw;
            }
            expectEqual("the property after a write", shownArray(*object->getProperty(property("x"))),
                        "1x1 double [7]");
        });
}

// --- the factory

/// What a creator makes in a trial.
template <class F>
auto created(Trial& trial, const char* creator, F create) {
    auto made = adopt(trial(create), creator);
    expectOneReference(std::string("what ") + creator + " makes", *made);
    return made;
}

void addForFactory(std::vector<Operation>& all) {
    const auto add = [&](const char* name, Needs needs, auto run) {
        all.push_back({name, "factory", false, std::move(needs),
                       [run](const Backend& backend, Subject&, Trial& trial) { run(backend, trial); }});
    };
    add("createClassInfoImpl", {"class"}, [](const Backend& backend, Trial& trial) {
        const fv::ClassInfo above(pointClass(backend).detach());
        const fv::VexaClassIdentifier name("Pixel");
        const std::vector<fv::VexaPropertyIdentifier> properties{property("x"), property("y"), property("z")};
        const auto made = created(trial, "createClassInfoImpl", [&] {
            return backend.factory().createClassInfoImpl(name, properties, properties, {above});
        });
        walk(
            trial, [&] { return made->beginProperties(); }, [&] { return made->endProperties(); },
            made->getNumberOfProperties());
        walk(
            trial, [&] { return made->beginArrayProperties(); }, [&] { return made->endArrayProperties(); },
            made->getNumberOfArrayProperties());
        walk(
            trial, [&] { return made->beginSuperclasses(); }, [&] { return made->endSuperclasses(); }, 1);
        expect(trial([&] { return made->getClassIdentifier(); }) != nullptr,
               "getClassIdentifier returns null");
    });
    add("createValueObjectImpl", {"value-object", "class"}, [](const Backend& backend, Trial& trial) {
        const auto description = pointClass(backend);
        const auto object = created(trial, "createValueObjectImpl", [&] {
            return backend.factory().createValueObjectImpl(description.get());
        });
        expectEqual("a new object", shownObject(*object), "x=empty, y=empty");
        expectEqual("the class",
                    trial([&] { return object->getClassInfo(); }).getClassIdentifier().getString(), "Point");
    });
    add("createValueObjectScalarImpl", {"object-scalar", "value-object", "class", "double"},
        [](const Backend& backend, Trial& trial) {
            const auto object = newPoint(backend, 1, 2);
            const auto array = created(trial, "createValueObjectScalarImpl", [&] {
                return backend.factory().createValueObjectScalarImpl(object.get());
            });
            expectContents("the array", *array, {"x=1x1 double [1], y=1x1 double [2]"});
        });
    add("createValueObjectArrayImpl", {"object-array", "class"}, [](const Backend& backend, Trial& trial) {
        const auto description = pointClass(backend);
        const auto array = created(trial, "createValueObjectArrayImpl", [&] {
            return backend.factory().createValueObjectArrayImpl({2, 2}, description.get());
        });
        expectEqual("getNumberOfElements", array->getNumberOfElements(), 4);
    });
    add("createHandleObjectRefImpl", {"handle-object"}, [](const Backend& backend, Trial& trial) {
        data::impl::ZVMID engine{};
        for (std::size_t k = 0; k < sizeof engine.bytes; ++k)
            engine.bytes[k] = static_cast<unsigned char>(k + 1);
        const auto object = created(trial, "createHandleObjectRefImpl",
                                    [&] { return backend.factory().createHandleObjectRefImpl(engine, 7); });
        const auto copy = adopt(trial([&] { return object->sharedCopy(); }), "sharedCopy");
        for (ObjectImpl* one : {object.get(), copy.get()}) {
            auto* handle = dynamic_cast<data::impl::HandleObjectRefImpl*>(one);
            expect(handle != nullptr && handle->getId() == 7 &&
                       std::memcmp(handle->getZVMID().bytes, engine.bytes, sizeof engine.bytes) == 0,
                   "it is no handle object, or another one");
            trial([&] { handle->addReference(); });
        }
    });
    add("createEnumerationObjectImpl", {"enumeration-object"}, [](const Backend& backend, Trial& trial) {
        const std::string className(40, 'C');
        const std::string member(40, 'm');
        const auto object = created(trial, "createEnumerationObjectImpl", [&] {
            return backend.factory().createEnumerationObjectImpl(className, member);
        });
        const auto copy = adopt(trial([&] { return object->sharedCopy(); }), "sharedCopy");
        expectEqual("the member", std::string(copy->getEnumerationName()), member);
    });
    add("createBufferImpl", {"buffer", "double"}, [](const Backend& backend, Trial& trial) {
        for (const bool typed : {true, backend.offers("untyped-buffer") ? false : true}) {
            void* memory = nullptr;
            Deleter deleter = nullptr;
            trial([&] {
                if (typed)
                    backend.factory().createBufferImpl(memory, deleter, ArrayType::DOUBLE, 100);
                else
                    backend.factory().createUntypedBufferImpl(memory, deleter, 800);
            });
            expect(memory != nullptr && deleter != nullptr, "the buffer or its deleter is null");
            std::fill_n(static_cast<double*>(memory), 100, 1.0);
            deleter(memory);
        }
    });
    add("createArrayFromBufferImpl", {"from-buffer", "double"}, [](const Backend& backend, Trial& trial) {
        for (const auto layout : {data::MemoryLayout::COLUMN_MAJOR, data::MemoryLayout::ROW_MAJOR}) {
            // Not from malloc, which is not counted under a sanitizer.
            Buffer<void> buffer(::operator new(6 * sizeof(double)),
                                [](void* memory) { ::operator delete(memory); });
            std::fill_n(static_cast<double*>(buffer.get()), 6, 3.0);
            const auto array = created(trial, "createArrayFromBufferImpl", [&] {
                return backend.factory().createArrayFromBufferImpl({2, 3}, ArrayType::DOUBLE,
                                                                   std::move(buffer), layout);
            });
            expectContents("the array", *array, Contents(6, "3"));
        }
    });
    add("createSparseDoubleImpl", {"sparse-double"}, [](const Backend& backend, Trial& trial) {
        const auto indices = [](std::size_t first, std::size_t second) {
            auto* memory = static_cast<std::size_t*>(::operator new(2 * sizeof(std::size_t)));
            memory[0] = first;
            memory[1] = second;
            return Buffer<std::size_t[]>(memory, [](void* block) { ::operator delete(block); });
        };
        for (const bool compressed : {false, backend.offers("compressed-columns")}) {
            auto* values = static_cast<double*>(::operator new(2 * sizeof(double)));
            values[0] = values[1] = 2;
            Buffer<double[]> owner(values, [](void* block) { ::operator delete(block); });
            auto rows = indices(1, 0);
            auto columns = compressed ? indices(0, 2) : indices(0, 0);
            const auto create = compressed ? &ArrayFactoryImpl::createVexaSparseDoubleImpl
                                           : &ArrayFactoryImpl::createSparseDoubleImpl;
            const auto array =
                adopt(trial([&] {
                          return (backend.factory().*create)({2, 1}, 2, std::move(owner), std::move(rows),
                                                             std::move(columns));
                      }),
                      "the creator of sparse arrays");
            expectContents("the array", *array, {"(0,0)=2", "(1,0)=2"});
        }
    });
}

std::vector<Operation> allOperations() {
    std::vector<Operation> all;
    for (const auto add :
         {&addForAll, &addForNumbers, &addForHolders, &addForTexts, &addForObjects, &addForFactory})
        add(all);
    return all;
}

// --- refusals

/// More bytes than an address can tell, for any size of an element; less than two of its own remain of them.
constexpr std::size_t hugeCounts[]{(std::size_t(1) << 60) + 1, (std::size_t(1) << 61) + 1,
                                   (std::size_t(1) << 62) + 1, (std::size_t(1) << 63) + 1};

/// Null is no refusal: handles take it for an array.
void refused(ArrayImpl* made) {
    expect(made != nullptr, "a creator returns null, where it should throw");
    made->release();
}

std::vector<Refusal> allRefusals() {
    std::vector<Refusal> all;
    const auto add = [&](const char* name, const char* kind, Needs needs,
                         std::function<void(const Backend&, ArrayImpl&)> run) {
        all.push_back({name, kind, std::move(needs), std::move(run)});
    };
    add("getField of an unknown field", "struct", {},
        [](const Backend&, ArrayImpl& array) { Owned<ArrayImpl>(asStructs(array).getField(0, "nowhere")); });
    add("assignElementArray to an unknown field", "struct", {"double"},
        [](const Backend& backend, ArrayImpl& array) { assign(array, 0, "nowhere", *scalar(backend, 1)); });
    add("createElementReference to an unknown field", "struct", {}, [](const Backend&, ArrayImpl& array) {
        adopt(array.createElementReference(0, "nowhere", true), "createElementReference");
    });
    add("getElementProperty of an unknown one", "object-array", {}, [](const Backend&, ArrayImpl& array) {
        asObjects(array).getElementProperty(0, property("nowhere"));
    });
    add("getArrayProperty of an unknown one", "object-array", {},
        [](const Backend&, ArrayImpl& array) { asObjects(array).getArrayProperty(property("nowhere")); });
    add("getArrayPropertyReference of an unknown one", "object-array", {},
        [](const Backend&, ArrayImpl& array) {
            Owned<ReferenceImpl>(asObjects(array).getArrayPropertyReference(property("nowhere")));
        });
    add("getProperty of an unknown one", "object-array", {}, [](const Backend& backend, ArrayImpl&) {
        newPoint(backend, 1, 2)->getProperty(property("nowhere"));
    });
    add("getPropertyReference of an unknown one", "object-array", {}, [](const Backend& backend, ArrayImpl&) {
        Owned<ReferenceImpl>(newPoint(backend, 1, 2)->getPropertyReference(property("nowhere")));
    });
    add("castToString of what is not ASCII", "string", {}, [](const Backend&, ArrayImpl& array) {
        setString(asStrings(array), 0, fv::String(std::u16string(40, u'\u00e9')));
        array.castToString(0, {});
    });
    for (const char* kind : {"number", "string", "enumeration"})
        add("assignElementArray to an element that holds none", kind, {},
            [](const Backend&, ArrayImpl& array) {
                const auto other = adopt(array.sharedCopy(), "sharedCopy");
                array.assignElementArray(0, {}, other.get());
            });
    for (const char* kind : {"number", "cell", "string", "struct", "enumeration", "object-array"}) {
        add("getJc of what is not sparse", kind, {}, [](const Backend&, ArrayImpl& array) { array.getJc(); });
        add("getIr of what is not sparse", kind, {}, [](const Backend&, ArrayImpl& array) { array.getIr(); });
    }
    for (const char* kind : {"cell", "string", "struct", "enumeration", "object-array"})
        add("copyOutBuffer of what is not contiguous", kind, {}, [](const Backend&, ArrayImpl& array) {
            void* memory = nullptr;
            Deleter deleter = nullptr;
            array.copyOutBuffer(memory, deleter);
        });
    add("createArrayImpl of no type", "factory", {}, [](const Backend& backend, ArrayImpl&) {
        try {
            refused(backend.factory().createArrayImpl(static_cast<ArrayType>(77), {2, 3}));
        } catch (const fv::InvalidArrayTypeException&) {
            throw;
        } catch (...) {
            fail("createArrayImpl of no type throws " + describeException() +
                 ", expected InvalidArrayTypeException");
        }
    });
    add("createArrayFromBufferImpl of no layout", "number", {"from-buffer"},
        [](const Backend& backend, ArrayImpl& array) {
            Buffer<void> buffer(::operator new(16), [](void* memory) { ::operator delete(memory); });
            refused(backend.factory().createArrayFromBufferImpl({1, 1}, array.getType(), std::move(buffer),
                                                                data::MemoryLayout::NONE));
        });
    add("createArrayFromBufferImpl without storage for elements", "number", {"from-buffer"},
        [](const Backend& backend, ArrayImpl& array) {
            refused(backend.factory().createArrayFromBufferImpl({1, 2}, array.getType(),
                                                                Buffer<void>(nullptr, &std::free),
                                                                data::MemoryLayout::COLUMN_MAJOR));
        });
    for (const bool compressed : {false, true})
        for (std::size_t missing = 0; missing < 3; ++missing)
            add(compressed ? "createVexaSparseDoubleImpl without storage for non-zeros"
                           : "createSparseDoubleImpl without storage for non-zeros",
                "factory", {"sparse-double", compressed ? "compressed-columns" : "sparse-double"},
                [=](const Backend& backend, ArrayImpl&) {
                    const auto indices = [&](std::size_t place) {
                        return place == missing ? Buffer<std::size_t[]>(nullptr, &std::free)
                                                : bufferOf<std::size_t>({0, place});
                    };
                    auto values =
                        missing == 0 ? Buffer<double[]>(nullptr, &std::free) : bufferOf<double>({1, 2});
                    const auto create = compressed ? &ArrayFactoryImpl::createVexaSparseDoubleImpl
                                                   : &ArrayFactoryImpl::createSparseDoubleImpl;
                    refused((backend.factory().*create)({3, compressed ? 1U : 3U}, 2, std::move(values),
                                                        indices(1), indices(2)));
                });
    add("column starts of more columns than memory has", "factory", {"sparse-double"},
        [](const Backend& backend, ArrayImpl&) {
            adopt(createSparse(backend.factory(), ArrayType::SPARSE_DOUBLE, {1, SIZE_MAX}, {}, {}, {}, false),
                  "createSparseDoubleImpl")
                ->getJc();
        });
    add("createArrayWithDataImpl of cells", "factory", {"data"}, [](const Backend& backend, ArrayImpl&) {
        const double data[2]{};
        refused(backend.factory().createArrayWithDataImpl(ArrayType::CELL, {1, 2}, data, 2));
    });
    add("createArrayFromBufferImpl of cells", "factory", {"from-buffer"},
        [](const Backend& backend, ArrayImpl&) {
            Buffer<void> buffer(::operator new(16), [](void* memory) { ::operator delete(memory); });
            refused(backend.factory().createArrayFromBufferImpl({1, 2}, ArrayType::CELL, std::move(buffer),
                                                                data::MemoryLayout::COLUMN_MAJOR));
        });
    add("createValueObjectImpl of no class", "factory", {"value-object"},
        [](const Backend& backend, ArrayImpl&) {
            adopt(backend.factory().createValueObjectImpl(nullptr), "createValueObjectImpl");
        });
    add("createValueObjectArrayImpl of no class", "factory", {"object-array"},
        [](const Backend& backend, ArrayImpl&) {
            refused(backend.factory().createValueObjectArrayImpl({1, 2}, nullptr));
        });
    add("createBufferImpl of cells", "factory", {"buffer"}, [](const Backend& backend, ArrayImpl&) {
        void* memory = nullptr;
        Deleter deleter = nullptr;
        backend.factory().createBufferImpl(memory, deleter, ArrayType::CELL, 2);
    });
    for (const std::size_t count : hugeCounts) {
        add("an array of more bytes than memory has", "any", {},
            [count](const Backend& backend, ArrayImpl& array) {
                const ArrayType type = array.getType();
                if (isSparse(type)) throw NotOffered{}; // their size is that of the non-zeros
                if (type == ArrayType::STRUCT)
                    refused(backend.factory().createStructArrayImpl({count, 1}, {"a", "b"}));
                else if (type == ArrayType::ENUM)
                    refused(backend.factory().createEnumArrayImpl({count, 1}, "C", {}));
                else
                    refused(backend.factory().createArrayImpl(type, {count, 1}));
            });
        add("data for an array of more bytes than memory has", "number", {"data"},
            [count](const Backend& backend, ArrayImpl& array) {
                const double data[2]{};
                refused(backend.factory().createArrayWithDataImpl(array.getType(), {count, 1}, data, 1));
            });
        add("a buffer of more bytes than memory has", "number", {"buffer"},
            [count](const Backend& backend, ArrayImpl& array) {
                void* memory = nullptr;
                Deleter deleter = nullptr;
                backend.factory().createBufferImpl(memory, deleter, array.getType(), count);
            });
    }
    return all;
}

} // namespace

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all = allOperations();
    return all;
}
const std::vector<Refusal>& refusals() {
    static const std::vector<Refusal> all = allRefusals();
    return all;
}

bool applies(const Backend& backend, const Operation& operation, const Sample& sample) {
    return offersAll(backend, operation.needs) && (operation.kind == "any" || operation.kind == sample.name ||
                                                   (operation.kind == "number" && sample.primitive));
}

Subject newSubject(const Backend& backend, const Sample& sample, const Origin& origin, bool copied,
                   std::size_t pattern, bool large) {
    const Dimensions dimensions = large               ? Dimensions{40, 30}
                                  : sample.parts == 2 ? Dimensions{1, 2}
                                                      : Dimensions{2, 3};
    Subject subject{show(dimensions) + " " + sample.name + " array" + origin.name +
                        (copied ? " that has a copy" : ""),
                    origin.make(backend, dimensions, pattern), Model(backend, sample, pattern, dimensions),
                    dimensions, &origin};
    if (copied) subject.others.emplace_back(adopt(subject.array->sharedCopy(), "sharedCopy"), subject.model);
    return subject;
}

} // namespace vexa::check
