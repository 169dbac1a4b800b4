// Strings, structs and cells beside plain containers and a JSON library. Ratios of one run count.
//
// Armadillo stays out: its linear algebra starts threads, and counts of shared objects then cost more.
#include "Contest.hpp"

#include <foundation/vexadata/VexaData.hpp>

#ifdef VEXADATA_HAVE_JSON
#    include <nlohmann/json.hpp>
#endif
#ifdef VEXADATA_HAVE_XTENSOR
#    include <xtensor/xarray.hpp>
#endif

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

using namespace foundation::vexadata;
using bench::Contender;
using bench::hide;
using bench::Task;

namespace {

// --- strings

constexpr std::size_t textCount = 100'000;

/// Texts of six units and nothing else.
using SixUnits = std::array<char16_t, 6>;

struct Texts {
    std::u16string wanted = u"string";
    std::vector<SixUnits> raw;
    std::vector<std::optional<std::u16string>> optionals;
    TypedArray<String> strings;

    Texts() : strings(ArrayFactory().createArray<String>({textCount, 1})) {
        std::mt19937 random(1);
        for (std::size_t k = 0; k < textCount; ++k) {
            std::u16string text = wanted;
            text[5] = random() % 8 == 0 ? u'h' : u'g';
            SixUnits units;
            std::copy(text.begin(), text.end(), units.begin());
            raw.push_back(units);
            optionals.emplace_back(text);
            strings[k] = text;
        }
    }
};

bool equal(const SixUnits& units, const std::u16string& text) {
    return text.size() == 6 && std::memcmp(units.data(), text.data(), sizeof units) == 0;
}

template <class Strings>
double countByIndex(Strings& strings, const std::u16string& text) {
    std::size_t n = textCount;
    hide(n);
    std::size_t found = 0;
    for (std::size_t k = 0; k < n; ++k) {
        found += strings[k] == text;
    }
    return double(found);
}

template <class Strings>
double countByWalking(Strings& strings, const std::u16string& text) {
    std::size_t found = 0;
    for (const auto& element : strings) {
        found += element == text;
    }
    return double(found);
}

bool stringTasks() {
    static Texts texts;
    static const std::u16string& text = texts.wanted;
    static const TypedArray<String>& readOnly = texts.strings;
    const Contender raw{"raw", [] {
                            std::size_t found = 0;
                            for (const SixUnits& units : texts.raw) {
                                found += equal(units, text);
                            }
                            return double(found);
                        }};
    Task byIndex{"strings[i] == text, 6 units", textCount, 0, {raw}, 7};
    byIndex.contenders.push_back({"vexadata", [] { return countByIndex(texts.strings, text); }});
    byIndex.contenders.push_back({"read-only handle", [] { return countByIndex(readOnly, text); }});
    byIndex.contenders.push_back({"vector of optional", [] { return countByIndex(texts.optionals, text); }});
#ifdef VEXADATA_HAVE_XTENSOR
    static xt::xarray<std::optional<std::u16string>> container =
        xt::xarray<std::optional<std::u16string>>::from_shape({textCount});
    std::copy(texts.optionals.begin(), texts.optionals.end(), container.begin());
    byIndex.contenders.push_back({"xarray", [] { return countByIndex(container, text); }});
#endif
    Task walking{"the same, walking the array", textCount, 0, {raw}, 5};
    walking.contenders.push_back({"vexadata", [] { return countByWalking(texts.strings, text); }});
    walking.contenders.push_back({"read-only handle", [] { return countByWalking(readOnly, text); }});
    walking.contenders.push_back(
        {"vector of optional", [] { return countByWalking(texts.optionals, text); }});
    return report(byIndex) && report(walking);
}

// --- structs

constexpr std::size_t recordCount = 10'000;
constexpr std::size_t fieldCount = 10;

struct Records {
    std::vector<std::string> names;
    std::vector<std::size_t> order; // of the fields, as they are read from each record
    std::vector<std::array<double, fieldCount>> raw{recordCount};
    std::vector<std::unordered_map<std::string, double>> hashed{recordCount};
    std::vector<std::map<std::string, double>> sorted{recordCount};
#ifdef VEXADATA_HAVE_JSON
    nlohmann::json json = nlohmann::json::array();
#endif
    StructArray structs;

    Records() : names(fieldNames()), structs(ArrayFactory().createStructArray({recordCount, 1}, names)) {
        // Each container is filled on its own, so that none lies scattered between the others.
        fill([&](std::size_t i, std::size_t k, double value) { raw[i][k] = value; });
        fill([&](std::size_t i, std::size_t k, double value) { hashed[i][names[k]] = value; });
        fill([&](std::size_t i, std::size_t k, double value) { sorted[i][names[k]] = value; });
        ArrayFactory factory;
        fill([&](std::size_t i, std::size_t k, double value) {
            structs[i][names[k]] = factory.createScalar(value);
        });
        std::mt19937 random(2);
        for (std::size_t i = 0; i < recordCount; ++i) {
            for (std::size_t k = 0; k < fieldCount; ++k) {
                order.push_back(k);
            }
            std::shuffle(order.end() - fieldCount, order.end(), random);
        }
#ifdef VEXADATA_HAVE_JSON
        for (const auto& record : sorted) {
            json.push_back(record);
        }
#endif
    }

private:
    template <class Set>
    static void fill(Set set) {
        for (std::size_t i = 0; i < recordCount; ++i) {
            for (std::size_t k = 0; k < fieldCount; ++k) {
                set(i, k, double(i * fieldCount + k));
            }
        }
    }
    static std::vector<std::string> fieldNames() {
        return {"latitude", "longitude", "height", "pressure", "temperature",
                "humidity", "windspeed", "gusts",  "rainfall", "cloudcover"};
    }
};

/// Sum over all fields, read as `value(record, name)` in the shuffled order.
template <class Value>
double addFields(const Records& records, Value value) {
    double total = 0;
    const std::size_t* field = records.order.data();
    for (std::size_t record = 0; record < recordCount; ++record) {
        for (std::size_t k = 0; k < fieldCount; ++k) {
            total += value(record, *field++);
        }
    }
    return total;
}

bool structTask() {
    static Records records;
    static const StructArray& structs = records.structs;
    constexpr int passes = 5; // the first of a turn finds the caches full of the others' data
    Task task{"structs[i][name][0], 10 fields", passes * recordCount * fieldCount, 0, {}, 33};
    const auto add = [&](const char* name, auto value) {
        task.contenders.push_back({name, [value] {
                                       double total = 0;
                                       for (int pass = 0; pass < passes; ++pass) {
                                           total += addFields(records, value);
                                       }
                                       return total;
                                   }});
    };
    add("raw", [](std::size_t i, std::size_t k) { return records.raw[i][k]; });
    add("vexadata", [](std::size_t i, std::size_t k) -> double { return structs[i][records.names[k]][0]; });
    add("unordered_map", [](std::size_t i, std::size_t k) { return records.hashed[i].at(records.names[k]); });
    add("map", [](std::size_t i, std::size_t k) { return records.sorted[i].at(records.names[k]); });
#ifdef VEXADATA_HAVE_JSON
    add("json", [](std::size_t i, std::size_t k) { return records.json[i][records.names[k]].get<double>(); });
#endif
    return report(task);
}

// --- cells

constexpr std::size_t outerCount = 512;
constexpr std::size_t innerCount = 512;

struct Nested {
    std::vector<std::vector<double>> raw;
    TypedArray<Array> cells = ArrayFactory().createArray<Array>({outerCount, 1});
#ifdef VEXADATA_HAVE_JSON
    nlohmann::json json;
#endif

    Nested() {
        ArrayFactory factory;
        for (std::size_t i = 0; i < outerCount; ++i) {
            std::vector<double> inner(innerCount);
            for (std::size_t j = 0; j < innerCount; ++j) {
                inner[j] = double(i + j);
            }
            cells[i] = factory.createArray<double>({innerCount, 1}, inner.begin(), inner.end());
            raw.push_back(std::move(inner));
        }
#ifdef VEXADATA_HAVE_JSON
        json = raw;
#endif
    }
};

template <class Outer>
double addNested(Outer inner) {
    std::size_t n = outerCount;
    std::size_t m = innerCount;
    hide(n);
    hide(m);
    double total = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const auto& row = inner(i);
        for (std::size_t j = 0; j < m; ++j) {
            total += double(row[j]);
        }
    }
    return total;
}

template <class Outer>
double writeNested(Outer inner) {
    std::size_t n = outerCount;
    std::size_t m = innerCount;
    hide(n);
    hide(m);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < m; ++j) {
            inner(i)[j] = double(i + j);
        }
    }
    return double(inner(1)[2]);
}

template <class Element>
double addHandles(Element element) {
    double total = 0;
    for (std::size_t i = 0; i < outerCount; ++i) {
        for (std::size_t j = 0; j < innerCount; ++j) {
            total += element(i, j);
        }
    }
    return total;
}

bool cellTasks() {
    static Nested nested;
    static const TypedArray<Array>& cells = nested.cells;
    constexpr double reads = outerCount * innerCount;
    const Contender raw{"raw", [] {
                            return addNested([](std::size_t i) -> const auto& {
                                bench::require(i < nested.raw.size());
                                return nested.raw[i];
                            });
                        }};
#ifdef VEXADATA_HAVE_JSON
    const std::vector<Contender> peers{
        {"json", [] { return addNested([](std::size_t i) -> const auto& { return nested.json[i]; }); }}};
#else
    const std::vector<Contender> peers;
#endif
    Task kept{"512 arrays of 512 in cells, kept handle", reads, 0, {raw}, 10};
    kept.contenders.push_back(
        {"vexadata",
         [] { return addNested([](std::size_t i) -> const TypedArray<double> { return cells[i]; }); }});
    kept.contenders.insert(kept.contenders.end(), peers.begin(), peers.end());
    Task references{"the same, cells[i].held()[j]", reads, 4, {raw}};
    references.contenders.push_back(
        {"vexadata", [] { return addNested([](std::size_t i) { return cells[i].held(); }); }});
    references.contenders.push_back(
        {"kept reference",
         [] { return addNested([](std::size_t i) -> const Reference<Array> { return nested.cells[i]; }); }});
    const Contender rawWrite{
        "raw", [] { return writeNested([](std::size_t i) -> auto& { return nested.raw[i]; }); }};
    Task writes{"cells[i].held()[j] = x", reads, 5, {rawWrite}};
    writes.contenders.push_back(
        {"vexadata", [] { return writeNested([](std::size_t i) { return nested.cells[i].held(); }); }});
    Task handles{"a handle an element: TypedArray a = cells[i]; a[j]",
                 reads,
                 45,
                 {{"raw", [] {
                       return addHandles([](std::size_t i, std::size_t j) {
                           bench::require(i < nested.raw.size() && j < nested.raw[i].size());
                           return nested.raw[i][j];
                       });
                   }}}};
    handles.contenders.push_back({"vexadata", [] {
                                      return addHandles([](std::size_t i, std::size_t j) {
                                          const TypedArray<double> array = cells[i];
                                          return double(array[j]);
                                      });
                                  }});
    return report(kept) && report(references) && report(writes) && report(handles);
}

} // namespace

int main() {
    bench::printSetting();
    bench::printHeading();
    const bool strings = stringTasks();
    const bool structs = structTask();
    const bool cells = cellTasks();
    return strings && structs && cells ? 0 : 1;
}
