#include "Kinds.hpp"

#include <foundation/vexadata/Print.hpp>

#include <algorithm>

namespace vexa::check {

std::string nameOf(ArrayType type) {
    // Printed arrays of objects do not say by which creator they were made.
    if (type == ArrayType::VALUE_OBJECT) return "value-object";
    std::string name = foundation::vexadata::kindName(type);
    std::replace(name.begin(), name.end(), ' ', '-'); // a word of a command line
    return name;
}

} // namespace vexa::check
