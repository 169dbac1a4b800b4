// A workspace of one's own: any class that implements ICustomWorkspace.
#include <foundation/vexadata/VexaData.hpp>

#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using vexa::data::detail::VariableInfoImplData;

namespace {

class MapWorkspace : public ICustomWorkspace {
public:
    Array getVariable(const char* name) const override {
        const auto found = variables_.find(name);
        return found == variables_.end() ? Array() : found->second;
    }
    VariableInfo getVariables(std::vector<const char*>& names) const override {
        std::vector<Array> values;
        for (const char* name : names) {
            values.push_back(getVariable(name));
        }
        return VariableInfo(std::make_shared<VariableInfoImplData>(names, std::move(values)));
    }
    void setVariables(std::vector<const char*> names, std::vector<Array> values) override {
        for (std::size_t k = 0; k < names.size(); ++k) {
            variables_[names[k]] = values.at(k);
        }
    }
    void clearVariable(const char* name) override { variables_.erase(name); }
    std::vector<std::string> getVariableNames() const override {
        std::vector<std::string> names;
        for (const auto& [name, value] : variables_) {
            names.push_back(name);
        }
        return names;
    }

private:
    std::map<std::string, Array> variables_;
};

} // namespace

int main() {
    ArrayFactory factory;
    MapWorkspace own;
    ICustomWorkspace& workspace = own;
    workspace.setVariables({"x", "y"}, {factory.createScalar(1.0), factory.createScalar(2.0)});
    workspace.clearVariable("x");
    std::vector<const char*> names{"x", "y"};
    const VariableInfo info = workspace.getVariables(names);
    std::cout << "x has " << info.getValue(0).getNumberOfElements() << ", y has "
              << info.getValue(1).getNumberOfElements() << " element\n";
}
