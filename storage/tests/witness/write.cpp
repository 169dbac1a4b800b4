// Writes the file that readers of other languages look into.
#include "../Samples.hpp"

#include <cstdio>

using namespace storage_tests;

int main(int, char** arguments) {
    const ArrayFactory factory;
    StructArray records = factory.createStructArray({2, 1}, {"name", "size"});
    const Array shared = counting<std::uint16_t>({1, 3});
    records[0] = {factory.createCharArray("first"), shared};
    records[1] = {factory.createCharArray(u"Gr\u00f6\u00dfe"), shared};
    try {
        vexa::storage::save(
            arguments[1],
            {{"matrix", counting<double>({2, 3})},
             {"rows", counting<std::int32_t>({2, 3}, MemoryLayout::ROW_MAJOR)},
             {"large", counting<float>({50, 40})},
             {"number", factory.createScalar(2.5)},
             {"truth", factory.createArray<bool>({1, 2}, {true, false})},
             {"text", factory.createCharArray(u"Gr\u00fc\u00dfe \U0001F600")},
             {"texts", factory.createArray<String>({1, 3}, {String(u"a"), String(), String(u"\u00e9")})},
             {"complex", factory.createArray<std::complex<double>>({1, 2}, {{1, 2}, {3, -4}})},
             {"cells", factory.createArray<Array>({1, 2}, {factory.createCharArray("x"), shared})},
             {"records", records},
             {"members", factory.createEnumArray({1, 2}, "Colour", {"red", "green"})},
             {"sparse", sparseWith(2)},
             {"empty", Array()}});
    } catch (const Exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
