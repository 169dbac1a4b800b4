// A hierarchy of classes, walked through its metadata.
#include <foundation/vexadata/VexaData.hpp>

#include <iostream>
#include <string>

using namespace foundation::vexadata;

namespace {

void describe(const ClassInfo& info, const std::string& indent = "") {
    std::cout << indent << info.getClassIdentifier().getString() << ": " << info.getNumberOfProperties()
              << " properties";
    for (const VexaPropertyIdentifier& id : info.getPropertyIDs()) {
        std::cout << ' ' << id.getExternalPropertyName();
    }
    std::cout << '\n';
    for (const ClassInfo& superclass : info.getSuperclasses()) {
        describe(superclass, indent + "  ");
    }
}

} // namespace

int main() {
    ArrayFactory factory;
    const ClassInfo named = factory.createClassInfo("Named", {"name"});
    const ClassInfo vehicle = factory.createClassInfo("Vehicle", {"wheels", "weight"}, {}, {named});
    const ClassInfo boat = factory.createClassInfo("Boat", {"draught", "weight"}, {}, {named});
    const ClassInfo amphibian = factory.createClassInfo("Amphibian", {"crew"}, {}, {vehicle, boat});
    describe(amphibian);

    ValueObject object = factory.createValueObject(amphibian);
    object["name"] = factory.createCharArray("Duck"); // inherited once, so the plain name is enough
    object["Boat.weight"] = factory.createScalar(6500.0);
    for (const Property& property : object) {
        if (!property.castToArray().isEmpty()) {
            std::cout << property.getClassName() << " defines " << property.getPropertyName() << '\n';
        }
    }
    try {
        object["weight"] = factory.createScalar(1.0);
    } catch (const Exception& error) {
        std::cout << error.what() << '\n';
    }
    try {
        factory.createClassInfo("Named", {}, {}, {amphibian});
    } catch (const Exception& error) {
        std::cout << error.what() << '\n';
    }
}
