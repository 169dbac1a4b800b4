// Enumeration arrays: those made with names know these, others learn.
#include "World.hpp"

#include <vexa/client/Exception.hpp>

#include <set>
#include <string>

namespace vexa::fuzz {

namespace {

class Enums final : public Model {
public:
    Enums(Dims dims, std::string className, std::vector<std::string> members, bool learns)
        : Model(ArrayType::ENUM, std::move(dims)),
          className_(std::move(className)),
          members_(std::move(members)),
          known_(members_.begin(), members_.end()),
          learns_(learns) {}

    std::unique_ptr<Model> clone() const override { return std::make_unique<Enums>(*this); }

    void act(World& world, Array& array) override {
        operation = "enumeration: write through indices";
        as<EnumArray>(array, [&](EnumArray& typed) {
            require(typed.getClassName() == className_, "another class");
            write(world.input, typed);
        });
    }
    void writeThrough(World& world, Reference<Array> held) override {
        operation = "enumeration inside: write";
        Reference<EnumArray> typed(held);
        write(world.input, typed);
    }

protected:
    void checkElements(const Array& array) const override {
        const EnumArray typed = array;
        std::size_t k = 0;
        for (const auto& element : typed) {
            require(k < members_.size(), "the walk is long");
            require(element == members_[k] && element.getName() == members_[k], "another member");
            ++k;
        }
        require(k == members_.size(), "the walk is short");
    }
    Likeness compareElements(const Model& other) const override {
        const auto& right = static_cast<const Enums&>(other);
        const bool equal = className_ == right.className_ && members_ == right.members_;
        return equal ? Likeness::equal : Likeness::different;
    }

private:
    template <class Handle>
    void write(Input& input, Handle& typed) {
        const Indices indices = input.indices(dims_);
        const std::string name = input.name();
        const bool known = learns_ || name.empty() || known_.count(name) != 0;
        const Place at = place(indices);
        const Outcome wanted = at.error != nullptr ? at.error
                               : known             ? nullptr
                                                   : thrown<client::UnknownMemberException>;
        if (succeeds(wanted, [&] { atIndices(typed, indices, [&](auto& ref) { ref = name; }); })) {
            members_[at.position] = name;
        }
    }

    std::string className_;
    std::vector<std::string> members_;
    std::set<std::string> known_;
    bool learns_;
};

} // namespace

Slot makeEnums(World& world) {
    Input& input = world.input;
    const Dims dims = input.dims(20);
    const std::string className = input.flip() ? "Color" : "package.Color";
    std::vector<std::string> members(elementCount(dims));
    if (members.empty() || input.flip()) {
        return {world.factory.createEnumArray(dims, className),
                plain<Enums>(normalized(dims), className, members, true)};
    }
    for (std::string& member : members) {
        member = input.name();
    }
    members.resize(members.size() + input.below(8) / 7);
    Slot made{Array(), emptyModel()};
    const bool fits = members.size() == elementCount(dims);
    if (succeeds(fits ? nullptr : thrown<client::WrongNumberOfNamesException>,
                 [&] { made.array = world.factory.createEnumArray(dims, className, members); })) {
        made.model = plain<Enums>(normalized(dims), className, members, false);
    }
    return made;
}

} // namespace vexa::fuzz
