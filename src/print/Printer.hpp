// Arrays as lines of text: headings, grids, and nested arrays indented below their labels.
#pragma once

#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/StructElement.hpp>

#include <string>
#include <vector>

namespace foundation::vexadata::print {

/// Collects the lines of one array, or of one record.
class Printer {
public:
    explicit Printer(const PrintOptions& options) : options_(options) {}

    /// `array` behind `label`, both on the current level.
    void array(const std::string& label, const Array& array);
    /// The fields of a record, one below the other.
    void record(const StructElement& record);
    /// An object, its properties below it.
    void object(const std::string& label, const ValueObject& object);

    /// All lines so far, without a line end after the last.
    std::string text() const;

private:
    using ArrayImpl = vexa::data::impl::ArrayImpl;

    void line(const std::string& text) { lines_.push_back(indent_ + text); }
    std::size_t threshold() const noexcept;
    void contents(const Array& array);
    void matrix(ArrayImpl& array);
    void page(ArrayImpl& array, std::size_t number, bool cut);
    void nonZeros(const Array& array);
    void items(const Array& array);
    void item(const Array& array, std::size_t number);
    template <class Walk>
    void deeper(Walk walk);

    PrintOptions options_;
    std::string indent_;
    std::size_t level_ = 0;
    std::vector<std::string> lines_;
};

} // namespace foundation::vexadata::print
