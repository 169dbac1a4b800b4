// Single writes beside, inside and around much that stays as it is: what they cost must not grow with that.
#include "Contest.hpp"

#include <foundation/vexadata/VexaData.hpp>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using bench::hide;
using bench::Task;

namespace {

constexpr std::size_t million = 1'000'000;

bool textTask() {
    static std::vector<std::optional<std::u16string>> raw(million);
    static TypedArray<String> strings = ArrayFactory().createArray<String>({million, 1});
    constexpr std::size_t writes = 100'000;
    const auto overwrite = [](auto& texts) {
        for (std::size_t k = 0; k < writes; ++k) {
            texts[7] = std::u16string(20 + k % 40, u'x');
        }
        return double(writes);
    };
    Task task{"overwrite one long text among 1e6", writes, 0, {}, 1000};
    task.contenders.push_back({"raw", [=] { return overwrite(raw); }});
    task.contenders.push_back({"vexadata", [=] { return overwrite(strings); }});
    return report(task, 5);
}

/// One pointer to what is nested, and a million things in it.
struct Node {
    std::vector<std::shared_ptr<Node>> held;
};

bool storeTask() {
    static ArrayFactory factory;
    static TypedArray<Array> large = factory.createArray<Array>({million, 1});
    static TypedArray<Array> outer = factory.createArray<Array>({1, 1});
    static Node rawOuter{{std::make_shared<Node>()}};
    static std::shared_ptr<Node> rawLarge = std::make_shared<Node>();
    rawOuter.held[0]->held.resize(1);
    outer[0] = factory.createArray<Array>({1, 1});
    static Reference<Array> inner = outer[0];
    constexpr std::size_t writes = 1'000;
    Task task{"store a cell of 1e6 in a cell in a cell", writes, 0, {}, 1000};
    task.contenders.push_back({"raw", [] {
                                   for (std::size_t k = 0; k < writes; ++k) {
                                       rawOuter.held[0]->held[0] = rawLarge;
                                       hide(rawOuter);
                                   }
                                   return 1.0;
                               }});
    task.contenders.push_back({"vexadata", [] {
                                   for (std::size_t k = 0; k < writes; ++k) {
                                       inner[0] = large;
                                   }
                                   return 1.0;
                               }});
    return report(task);
}

bool nestTask() {
    constexpr std::size_t depth = 10'000; // the raw one is destroyed on the stack
    Task task{"wrap a cell in a cell and drop all", depth, 0, {}, 2000};
    task.contenders.push_back({"raw", [] {
                                   auto inner = std::make_shared<Node>();
                                   for (std::size_t k = 0; k < depth; ++k) {
                                       auto outer = std::make_shared<Node>();
                                       outer->held.push_back(std::move(inner));
                                       inner = std::move(outer);
                                   }
                                   return 1.0;
                               }});
    task.contenders.push_back({"vexadata", [] {
                                   ArrayFactory factory;
                                   auto inner = factory.createArray<Array>({1, 1});
                                   for (std::size_t k = 0; k < depth; ++k) {
                                       auto outer = factory.createArray<Array>({1, 1});
                                       outer[0] = inner;
                                       inner = std::move(outer);
                                   }
                                   return 1.0;
                               }});
    return report(task);
}

bool fieldsTask() {
    static std::vector<std::string> names;
    for (std::size_t k = 0; k < 20'000; ++k) {
        names.push_back("channel_" + std::to_string(100'000 + k) + "_temperature");
    }
    Task task{"struct with 20,000 fields, per field", double(names.size()), 0, {}, 500};
    task.contenders.push_back({"raw", [] {
                                   std::unordered_map<std::string, double> fields;
                                   for (const std::string& name : names) {
                                       fields.emplace(name, 0.0);
                                   }
                                   return double(fields.size());
                               }});
    task.contenders.push_back({"vexadata", [] {
                                   const StructArray record = ArrayFactory().createStructArray({1, 1}, names);
                                   return double(record.getNumberOfFields());
                               }});
    return report(task);
}

bool enumTask() {
    constexpr std::size_t count = 100'000;
    static std::vector<std::uint32_t> raw(count);
    std::vector<std::string> names;
    for (std::size_t k = 0; k < count; ++k) {
        names.push_back("member" + std::to_string(k));
    }
    static const EnumArray members = ArrayFactory().createEnumArray({count, 1}, "Members", names);
    Task task{"first write to a copy, 1e5 members, each", count, 2, {}};
    task.contenders.push_back({"raw", [] {
                                   auto copy = raw;
                                   copy[5] = 7;
                                   hide(copy);
                                   return 1.0;
                               }});
    task.contenders.push_back({"vexadata", [] {
                                   EnumArray copy = members;
                                   copy[5] = "member7";
                                   return 1.0;
                               }});
    return report(task);
}

bool bufferTask() {
    Task task{"array over a new buffer of 1e6, and drop", 1, 0, {}, 1000};
    task.contenders.push_back({"raw", [] {
                                   void* memory = std::malloc(million * sizeof(double));
                                   hide(memory);
                                   std::free(memory);
                                   return 1.0;
                               }});
    task.contenders.push_back({"vexadata", [] {
                                   ArrayFactory factory;
                                   factory.createArrayFromBuffer<double>(
                                       {million}, factory.createBuffer<double>(million));
                                   return 1.0;
                               }});
    return report(task);
}

} // namespace

int main() {
    bench::printSetting();
    bench::printHeading();
    bool agree = textTask();
    agree &= storeTask();
    agree &= nestTask();
    agree &= fieldsTask();
    agree &= enumTask();
    agree &= bufferTask();
    return agree ? 0 : 1;
}
