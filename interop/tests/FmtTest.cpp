// Arrays and elements in format strings of {fmt}: as std::cout prints them, ranges of theirs or not.
#include <foundation/vexadata/VexaData.hpp>
#include <vexa/interop/Fmt.hpp>

#include <gtest/gtest.h>

#include <sstream>
#include <string>

using namespace foundation::vexadata;

TEST(Fmt, WritesWhatStreamsDo) {
    const ArrayFactory factory;
    auto cells = factory.createArray<Array>({1, 2});
    auto strings = factory.createArray<String>({1, 2});
    strings[1] = "x";
    auto records = factory.createStructArray({1, 1}, {"n"});
    records[0]["n"] = factory.createScalar(1.5);
    const auto expectSame = [](const auto& value) {
        std::ostringstream stream;
        stream << value;
        EXPECT_EQ(fmt::format("{}", value), stream.str());
    };
    cells[0] = strings;
    expectSame(Array(strings));
    expectSame(strings);
    expectSame(strings[1]);
    expectSame(cells);
    expectSame(cells[0]);
    expectSame(records);
    expectSame(records[0]);
    expectSame(factory.createCharArray("text"));
    expectSame(factory.createEnumArray({1, 2}, "Colour", {"Red", "Blue"}));
    expectSame(factory.createValueObject(factory.createClassInfo("Point", {"x"})));
    const auto pi = factory.createScalar(3.14159265);
    EXPECT_EQ(fmt::format("<{:.3}|{:.8}|{}>", pi, pi[0], pi[0]), "<3.14|3.1415927|3.14159>");
    for (const char* wrong : {"{:d}", "{:.}", "{:.3f}", "{:>5}"}) {
        EXPECT_THROW(static_cast<void>(fmt::format(fmt::runtime(wrong), pi)), fmt::format_error) << wrong;
    }
}
