// refused 1: error
// refused 2: read-only: its array is const
// refused 3: error
// refused 4: error
// refused 5: error
// refused 6: error
// refused 7: a field belongs to a record
// refused 8: a cell or field holds an array
// refused 9: a cell or field holds an array
// Elements of arrays that are const, and references to what these hold.
#include <foundation/vexadata/VexaData.hpp>

using namespace foundation::vexadata;

void ofConstArrays(const TypedArray<Array>& constant, TypedArray<Array>& cells,
                   const TypedArray<String>& texts, TypedArray<String>& strings, const StructArray& records,
                   StructArray& written) {
#if REFUSED == 1 // a writable reference to what a const array holds
    Reference<CharArray> text = constant[0];
#else
    const Reference<const CharArray> text = constant[0];
#endif
#if REFUSED == 2
    constant[0].held()[1] = 5.0;
#else
    cells[0].held()[1] = 5.0;
#endif
#if REFUSED == 3 // through a reference that only reads
    const Reference<const TypedArray<double>> numbers = constant[0];
    numbers[0] = 5.0;
#else
    Reference<TypedArray<double>> numbers = cells[0];
    numbers[0] = 5.0;
#endif
#if REFUSED == 4
    texts[0] = texts[1];
#else
    strings[0] = texts[1];
#endif
#if REFUSED == 5
    records[0] = records[1];
#else
    written[0] = records[1];
#endif
#if REFUSED == 6 // a reference that only reads, to be written
    Reference<const Array> any = cells[0];
    any = cells[1];
#else
    Reference<Array> any = cells[0];
    any = cells[1];
#endif
#if REFUSED == 7
    written["name"] = texts;
#else
    written[0]["name"] = texts;
#endif
#if REFUSED == 8
    written[0]["name"] = "text";
#else
    written[0]["name"][0] = 5.0;
#endif
#if REFUSED == 9
    Reference<Array> inside = cells[0];
    inside = 5.0;
#endif
}
