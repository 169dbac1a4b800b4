// What holds arrays, one in another to any depth: what the checks of nested arrays run over.
#pragma once

#include "Samples.hpp"

#include <functional>
#include <string>
#include <vector>

namespace vexa::check {

/// One thing that holds an array.
struct Level {
    std::string name;
    std::vector<std::string> needs;
    /// A new array that holds `content`. What else owns the content then goes to `spared`.
    Owned<ArrayImpl> (*hold)(const Backend&, ArrayImpl& content, std::vector<Owned<ObjectImpl>>& spared);
    /// The array held, borrowed; for writing it is the holder's alone.
    ArrayImpl* (*inside)(ArrayImpl& holder, bool forWrite);
    /// Stores `content` into a holder of this level.
    void (*put)(ArrayImpl& holder, ArrayImpl& content);
};

/// Cells, fields, properties of an element of an object array, properties of an object array; in this order.
const std::vector<Level>& levels();

using Path = std::vector<const Level*>;

/// The number in the innermost array.
double valueIn(ArrayImpl& top, const Path& path, std::size_t from = 0);
/// Writes to it. What a way to write leads to is ready for it.
void writeIn(ArrayImpl& top, const Path& path, double value);

/// Runs `f` with every path of one to three levels that are offered, the outermost first.
void eachPath(Backend& backend, const std::function<void(const Path&, const std::string&)>& f);
/// Runs `f` with each level that is offered, by itself.
void eachLevel(Backend& backend, const std::function<void(const Level&)>& f);

} // namespace vexa::check
