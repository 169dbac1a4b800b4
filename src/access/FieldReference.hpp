// Index chains to fields of records: what `structs[i]["name"]` is made of. They usually live for one
// expression, so that their memory is kept for the next one.
#pragma once

#include "../core/SpareBlock.hpp"

#include <foundation/vexadata/detail/ReferenceFunctions.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace foundation::vexadata::detail {

/// What `["name"]` on a record of an array gives, usually for one expression.
class FieldReference final : public ReferenceImpl {
public:
    static std::shared_ptr<ReferenceImpl> make(ArrayImpl* records, std::uint64_t index,
                                               const std::string& fieldName) {
        auto* chain = new FieldReference(records, index);
        const std::shared_ptr<ReferenceImpl> owner(chain, ReleaseReference(),
                                                   SpareAllocator<ReferenceImpl>());
        chain->addIndex(fieldName);
        return owner;
    }

    std::size_t record() const noexcept { return record_; }

    ArrayImpl* getArrayImpl() const override { return records_; }
    void prepareForWrite() override { records_->unshare(); }

    static void* operator new(std::size_t) { return SpareBlock<sizeof(FieldReference)>::take(); }
    static void operator delete(void* block) { SpareBlock<sizeof(FieldReference)>::giveBack(block); }

private:
    FieldReference(ArrayImpl* records, std::uint64_t index) : records_(records), record_(index) {
        setKnownIndex(index);
    }

    ArrayImpl* records_;
    std::uint64_t record_;
};

} // namespace foundation::vexadata::detail
