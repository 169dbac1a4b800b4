// Arrays of value objects, their objects and classes.
#include "ArrayWriter.hpp"
#include "Order.hpp"

#include <foundation/vexadata/ValueObjectArray.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>
#include <vexa/data/impl/ObjectArrayImpl.hpp>

#include <utility>

namespace vexa::storage {

namespace {

using Identifiers = std::vector<fv::VexaPropertyIdentifier>;
using data::impl::ObjectArrayImpl;

template <class Range>
Identifiers identifiers(const Range& range) {
    Identifiers all;
    for (const fv::VexaPropertyIdentifier& id : range) {
        all.push_back(id);
    }
    return all;
}

/// Own properties by their names, inherited ones as the class that defines them and the name.
void putIdentifiers(Output& out, const Identifiers& all, const std::string& className) {
    putArray(out, all.size());
    for (const fv::VexaPropertyIdentifier& id : all) {
        const std::string& qualifier = Access::impl(id)->className();
        if (!qualifier.empty() && qualifier != className) {
            putArray(out, 2);
            putName(out, qualifier);
        }
        putName(out, Access::impl(id)->propertyName());
    }
}

std::vector<fv::ClassInfo> superclassesOf(const fv::ClassInfo& info) {
    std::vector<fv::ClassInfo> all;
    for (const fv::ClassInfo& superclass : info.getSuperclasses()) {
        all.push_back(superclass);
    }
    return all;
}

/// The values of properties, which are asked for one by one: of an object or of an array.
template <class Owner>
class PropertiesFrame final : public WriteFrame {
public:
    PropertiesFrame(Owner owner, Identifiers ids) : owner_(std::move(owner)), ids_(std::move(ids)) {}

    bool next(ArrayWriter& writer) override {
        if (next_ == ids_.size()) {
            return false;
        }
        const fv::Array value = owner_[ids_[next_++]];
        writer.begin(*Access::impl(value), ownersOf(value) - 1);
        return true;
    }

private:
    const Owner owner_;
    Identifiers ids_;
    std::size_t next_ = 0;
};

class ObjectsFrame final : public WriteFrame {
public:
    ObjectsFrame(fv::ValueObjectArray array, Identifiers arrayProperties)
        : array_(std::move(array)), arrayProperties_(std::move(arrayProperties)) {}

    bool next(ArrayWriter& writer) override {
        if (next_ < array_.getNumberOfElements()) {
            putObject(writer, objectAt(next_++));
            return true;
        }
        if (!std::exchange(propertiesBegun_, true)) {
            putText(writer.out(), "properties");
            putArray(writer.out(), arrayProperties_.size());
            writer.push(std::make_unique<PropertiesFrame<fv::ValueObjectArray>>(array_, arrayProperties_));
            return true;
        }
        if (array_.isExternalDimensionsSet()) {
            putText(writer.out(), "shown");
            putDimensions(writer.out(), array_.getExternalDimensions());
        }
        return false;
    }

private:
    fv::ValueObject objectAt(std::size_t k) const {
        const auto& impl = static_cast<const ObjectArrayImpl&>(*Access::impl(array_));
        const bool isRowMajor = array_.getMemoryLayout() == data::MemoryLayout::ROW_MAJOR;
        return fv::ValueObject(
            impl.getElementObject(isRowMajor ? rowMajorPlace(impl.getDimensions(), k) : k));
    }
    static void putObject(ArrayWriter& writer, fv::ValueObject object) {
        const auto& impl = Access::impl(object);
        if (impl == nullptr) {
            putNull(writer.out());
            return;
        }
        if (fv::detail::handleObject(object) != nullptr) {
            writer.refuse("has handle objects, which live in an engine and in no file");
        }
        if (writer.refer(impl.get())) {
            return;
        }
        writer.keep(object);
        if (const char* const member = impl->getEnumerationName()) {
            putMap(writer.out(), 2);
            putText(writer.out(), "enum");
            putName(writer.out(), impl->getClassInfo().getClassIdentifier().getString());
            putText(writer.out(), "member");
            putName(writer.out(), member);
            return;
        }
        const fv::ClassInfo info = impl->getClassInfo();
        putArray(writer.out(), 1 + info.getNumberOfProperties());
        const Identifiers& ids = writer.putClass(info);
        writer.push(std::make_unique<PropertiesFrame<fv::ValueObject>>(std::move(object), ids));
    }

    const fv::ValueObjectArray array_;
    Identifiers arrayProperties_;
    std::size_t next_ = 0;
    bool propertiesBegun_ = false;
};

} // namespace

auto ArrayWriter::knownClass(const fv::ClassInfo& info, int depth) -> const KnownClass& {
    const void* const address = Access::impl(info).get();
    if (refer(address)) {
        return classes_.at(address);
    }
    KnownClass known{info, identifiers(info.getPropertyIDs()), 1};
    const std::string name = info.getClassIdentifier().getString();
    putArray(out_, 4);
    putName(out_, name);
    putIdentifiers(out_, known.properties, name);
    putIdentifiers(out_, identifiers(info.getArrayPropertyIDs()), name);
    const std::vector<fv::ClassInfo> superclasses = superclassesOf(info);
    putArray(out_, superclasses.size());
    for (const fv::ClassInfo& superclass : superclasses) {
        known.ways += depth < mostSuperclasses ? knownClass(superclass, depth + 1).ways : mostWaysUp;
        if (known.ways > mostWaysUp) {
            refuse("has a class with more superclasses than files may have");
        }
    }
    return classes_.emplace(address, std::move(known)).first->second;
}

std::unique_ptr<WriteFrame> beginObjects(ArrayWriter& writer, const ArrayImpl& array) {
    Output& out = writer.out();
    auto objects = handleOf<fv::ValueObjectArray>(array);
    const fv::ClassInfo info = objects.getClassInfo();
    const bool hasClass = array.getType() == ArrayType::VALUE_OBJECT && !objects.isHeterogeneous() &&
                          !info.getClassIdentifier().getString().empty();
    if (!hasClass && objects.hasArrayProperties()) {
        writer.refuse("has an array of objects with properties of its own but no class");
    }
    putKind(out, objects.isExternalDimensionsSet() ? 6 : 5, array.getType(), array.getDimensions());
    putText(out, "class");
    Identifiers arrayProperties;
    if (hasClass) {
        writer.putClass(info);
        arrayProperties = identifiers(info.getArrayPropertyIDs());
    } else {
        putNull(out);
    }
    putText(out, "objects");
    putArray(out, array.getNumberOfElements());
    return std::make_unique<ObjectsFrame>(std::move(objects), std::move(arrayProperties));
}

} // namespace vexa::storage
