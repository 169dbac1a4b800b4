// Objects beside the containers of the standard library. Ratios of one run count.
#include "Contest.hpp"

#include <foundation/vexadata/VexaData.hpp>

#include <array>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using bench::Task;

namespace {

constexpr std::size_t reads = 100'000;

struct Things {
    std::vector<std::string> names{"latitude", "longitude", "height", "pressure", "temperature",
                                   "humidity", "windspeed", "gusts",  "rainfall", "cloudcover"};
    std::vector<VexaPropertyIdentifier> ids;
    std::unordered_map<std::string, std::shared_ptr<double>> map;
    ValueObject object;

    Things() {
        ArrayFactory factory;
        ids.assign(names.begin(), names.end());
        object = factory.createValueObject(factory.createClassInfo("Weather", ids));
        for (std::size_t k = 0; k < names.size(); ++k) {
            map[names[k]] = std::make_shared<double>(double(k));
            object[ids[k]] = factory.createScalar(double(k));
        }
    }
};

bool propertyTask() {
    static Things things;
    static const ValueObject& object = things.object;
    // The map hands out a shared pointer to the value, as the object hands out its array.
    const auto fromMap = [] {
        double total = 0;
        for (std::size_t k = 0; k < reads; ++k) {
            const std::shared_ptr<double> value = things.map.find(things.names[k * 7 % 10])->second;
            total += value != nullptr;
        }
        return total;
    };
    const auto fromObject = [] {
        double total = 0;
        for (std::size_t k = 0; k < reads; ++k) {
            const Array value = object[things.ids[k * 7 % 10]];
            total += detail::Access::impl(value) != nullptr;
        }
        return total;
    };
    return report(Task{
        "object[id] of 10 (raw: unordered_map)", reads, 2, {{"raw", fromMap}, {"vexadata", fromObject}}});
}

bool copyTask() {
    static Things things;
    static const auto pointer = std::make_shared<double>(1.0);
    const auto copyPointer = [] {
        for (std::size_t k = 0; k < reads; ++k) {
            std::shared_ptr<double> copy = pointer;
            bench::hide(copy);
        }
        return 0.0;
    };
    const auto copyObject = [] {
        for (std::size_t k = 0; k < reads; ++k) {
            ValueObject copy = things.object;
            bench::hide(copy);
        }
        return 0.0;
    };
    return report(Task{"copy of an object, and drop (raw: shared_ptr)",
                       reads,
                       1.5,
                       {{"raw", copyPointer}, {"vexadata", copyObject}}});
}

} // namespace

int main() {
    bench::printSetting();
    bench::printHeading();
    const bool properties = propertyTask();
    const bool copies = copyTask();
    return properties && copies ? 0 : 1;
}
