// One program of accesses over arrays whose elements handles reach in place and over arrays of another
// back-end that hold the same: the same values, the same errors.
#include "support/Throws.hpp"

#include <foundation/vexadata/VexaData.hpp>
#include <vexa/testing/ForwardingObjects.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>
#include <vector>

using namespace foundation::vexadata;

namespace {

template <class Action>
std::string outcomeOf(Action&& action) {
    std::ostringstream out;
    try {
        action(out);
    } catch (const Exception& e) {
        out << support::describe(typeid(e), e.what());
    } catch (const std::exception& e) {
        out << support::describe(typeid(e), e.what());
    }
    return out.str();
}

/// A handle to what `array` holds, behind operations that are passed on.
template <class Handle, class Wrapper>
Handle foreign(const Handle& array) {
    return Handle(new Wrapper(
        vexa::testing::Inner<vexa::testing::ArrayImpl>(detail::Access::impl(array)->sharedCopy())));
}

template <class Handle>
struct Step {
    std::string name;
    std::function<void(Handle&, std::ostream&)> run;
};

template <class Wrapper, class Handle>
void expectSame(const std::function<Handle()>& make, const std::vector<Step<Handle>>& steps,
                const std::function<void(const Handle&, std::ostream&)>& print) {
    const Handle model = make();
    Handle inPlace = make();
    Handle asked = foreign<Handle, Wrapper>(model);
    for (const Step<Handle>& step : steps) {
        const auto outcome = [&](Handle& array) {
            return outcomeOf([&](std::ostream& out) { step.run(array, out); }) + " | " +
                   outcomeOf([&](std::ostream& out) { print(array, out); });
        };
        EXPECT_EQ(outcome(inPlace), outcome(asked)) << step.name;
    }
}

ArrayFactory& factory() {
    static ArrayFactory shared;
    return shared;
}
TypedArray<double> row(std::initializer_list<double> values) {
    return factory().createArray<double>({1, values.size()}, values.begin(), values.end());
}

const std::string longName = "a_name_that_is_longer_than_what_is_compared_at_once";
const std::vector<std::string> fields{"x",     "text", "flag", "seven77", "eight888", "sixteen_letters_",
                                      longName};

StructArray records(std::vector<std::size_t> dimensions) {
    StructArray made = factory().createStructArray(std::move(dimensions), fields);
    double value = 1;
    for (auto record : made) {
        for (const std::string& field : fields) {
            record[field] = row({value, value + 0.25});
            ++value;
        }
        record["text"] = factory().createCharArray("abc");
        record["flag"] = factory().createScalar(true);
    }
    return made;
}

void print(const StructArray& array, std::ostream& out) {
    for (const auto record : array) {
        for (const Array& value : record) {
            out << value << ';';
        }
    }
}

using S = StructArray;
using Out = std::ostream;

std::vector<Step<S>> accesses(std::size_t i, std::size_t j) {
    std::vector<Step<S>> steps;
    const auto at = [i, j](auto& array) { return array[i][j]; };
    for (const std::string& name : {fields[0], fields[3], fields[4], fields[5], longName, std::string("y"),
                                    std::string(), std::string("X"), longName + "r", std::string("x\0", 2)}) {
        const std::string place = std::to_string(i) + ',' + std::to_string(j) + ' ' + name;
        steps.push_back({"read " + place, [=](S& s, Out& out) {
                             const S& constant = s;
                             out << double(at(constant)[name][1]) << ' ' << double(at(s)[name][0]);
                         }});
        steps.push_back({"write " + place, [=](S& s, Out&) { at(s)[name][1] = 7.5 + double(i); }});
        steps.push_back({"write twice " + place, [=](S& s, Out& out) {
                             at(s)[name][1] += 2;
                             at(s)[name][0][0][0] = 3.0;
                             at(s)[name][0][1] = 4.0;
                             out << double(at(s)[name][1]);
                         }});
        steps.push_back({"out of range " + place, [=](S& s, Out&) { at(s)[name][2] = 1.0; }});
        steps.push_back(
            {"wrong kind " + place, [=](S& s, Out& out) { out << int(std::int32_t(at(s)[name][0])); }});
        steps.push_back({"write wrong kind " + place, [=](S& s, Out&) { at(s)[name][0] = true; }});
        steps.push_back({"too many " + place, [=](S& s, Out&) { at(s)[name][0][0][1] = 1.0; }});
        steps.push_back({"two names " + place, [=](S& s, Out&) { Array(at(s)[name]["x"]); }});
    }
    return steps;
}

TEST(InPlaceStructs, GiveWhatAskedOnesGive) {
    for (const auto& [i, j] : {std::pair<std::size_t, std::size_t>{0, 0}, {1, 2}, {2, 0}, {0, 3}}) {
        expectSame<vexa::testing::ForwardingStructs, S>(
            [] {
                return records({2, 3});
            },
            accesses(i, j), print);
    }
    const std::vector<Step<S>> single{
        {"one index", [](S& s, Out& out) { out << double(s[1]["x"][0]); }},
        {"surplus zeros", [](S& s, Out& out) { out << double(s[1][0][0][0]["x"][0]); }},
        {"surplus one", [](S& s, Out& out) { out << double(s[1][0][1]["x"][0]); }},
        {"write", [](S& s, Out&) { s[1]["x"][0] = -1.0; }},
        {"beyond", [](S& s, Out&) { s[9]["x"][0] = -1.0; }},
        {"huge", [](S& s, Out&) { s[static_cast<std::size_t>(-1)]["x"][0] = -1.0; }},
        {"other kinds",
         [](S& s, Out& out) {
             s[0]["text"][1] = u'z';
             s[0]["flag"][0] = false;
             out << bool(s[0]["flag"][0]) << int(char16_t(s[0]["text"][1]));
         }},
    };
    for (const std::vector<std::size_t>& shape :
         std::vector<std::vector<std::size_t>>{{1, 3}, {3, 1}, {2, 2}, {0, 0}, {0, 3}, {1, 2, 2}, {1, 1}}) {
        expectSame<vexa::testing::ForwardingStructs, S>([&] { return records(shape); }, single, print);
    }
}

/// What is kept follows what happens to the field and to the array.
TEST(InPlaceStructs, KeepWhatAskedOnesKeep) {
    const auto keptThen = [](const std::function<void(S&)>& change) {
        return [=](S& s, Out& out) {
            auto element = s[0]["x"][1];
            const auto copy = element;
            auto field = s[0]["x"];
            change(s);
            for (const auto& use : std::vector<std::function<void()>>{
                     [&] { out << double(element); }, [&] { element = 5.5; }, [&] { element += 1; },
                     [&] { out << double(copy); }, [&] { out << double(field[1]); },
                     [&] { out << double(element[0]); }, [&] { out << int(element.getNumberOfElements()); },
                     [&] {
                         Reference<double> kept = element;
                         kept = 8;
                         out << double(kept);
                     }}) {
                out << outcomeOf([&](std::ostream&) { use(); }) << ' ';
            }
        };
    };
    const std::vector<Step<S>> steps{
        {"nothing", keptThen([](S&) {})},
        {"same shape", keptThen([](S& s) {
             s[0]["x"] = row({10, 20});
         })},
        {"another shape", keptThen([](S& s) {
             s[0]["x"] = row({10, 20, 30});
         })},
        {"a column", keptThen([](S& s) {
             s[0]["x"] = factory().createArray<double>({2, 1}, {1, 2});
         })},
        {"back", keptThen([](S& s) {
             s[0]["x"] = row({10, 20});
         })},
        {"another kind", keptThen([](S& s) {
             s[0]["x"] = factory().createArray<float>({1, 2});
         })},
        {"empty", keptThen([](S& s) { s[0]["x"] = Array(); })},
        {"and back", keptThen([](S& s) {
             s[0]["x"] = row({10, 20});
         })},
        {"a record", keptThen([](S& s) {
             s[0] = std::vector<Array>(fields.size(), row({1, 2}));
         })},
        {"shared field",
         [](S& s, Out& out) {
             auto element = s[0]["x"][1];
             const TypedArray<double> shared = s[0]["x"];
             element = 99.0;
             s[0]["x"][0] = 98.0;
             out << double(shared[0]) << ' ' << double(shared[1]) << ' ' << double(s[0]["x"][1]);
         }},
        {"shared array",
         [](S& s, Out& out) {
             const S shared = s;
             s[0]["x"][0] = 97.0;
             s[0]["y"];
             out << double(shared[0]["x"][0]) << ' ' << double(s[0]["x"][0]);
         }},
    };
    expectSame<vexa::testing::ForwardingStructs, S>([] { return records({1, 2}); }, steps, print);
}

TEST(InPlaceStrings, GiveWhatAskedOnesGive) {
    using T = TypedArray<String>;
    const auto make = [](std::vector<std::size_t> shape) {
        return [=] {
            T made = factory().createArray<String>(shape);
            std::size_t k = 0;
            for (auto text : made) {
                if (++k % 3 != 0) {
                    text = std::u16string(k * 4 % 21, static_cast<char16_t>(u'a' + k));
                }
            }
            return made;
        };
    };
    const auto compare = [](const T& t, std::size_t i, std::size_t j, Out& out) {
        const auto element = t[i][j];
        for (const std::u16string& text :
             {std::u16string(), std::u16string(4, u'b'), std::u16string(8, u'c'), std::u16string(20, u'f')}) {
            out << (element == text) << (text == t[i][j]) << (t[i][j] != text);
        }
        out << (element == std::string("bbbb")) << (element == t[0][0]) << (t[i] == u"bbbb");
        out << element.has_value() << std::u16string(element).size();
        const String value = element;
        out << value->size() << element.toAscii();
    };
    std::vector<Step<T>> steps;
    for (const std::size_t i : {0UL, 1UL, 2UL}) {
        for (const std::size_t j : {0UL, 1UL, 4UL}) {
            steps.push_back({"compare", [=](T& t, Out& out) { compare(t, i, j, out); }});
            steps.push_back({"one index", [=](T& t, Out& out) {
                                 out << (t[j] == u"bbbb") << String(t[j].value()).has_value();
                             }});
            steps.push_back({"write", [=](T& t, Out& out) {
                                 t[i][j] = u"seven77";
                                 t[i][j] = std::nullopt;
                                 out << t[i][j].has_value();
                                 t[i][j] = t[0][0];
                                 out << (t[i][j] == t[0][0]) << t[i][j][0][0].toAscii();
                             }});
        }
    }
    const auto show = [](const T& t, Out& out) { out << t; };
    for (const std::vector<std::size_t>& shape :
         std::vector<std::vector<std::size_t>>{{2, 5}, {1, 5}, {5, 1}, {0, 5}, {2, 2, 2}, {1, 1}}) {
        expectSame<vexa::testing::ForwardingStrings, T>(make(shape), steps, show);
    }
}

} // namespace
