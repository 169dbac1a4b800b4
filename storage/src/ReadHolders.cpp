// Cells and structs.
#include "ArrayReader.hpp"
#include "Order.hpp"

#include <foundation/vexadata/StructArray.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>

#include <utility>

namespace vexa::storage {

namespace {

class CellFrame final : public ReadFrame {
public:
    CellFrame(const fv::ArrayFactory& factory, Size size, bool isRowMajor, SharedPlace shared)
        : ReadFrame(shared),
          size_(std::move(size)),
          isRowMajor_(isRowMajor),
          cells_(factory.createArray<fv::Array>(size_.dimensions)) {}

    Result next(ArrayReader& reader) override {
        reader.itemCame();
        return reader.begin();
    }
    void take(Result part) override {
        auto& impl = static_cast<data::impl::TypedArrayImpl<fv::Array>&>(*fv::detail::Access::impl(cells_));
        const std::size_t place = isRowMajor_ ? columnMajorPlaceOfRowMajor() : done_;
        impl.setElementValue(place, {}, std::move(std::get<fv::Array>(part)));
        ++done_;
    }
    bool isComplete() const override { return done_ == size_.count; }
    Result finish(ArrayReader&) override { return fv::Array(std::move(cells_)); }

private:
    std::size_t columnMajorPlaceOfRowMajor() const { return columnMajorPlace(size_.dimensions, done_); }

    Size size_;
    bool isRowMajor_;
    fv::TypedArray<fv::Array> cells_;
    std::size_t done_ = 0;
};

class StructFrame final : public ReadFrame {
public:
    StructFrame(fv::StructArray records, std::size_t values, std::size_t fields, SharedPlace shared)
        : ReadFrame(shared), records_(std::move(records)), missing_(values), fields_(fields) {}

    Result next(ArrayReader& reader) override {
        reader.itemCame();
        return reader.begin();
    }
    void take(Result part) override {
        record_.push_back(std::move(std::get<fv::Array>(part)));
        --missing_;
        if (record_.size() == fields_) {
            auto& impl = static_cast<data::impl::StructArrayImpl&>(*fv::detail::Access::impl(records_));
            impl.setFieldValues(done_++, std::exchange(record_, {}));
            record_.reserve(fields_);
        }
    }
    bool isComplete() const override { return missing_ == 0; }
    Result finish(ArrayReader&) override { return fv::Array(std::move(records_)); }

private:
    fv::StructArray records_;
    std::size_t missing_;
    std::size_t fields_;
    std::size_t done_ = 0;
    std::vector<fv::Array> record_;
};

} // namespace

std::unique_ptr<ReadFrame> beginCells(ArrayReader& reader, Size size, data::MemoryLayout layout,
                                      SharedPlace shared) {
    const bool isRowMajor = layout == data::MemoryLayout::ROW_MAJOR;
    return std::make_unique<CellFrame>(reader.factory(), std::move(size), isRowMajor, shared);
}

std::unique_ptr<ReadFrame> beginStructs(ArrayReader& reader, SharedPlace shared) {
    Lexer& lexer = reader.lexer();
    Size size = reader.expectSize();
    lexer.expectText("fields");
    std::vector<std::string> names;
    for (std::size_t n = lexer.expectList("the names of fields"); n > 0; --n) {
        names.push_back(lexer.expectName("the name of a field"));
    }
    const std::size_t fields = names.size();
    std::size_t values = 0;
    if (__builtin_mul_overflow(fields, size.count, &values)) {
        lexer.failAt(lexer.position(), "expected as many values before as 64 bits can count");
    }
    lexer.expectText("values");
    reader.expectItems(values, "the values of records");
    fv::StructArray records =
        reader.factory().createStructArray(std::move(size.dimensions), std::move(names));
    return std::make_unique<StructFrame>(std::move(records), values, fields, shared);
}

} // namespace vexa::storage
