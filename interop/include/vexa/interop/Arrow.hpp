// Arrays as columns and tables of Apache Arrow, through the Arrow C data interface, by which data frames, file
// readers and query engines of one process hand each other their columns, and such columns as arrays. No
// library of Arrow is needed. Nothing of the library includes this header; programs that do link
// vexadata::client.
//
// | array | format | copied |
// |---|---|---|
// | integers, single, double | c C s S i I l L f g | no |
// | logical | b, a bit an entry | yes |
// | string | u, U; missing ones are missing | yes, as UTF-8 |
// | enumeration | codes into a dictionary of names; without member: missing | yes |
// | struct of 1x1 whose fields are columns of one length | +s, which is a table | by its columns |
//
// A column is n by 1; where arrays become columns, a row will do. Missing entries of numbers come back as NaN:
// columns of integers, of logicals and of decimals (which are read, as double, but never written) that have
// some become double, as where the library's own command reads a text file. Other formats are refused, among them
// dates, lists and string views: let the other side cast or format them.
#pragma once

#include <vexa/interop/detail/ArrowExport.hpp>
#include <vexa/interop/detail/ArrowImport.hpp>

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace vexa::interop {

/// An array as a column, or a struct of columns as a table. Both structures are overwritten, and are then the
/// caller's to hand over or to release, on any thread. Shared elements are held by a handle in the array's
/// structure: later writes through other handles leave it as it is, and nobody must write through it.
///
/// The class of an enumeration and the dimensions of a row are not told. NaN stays a number unless `options`
/// say that it stands for a missing one.
/// @throws std::invalid_argument, naming column and reason: other kinds, matrices, columns of different
/// length, struct arrays of other than one record; std::range_error for text with half of a surrogate pair, or
/// names of members that are no UTF-8; std::bad_alloc. The structures have not changed then.
inline void toArrow(const fv::Array& array, ArrowSchema* schema, ArrowArray* out,
                    const ArrowOptions& options = {}) {
    detail::ExportedArrow made = detail::exportAny(array, "", options);
    made.schema.moveTo(schema);
    made.array.moveTo(out);
}

/// A table as a stream of one batch. The structure is overwritten, and is then the caller's to hand over or
/// to release. The columns are made here, once.
/// @throws as `toArrow`; std::invalid_argument for anything but a struct array
inline void toArrowStream(const fv::Array& table, ArrowArrayStream* out, const ArrowOptions& options = {}) {
    if (table.getType() != fv::ArrayType::STRUCT) {
        throw std::invalid_argument(std::string("Arrow: a stream is of tables, not of kind ") +
                                    fv::kindName(table.getType()));
    }
    auto stream = std::make_unique<detail::TableStream>();
    stream->table = detail::exportAny(table, "", options);
    *out = {detail::TableStream::getSchema, detail::TableStream::getNext, detail::TableStream::getLastError,
            detail::TableStream::release, stream.release()};
}

/// A column, or a table as a 1-by-1 struct of columns. Takes the array over; the schema stays the caller's.
///
/// Numbers of which none is missing are shared and count as read-only: the first write to a column gives it
/// storage of its own. The array is released with the last handle of the last such column, or at once when
/// there is none. Fields are named after the columns by `fieldNames`; members of a dictionary belong to a
/// class named after the column.
///
/// @throws std::invalid_argument, naming column and reason: formats other than those above, a structure that
/// contradicts its schema or itself, integers of 64 bits beside missing entries that double cannot hold;
/// std::range_error for text that is no UTF-8; std::bad_alloc; errors of the back-end. Whatever is thrown, the
/// array is still the caller's, and has not been released.
inline fv::Array fromArrow(const ArrowSchema& schema, ArrowArray* array) {
    const auto owner = std::make_shared<OwnedArrow<ArrowArray>>(); // of nothing while something can fail
    fv::Array made = detail::readArrays(schema, {array}, owner);
    owner->take(array);
    return made;
}

/// The same from arrays that are pieces of one column or table, one behind the other, as query engines give
/// them; none gives an array without entries. The numbers of several are copied. Releases them also when this
/// throws.
/// @throws as the other
inline fv::Array fromArrow(const ArrowSchema& schema, std::vector<OwnedArrow<ArrowArray>> arrays) {
    std::vector<const ArrowArray*> pieces;
    const auto owner = std::make_shared<std::vector<OwnedArrow<ArrowArray>>>(std::move(arrays));
    for (const OwnedArrow<ArrowArray>& array : *owner) {
        pieces.push_back(array.get());
    }
    return detail::readArrays(schema, pieces, owner);
}

/// All batches of a stream as one table, as `fromArrow` has it. Releases the stream, also when this throws.
/// @throws as `fromArrow`; std::runtime_error with the text of an error of the stream
inline fv::Array fromArrowStream(ArrowArrayStream* stream) {
    if (stream == nullptr || stream->release == nullptr) {
        throw std::invalid_argument("Arrow: the stream has been released");
    }
    OwnedArrow<ArrowArrayStream> source;
    source.take(stream);
    OwnedArrow<ArrowSchema> schema;
    detail::requireSuccess(*source.get(), source->get_schema(source.get(), schema.get()));
    std::vector<OwnedArrow<ArrowArray>> batches;
    do {
        batches.emplace_back();
        detail::requireSuccess(*source.get(), source->get_next(source.get(), batches.back().get()));
    } while (batches.back());
    batches.pop_back();
    return fromArrow(*schema.get(), std::move(batches));
}

} // namespace vexa::interop
