// Variables pass between a workspace and its callers by name, without copying their elements.
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/client/Workspace.hpp>

#include <iostream>
#include <string>
#include <vector>

using namespace foundation::vexadata;

int main() {
    ArrayFactory factory;
    vexa::client::WorkspaceEngine engine; // owns the variables
    InProcessCustomWorkspace workspace = engine.workspace();

    TypedArray<double> heights = factory.createArray<double>({1, 3}, {1.5, 2.5, 3.5});
    workspace.setVariables({"heights", "unit"}, {heights, factory.createCharArray("m")});
    heights[0] = 100.0; // the caller's array parts from the workspace's

    const TypedArray<double> stored = workspace.getVariable("heights");
    std::cout << "in the workspace " << stored[0] << ", here " << heights[0] << '\n';

    std::vector<const char*> names{"unit", "weight", "heights"};
    const VariableInfo info = workspace.getVariables(names);
    for (std::size_t k = 0; k < names.size(); ++k) {
        const bool found = info.getStatus(k) == IVariableInfo::SET_BY_ENGINE;
        std::cout << names[k] << ": "
                  << (found ? std::to_string(info.getValue(k).getNumberOfElements()) : "none") << '\n';
    }

    try {
        workspace.setVariables({"unit", "not a name"}, {factory.createCharArray("km"), heights});
    } catch (const Exception& error) {
        std::cout << error.what() << '\n';
    }
    std::cout << "still " << CharArray(workspace.getVariable("unit")).toAscii() << '\n';

    workspace.clearVariable("unit");
    for (const std::string& name : workspace.getVariableNames()) {
        std::cout << "left: " << name << '\n';
    }
}
