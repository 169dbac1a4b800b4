// Handle objects: copies denote the same object, which lives in an engine instance. A value object keeps one in a property.
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Objects.hpp>

#include <iostream>

using namespace foundation::vexadata;

int main() {
    ArrayFactory factory;
    const ZVMID here{{'h', 'e', 'r', 'e'}};
    const ZVMID there{{'t', 'h', 'e', 'r', 'e'}};
    const HandleObjectRef window = factory.createHandleObjectRef(here, 17);
    const HandleObjectRef again = factory.createHandleObjectRef(here, 17);
    const HandleObjectRef other = factory.createHandleObjectRef(there, 17);
    std::cout << "the same number here: " << (window == again ? "the same object" : "another") << '\n';
    std::cout << "the same number there: " << (window == other ? "the same object" : "another") << '\n';

    TypedArray<HandleObjectRef> handles = factory.createArray<HandleObjectRef>({1, 3});
    handles[0] = window;
    handles[1] = other;
    handles[2] = handles[0];
    Reference<HandleObjectRef> stored = handles[2];
    HandleRef(stored).addReference(); // the engine keeps count of what it is told
    window.addReference();
    std::cout << "references told: " << vexa::client::countOfReferences(here, 17) << " here, "
              << vexa::client::countOfReferences(there, 17) << " there\n";
    for (const HandleObjectRef& handle : std::as_const(handles)) {
        std::cout << handle.getId() << " in '" << handle.getZVMID().bytes << "'"
                  << (handle == window ? ", the window" : "") << '\n';
    }

    // The plot is a value and parts from its copy when it is written; both still show in the one window.
    ValueObject plot = factory.createValueObject(factory.createClassInfo("Plot", {"title", "window"}));
    plot["title"] = factory.createCharArray("heat");
    plot["window"] = factory.createScalar(window);
    ValueObject copy = plot;
    copy["title"] = factory.createCharArray("wind");
    const TypedArray<HandleObjectRef> shown = copy["window"];
    std::cout << (plot == copy ? "equal" : "different") << " plots, in "
              << (shown[0] == window ? "one window" : "two windows") << '\n'
              << plot << '\n';
}
