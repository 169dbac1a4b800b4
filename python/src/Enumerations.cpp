// Enumeration arrays, as categories and their codes.
#include "Errors.hpp"
#include "Handle.hpp"
#include "Indices.hpp"
#include "Module.hpp"
#include "Numpy.hpp"

#include <foundation/vexadata/ArrayFactory.hpp>

#include <pybind11/stl.h>

#include <cstdint>
#include <unordered_map>

namespace vexa::python {

namespace {

/// The members that occur, in the order of their first elements, and for each element its place among them,
/// -1 for one without member.
struct Categories {
    std::vector<std::string> names;
    fv::TypedArray<std::int32_t> codes;
};

Categories categoriesOf(const EnumObject& self) {
    const fv::EnumArray members = self.array;
    Categories result{{}, fv::ArrayFactory().createArray<std::int32_t>(members.getDimensions())};
    std::unordered_map<std::string, std::int32_t> places;
    auto code = result.codes.begin();
    for (const auto& element : members) {
        std::string name = element.getName();
        std::int32_t place = -1;
        if (!name.empty()) {
            const auto [known, isNew] = places.try_emplace(name, static_cast<std::int32_t>(places.size()));
            place = known->second;
            if (isNew) {
                result.names.push_back(std::move(name));
            }
        }
        *code = place;
        ++code;
    }
    return result;
}

py::tuple factorize(const EnumObject& self) {
    Categories categories = categoriesOf(self);
    return py::make_tuple(exportReadOnly(std::move(categories.codes)), py::tuple(py::cast(categories.names)));
}

py::object enumeration(const std::vector<std::string>& members, py::handle shape,
                       const std::string& className) {
    return wrap(fv::ArrayFactory().createEnumArray(toDimensions(shape), className, members));
}

} // namespace

void addEnumerations(py::module_& module) {
    py::class_<EnumObject, ArrayObject> c(module, "EnumArray",
                                          "An array of members of an enumeration class: str, or None for an "
                                          "element without member.");
    c.def_property_readonly(
        "class_name", [](const EnumObject& self) { return fv::EnumArray(self.array).getClassName(); },
        "Name of the enumeration class.");
    c.def("factorize", &factorize,
          "(codes, categories): the members that occur, in the order of their first elements, and for each\n"
          "element its place among them as a NumPy array of int32, -1 for an element without member.");
    module.def("_enumeration", &enumeration, py::arg("members"), py::arg("shape"), py::arg("class_name"));
}

} // namespace vexa::python
