// Arrays of value objects, their objects and classes.
#include "ArrayReader.hpp"

#include <foundation/vexadata/ValueObjectArray.hpp>
#include <vexa/client/Objects.hpp>
#include <vexa/data/impl/IdentifierImpl.hpp>
#include <vexa/data/impl/ObjectArrayImpl.hpp>

#include <utility>

namespace vexa::storage {

using Kind = Token::Kind;

namespace {

using Identifiers = std::vector<fv::VexaPropertyIdentifier>;

class ObjectFrame final : public ReadFrame {
public:
    ObjectFrame(const fv::ArrayFactory& factory, ClassPointer description, SharedPlace shared)
        : ReadFrame(shared),
          description_(std::move(description)),
          object_(factory.createValueObject(description_->info)) {}

    Result next(ArrayReader& reader) override {
        reader.itemCame();
        return reader.begin();
    }
    void take(Result part) override {
        object_[description_->properties[done_++]] = std::get<fv::Array>(part);
    }
    bool isComplete() const override { return done_ == description_->properties.size(); }
    Result finish(ArrayReader&) override { return std::move(object_); }

private:
    ClassPointer description_;
    fv::ValueObject object_;
    std::size_t done_ = 0;
};

fv::ValueObject readMember(ArrayReader& reader) {
    reader.lexer().expectText("enum");
    const std::string className = reader.lexer().expectName("the name of a class");
    reader.lexer().expectText("member");
    return reader.factory().createEnumerationObject(className,
                                                    reader.lexer().expectName("the name of a member"));
}

/// Reads an object, or begins one that has properties.
Result beginObject(ArrayReader& reader) {
    Lexer& lexer = reader.lexer();
    SharedPlace shared;
    Token token = lexer.next();
    if (token.kind == Kind::tag && token.value == tag::shareable) {
        shared = reader.addShared();
        token = lexer.next();
    }
    if (token.kind == Kind::tag && token.value == tag::reference) {
        return reader.referred<fv::ValueObject>(token, "an object");
    }
    if (token.kind == Kind::null) {
        return fv::ValueObject();
    }
    if (token.kind == Kind::map && token.value == 2) {
        fv::ValueObject member = readMember(reader);
        reader.setShared(shared, member);
        return member;
    }
    if (token.kind != Kind::list || token.value == 0) {
        lexer.fail(token, "an object");
    }
    reader.announce(token);
    reader.itemCame();
    ClassPointer description = reader.readClass();
    if (token.value - 1 != description->properties.size()) {
        lexer.fail(token, "a class and a value for each of its properties");
    }
    reader.charge(description->properties.size());
    reader.push(std::make_unique<ObjectFrame>(reader.factory(), std::move(description), shared));
    return {};
}

/// First the objects, then the properties of the array.
class ObjectsFrame final : public ReadFrame {
public:
    ObjectsFrame(fv::ValueObjectArray array, ClassPointer description, bool isShown, SharedPlace shared)
        : ReadFrame(shared),
          array_(std::move(array)),
          description_(std::move(description)),
          objects_(array_.getNumberOfElements()),
          properties_(description_ == nullptr ? 0 : description_->arrayProperties.size()),
          isShown_(isShown) {}

    Result next(ArrayReader& reader) override {
        if (done_ < objects_) {
            reader.itemCame();
            return beginObject(reader);
        }
        if (done_ == objects_) {
            expectProperties(reader);
        }
        reader.itemCame();
        return reader.begin();
    }
    void take(Result part) override {
        if (done_ < objects_) {
            auto& impl = static_cast<data::impl::ObjectArrayImpl&>(*fv::detail::Access::impl(array_));
            impl.setElementObject(done_, fv::detail::Access::impl(std::get<fv::ValueObject>(part)).get());
        } else {
            array_[description_->arrayProperties[done_ - objects_]] = std::get<fv::Array>(part);
        }
        ++done_;
    }
    bool isComplete() const override { return done_ == objects_ + properties_; }
    Result finish(ArrayReader& reader) override {
        if (properties_ == 0) {
            expectProperties(reader);
        }
        if (isShown_) {
            reader.lexer().expectText("shown");
            client::setExternalDimensions(array_, reader.readDimensions().dimensions);
        }
        return fv::Array(std::move(array_));
    }

private:
    void expectProperties(ArrayReader& reader) const {
        reader.lexer().expectText("properties");
        reader.expectItems(properties_, "the properties of an array of objects");
    }

    fv::ValueObjectArray array_;
    ClassPointer description_; // null for objects of any class
    std::size_t objects_;
    std::size_t properties_;
    bool isShown_;
    std::size_t done_ = 0;
};

/// Own properties are names, inherited ones a class and a name; the own ones go into `own`, too.
Identifiers readIdentifiers(Lexer& lexer, Identifiers& own) {
    Identifiers all;
    for (std::size_t n = lexer.expectList("the properties of a class"); n > 0; --n) {
        const Token item = lexer.next();
        if (item.kind == Kind::text) {
            all.emplace_back(std::string(), std::string(item.text()));
            own.push_back(all.back());
        } else if (item.kind == Kind::list && item.value == 2) {
            std::string className = lexer.expectName("the name of a class");
            all.emplace_back(std::move(className), lexer.expectName("the name of a property"));
        } else {
            lexer.fail(item, "the name of a property");
        }
    }
    return all;
}

/// The array is that of a class, or of any objects when `description` is null.
fv::ValueObjectArray makeArray(ArrayReader& reader, ArrayType type, std::vector<std::size_t> dimensions,
                               const ClassPointer& description) {
    return description == nullptr
               ? fv::ValueObjectArray(reader.factory().createArray(type, std::move(dimensions)))
               : reader.factory().createValueObjectArray(std::move(dimensions), description->info);
}

} // namespace

ClassPointer ArrayReader::readClass(int depth) {
    if (depth > mostSuperclasses) {
        lexer_.failAt(lexer_.position(), "expected at most 100 superclasses one above the other");
    }
    Token token = lexer_.next();
    if (token.kind == Kind::tag && token.value == tag::reference) {
        return referred<ClassPointer>(token, "a class");
    }
    SharedPlace shared;
    if (token.kind == Kind::tag && token.value == tag::shareable) {
        shared = addShared();
        token = lexer_.next();
    }
    if (token.kind != Kind::list || token.value != 4) {
        lexer_.fail(token, "a class");
    }
    ClassPointer description = readNewClass(depth);
    setShared(shared, description);
    return description;
}

ClassPointer ArrayReader::readNewClass(int depth) {
    const std::string name = lexer_.expectName("the name of a class");
    Identifiers own;
    Identifiers ownOfArrays;
    Identifiers properties = readIdentifiers(lexer_, own);
    Identifiers arrayProperties = readIdentifiers(lexer_, ownOfArrays);
    std::vector<fv::ClassInfo> superclasses;
    std::size_t ways = 1;
    std::size_t inherited = own.size() + ownOfArrays.size();
    for (std::size_t n = lexer_.expectList("the superclasses of a class"); n > 0; --n) {
        const ClassPointer above = readClass(depth + 1);
        superclasses.push_back(above->info);
        ways += above->ways;
        inherited += above->numberOfProperties();
        if (ways > mostWaysUp) {
            lexer_.failAt(lexer_.position(), "expected fewer ways to superclasses");
        }
    }
    charge(inherited);
    fv::ClassInfo info = factory_.createClassInfo(name, own, ownOfArrays, superclasses);
    if (info.getNumberOfProperties() != properties.size() ||
        info.getNumberOfArrayProperties() != arrayProperties.size()) {
        lexer_.failAt(lexer_.position(),
                      "expected a class before that has the properties of its superclasses");
    }
    return std::make_shared<LoadedClass>(
        LoadedClass{std::move(info), std::move(properties), std::move(arrayProperties), ways});
}

std::unique_ptr<ReadFrame> beginObjects(ArrayReader& reader, ArrayType type, std::size_t entries,
                                        SharedPlace shared) {
    Size size = reader.expectSize();
    reader.lexer().expectText("class");
    ClassPointer description;
    if (reader.lexer().nextIsNull()) {
        reader.lexer().next();
    } else {
        description = reader.readClass();
        reader.charge(description->numberOfProperties());
    }
    reader.lexer().expectText("objects");
    reader.expectItems(size.count, "a list of objects");
    constexpr std::size_t entriesWithShown = 6;
    return std::make_unique<ObjectsFrame>(makeArray(reader, type, std::move(size.dimensions), description),
                                          std::move(description), entries == entriesWithShown, shared);
}

} // namespace vexa::storage
