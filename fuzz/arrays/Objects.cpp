// Arrays of value objects, and the objects in them.
#include "World.hpp"

#include <vexa/client/Exception.hpp>

#include <map>
#include <numeric>
#include <optional>
#include <string>

namespace vexa::fuzz {

namespace {

/// An object by its class and its properties.
struct ObjectModel {
    std::string className;
    std::map<std::string, Plain> properties;

    std::size_t weight() const {
        return std::accumulate(
            properties.begin(), properties.end(), std::size_t{1},
            [](std::size_t sum, const auto& property) { return sum + property.second->weight(); });
    }
    void check(const ValueObject& object) const {
        require(object.getClassInfo().getClassIdentifier().getString() == className, "another class");
        require(object.numOfProperties() == properties.size(), "another number of properties");
        for (const auto& [name, model] : properties) {
            model->check(object[name]);
        }
    }
    Likeness compare(const ObjectModel& other) const {
        if (properties.size() != other.properties.size()) {
            return Likeness::different;
        }
        Likeness worst = Likeness::equal;
        for (const auto& [name, model] : properties) {
            const auto found = other.properties.find(name);
            worst = std::max(worst, found == other.properties.end() ? Likeness::different
                                                                    : model->compare(*found->second));
        }
        return worst;
    }
};

/// Two classes, or none: then the elements of a new array hold no object.
const std::map<std::string, std::vector<std::string>> classes{{"Point", {"x", "y"}}, {"Circle", {"radius"}}};

ObjectModel freshObject(const std::string& className) {
    ObjectModel fresh{className, {}};
    for (const std::string& property : classes.at(className)) {
        fresh.properties.emplace(property, emptyModel());
    }
    return fresh;
}
ClassInfo classInfo(ArrayFactory& factory, const std::string& className) {
    const auto& names = classes.at(className);
    const std::vector<VexaPropertyIdentifier> properties(names.begin(), names.end());
    return factory.createClassInfo(className, properties, {VexaPropertyIdentifier("unit")});
}

class Objects final : public Model {
public:
    Objects(Dims dims, std::string className)
        : Model(ArrayType::VALUE_OBJECT, std::move(dims)),
          className_(std::move(className)),
          elements_(elementCount(dims_)) {
        if (!className_.empty()) {
            elements_.assign(elements_.size(), freshObject(className_));
        }
    }

    std::unique_ptr<Model> clone() const override { return std::make_unique<Objects>(*this); }

    void act(World& world, Array& array) override {
        switch (world.input.below(4)) {
        case 0:
            return storeFresh(world, array);
        case 1:
            return setArrayProperty(world, array);
        case 2:
            return copyElement(world.input, array);
        default:
            return changeElement(world, array);
        }
    }

    void writeThrough(World& world, Reference<Array> held) override {
        operation = "objects inside: change a copy";
        Array out = held;
        const Plain before(clone());
        act(world, out);
        operation = "objects inside: a copy was changed";
        before->check(Array(held));
        operation = "objects inside: store the changed copy";
        held = out;
    }

    std::size_t weight() const override {
        return std::accumulate(elements_.begin(), elements_.end(), unit_->weight(),
                               [](std::size_t sum, const auto& object) {
                                   return sum + (object ? object->weight() : std::size_t{1});
                               });
    }

protected:
    void checkElements(const Array& array) const override {
        const ValueObjectArray typed = array;
        if (!className_.empty()) {
            unit_->check(typed["unit"]);
        }
        std::size_t k = 0;
        for (const auto& element : typed) {
            require(k < elements_.size(), "the walk is long");
            const ValueObject object = element;
            const bool present = detail::Access::impl(object) != nullptr;
            require(present == elements_[k].has_value(), "an object is missing");
            if (present) {
                elements_[k]->check(object);
            }
            ++k;
        }
        require(k == elements_.size(), "the walk is short");
    }
    Likeness compareElements(const Model& other) const override {
        return compareAll(
            elements_, static_cast<const Objects&>(other).elements_, [](const auto& a, const auto& b) {
                return a && b ? a->compare(*b) : !a && !b ? Likeness::equal : Likeness::different;
            });
    }

private:
    template <class F>
    void element(Array& array, const Indices& indices, F use) {
        as<ValueObjectArray>(array, [&](ValueObjectArray& typed) { atIndices(typed, indices, use); });
    }

    void storeFresh(World& world, Array& array) {
        operation = "objects: store a new object";
        const std::string className = world.input.below(4) == 0 ? "Circle" : "Point";
        const ValueObject fresh = world.factory.createValueObject(classInfo(world.factory, className));
        const Indices indices = world.input.indices(dims_);
        const Place at = place(indices);
        const bool fits = className_.empty() || className_ == className;
        const Outcome wanted = at.error != nullptr ? at.error
                               : fits              ? nullptr
                                                   : thrown<client::WrongClassException>;
        requireOutcome(wanted, outcomeOf([&] { element(array, indices, [&](auto& ref) { ref = fresh; }); }));
        if (wanted == nullptr) {
            elements_[at.position] = freshObject(className);
        }
    }

    void setArrayProperty(World& world, Array& array) {
        operation = "objects: set a property of the array";
        const Slot value = world.pick();
        if (className_.empty()) {
            return;
        }
        as<ValueObjectArray>(array, [&](ValueObjectArray& typed) {
            typed["unit"] = value.array;
            unit_ = value.model;
            unit_->writeThrough(world, typed["unit"]);
        });
    }

    void copyElement(Input& input, Array& array) {
        operation = "objects: assign one element to another";
        if (isEmpty()) {
            return;
        }
        const Indices from = input.validIndices(dims_);
        const Indices to = input.validIndices(dims_);
        as<ValueObjectArray>(array, [&](ValueObjectArray& typed) {
            atIndices(typed, to,
                      [&](auto& target) { atIndices(typed, from, [&](auto& source) { target = source; }); });
        });
        elements_[place(to).position] = std::optional<ObjectModel>(elements_[place(from).position]);
    }

    /// Takes an object out, changes a copy of it, and perhaps puts that back.
    void changeElement(World& world, Array& array) {
        operation = "objects: change an object";
        if (isEmpty()) {
            return;
        }
        const Indices indices = world.input.validIndices(dims_);
        std::optional<ObjectModel>& model = elements_[place(indices).position];
        if (!model) {
            return;
        }
        const ValueObjectArray constant = array;
        ValueObject object;
        atIndices(constant, indices, [&](auto& ref) { object = ref; });
        const ValueObject before = object;
        ObjectModel changed = *model;
        changeProperty(world, object, changed);
        model->check(before);
        changed.check(object);
        const Likeness likeness = changed.compare(*model);
        require(likeness == Likeness::doubtful || (object == before) == (likeness == Likeness::equal),
                "equality of objects");
        if (world.input.flip()) {
            operation = "objects: put a changed object back";
            element(array, indices, [&](auto& ref) { ref = object; });
            model = std::move(changed);
        }
    }
    static void changeProperty(World& world, ValueObject& object, ObjectModel& model) {
        const auto& names = classes.at(model.className);
        const std::size_t choice = world.input.below(names.size() + 1);
        if (choice == names.size()) {
            operation = "objects: set an unknown property";
            requireOutcome(thrown<client::UnknownPropertyException>,
                           outcomeOf([&] { object["nobody"] = Array(); }));
            return;
        }
        Plain& property = model.properties.at(names[choice]);
        if (world.input.flip()) {
            operation = "objects: set a property";
            const Slot value = world.pick();
            object[names[choice]] = value.array;
            property = value.model;
        } else {
            operation = "objects: write in a property";
            property->writeThrough(world, object[names[choice]]);
        }
    }

    std::string className_;
    std::vector<std::optional<ObjectModel>> elements_;
    Plain unit_ = emptyModel();
};

} // namespace

Slot makeObjects(World& world) {
    const Dims dims = world.input.dims(5);
    const std::size_t choice = world.input.below(3);
    if (choice == 2) {
        return {world.factory.createArray<ValueObject>(dims), plain<Objects>(normalized(dims), "")};
    }
    const std::string className = choice == 0 ? "Point" : "Circle";
    return {world.factory.createValueObjectArray(dims, classInfo(world.factory, className)),
            plain<Objects>(normalized(dims), className)};
}

} // namespace vexa::fuzz
