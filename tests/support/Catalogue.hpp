// Arrays of every kind, each filled according to a number, for tests that want them all.
#pragma once

#include <foundation/vexadata/VexaData.hpp>

#include <string>
#include <vector>

namespace support {

struct Kind {
    using Array = foundation::vexadata::Array;
    using ArrayFactory = foundation::vexadata::ArrayFactory;

    std::string name; ///< of letters and figures
    Array (*make)(ArrayFactory& factory, double stamp);
    /// Changes the array in place to what another stamp gives, through element handles, references or iterators.
    void (*change)(ArrayFactory& factory, Array& array, double stamp);
    bool (*holds)(const Array& array, double stamp);
};

const std::vector<Kind>& catalogue();

} // namespace support
