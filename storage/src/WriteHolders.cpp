// Cells and structs.
#include "ArrayWriter.hpp"
#include "Order.hpp"

#include <foundation/vexadata/StructArray.hpp>
#include <vexa/data/impl/StructArrayImpl.hpp>

#include <utility>

namespace vexa::storage {

namespace {

/// The elements of an array one after the other, in column-major order whatever their own.
class Elements {
public:
    explicit Elements(const ArrayImpl& array)
        : array_(KeptArray::share(array)),
          count_(array.getNumberOfElements()),
          isRowMajor_(array.getMemoryLayout() == data::MemoryLayout::ROW_MAJOR) {}
    bool atEnd() const noexcept { return next_ == count_; }
    /// The place of the next one in storage.
    std::size_t take() noexcept {
        const std::size_t k = next_++;
        return isRowMajor_ ? rowMajorPlace(array_->getDimensions(), k) : k;
    }
    const ArrayImpl& array() const noexcept { return *array_; }

private:
    KeptArray array_;
    std::size_t count_;
    std::size_t next_ = 0;
    bool isRowMajor_;
};

class CellFrame final : public WriteFrame {
public:
    explicit CellFrame(const ArrayImpl& array)
        : elements_(array),
          cells_(static_cast<const data::impl::TypedArrayImpl<fv::Array>&>(array).getTypedDataPtr()) {}

    bool next(ArrayWriter& writer) override {
        if (elements_.atEnd()) {
            return false;
        }
        const std::size_t place = elements_.take();
        if (cells_ != nullptr) {
            writer.begin(*Access::impl(cells_[place]), ownersOf(cells_[place]));
        } else { // the back-end has no handles in store
            const auto cells = handleOf<fv::TypedArray<fv::Array>>(elements_.array());
            const fv::Array cell = *(cells.cbegin() + static_cast<std::ptrdiff_t>(place));
            writer.begin(*Access::impl(cell), ownersOf(cell) - 1);
        }
        return true;
    }

private:
    Elements elements_;
    const fv::Array* cells_;
};

class StructFrame final : public WriteFrame {
public:
    StructFrame(const ArrayImpl& array, std::vector<std::string> fields)
        : elements_(array), fields_(std::move(fields)), field_(fields_.size()) {}

    bool next(ArrayWriter& writer) override {
        if (field_ == fields_.size()) {
            if (elements_.atEnd() || fields_.empty()) {
                return false;
            }
            record_ = elements_.take();
            field_ = 0;
        }
        const auto& records = static_cast<const data::impl::StructArrayImpl&>(elements_.array());
        const data::detail::CountedPtr<ArrayImpl> value(records.getField(record_, fields_[field_]));
        ++field_;
        writer.begin(*value, value->referenceCount() - 1);
        return true;
    }

private:
    Elements elements_;
    std::vector<std::string> fields_;
    std::size_t record_ = 0;
    std::size_t field_; // the next one; past the last before the first record
};

std::vector<std::string> fieldsOf(const ArrayImpl& array) {
    std::vector<std::string> fields;
    for (const fv::VexaFieldIdentifier& field : handleOf<fv::StructArray>(array).getFieldNames()) {
        fields.push_back(field.getString());
    }
    return fields;
}

} // namespace

std::unique_ptr<WriteFrame> beginCells(ArrayWriter& writer, const ArrayImpl& array) {
    putTag(writer.out(), tag::columnMajor);
    putArray(writer.out(), 2);
    putDimensions(writer.out(), array.getDimensions());
    putArray(writer.out(), array.getNumberOfElements());
    return std::make_unique<CellFrame>(array);
}

std::unique_ptr<WriteFrame> beginStructs(ArrayWriter& writer, const ArrayImpl& array) {
    Output& out = writer.out();
    std::vector<std::string> fields = fieldsOf(array);
    putKind(out, 4, array.getType(), array.getDimensions());
    putText(out, "fields");
    putArray(out, fields.size());
    for (const std::string& field : fields) {
        putName(out, field);
    }
    putText(out, "values");
    putArray(out, fields.size() * array.getNumberOfElements());
    return std::make_unique<StructFrame>(array, std::move(fields));
}

} // namespace vexa::storage
