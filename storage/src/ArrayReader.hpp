// Arrays of any kind from CBOR. What holds other arrays is built with a list of its own, so that nesting is as
// deep as memory allows.
#pragma once

#include "Format.hpp"
#include "Lexer.hpp"
#include "Payloads.hpp"

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/ClassInfo.hpp>
#include <foundation/vexadata/Object.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vexa::storage {

class ArrayReader;

/// A class of the file, made anew.
struct LoadedClass {
    fv::ClassInfo info;
    std::vector<fv::VexaPropertyIdentifier> properties; ///< in the order in which objects have their values
    std::vector<fv::VexaPropertyIdentifier> arrayProperties;
    std::size_t ways; ///< up to superclasses, as many as there are, and one

    std::size_t numberOfProperties() const noexcept { return properties.size() + arrayProperties.size(); }
};
using ClassPointer = std::shared_ptr<const LoadedClass>;

/// What an item gives; nothing when it began something that others go into.
using Result = std::variant<std::monostate, fv::Array, fv::ValueObject>;
/// What others may refer to; nothing while it is being read.
using Shared = std::variant<std::monostate, fv::Array, fv::ValueObject, ClassPointer>;

/// The place of a shared value; none for one that is not shared.
using SharedPlace = std::optional<std::size_t>;

/// An array or object part of which is there.
class ReadFrame {
public:
    explicit ReadFrame(SharedPlace shared) noexcept : shared_(shared) {}
    virtual ~ReadFrame();
    /// Reads the next part: gives what it is, or puts a frame on top of this one.
    virtual Result next(ArrayReader& reader) = 0;
    virtual void take(Result part) = 0;
    virtual bool isComplete() const = 0;
    virtual Result finish(ArrayReader& reader) = 0;
    const SharedPlace& shared() const noexcept { return shared_; }

private:
    SharedPlace shared_;
};

/// Dimensions whose product fits, and that product.
struct Size {
    std::vector<std::size_t> dimensions;
    std::size_t count;
};

class ArrayReader {
public:
    /// Shared values are numbered from `firstShared`.
    ArrayReader(Lexer& lexer, Payloads& payloads, std::uint64_t firstShared = 0);

    /// The array that the next item says.
    /// @throws Error; errors of the back-end
    fv::Array read();

    // For the functions of kinds and for frames.

    /// Reads the beginning of an array, or all of one that holds no others.
    Result begin();
    void push(std::unique_ptr<ReadFrame> frame) { frames_.push_back(std::move(frame)); }
    Lexer& lexer() noexcept { return lexer_; }
    Payloads& payloads() noexcept { return payloads_; }
    const fv::ArrayFactory& factory() const noexcept { return factory_; }

    SharedPlace addShared();
    void setShared(const SharedPlace& place, Shared value);
    /// What a reference refers to, if it is a `T`.
    template <class T>
    const T& referred(const Token& tag, const char* expected);
    /// The head of a list of `count` items; memory for as many elements may be asked for from here on.
    void expectItems(std::size_t count, const char* expected);
    /// The same for a list whose head is there.
    void announce(const Token& list);
    /// An item of a list that was announced is read, or begun.
    void itemCame() noexcept { --pending_; }
    Size readDimensions();
    /// "size" and the dimensions.
    Size expectSize();
    ClassPointer readClass(int depth = 0);
    /// Counts properties that the back-end has to make although the file has no value for each.
    void charge(std::size_t properties);
    [[noreturn]] void unknownTag(const Token& tag) const;

private:
    Result beginTagged(const Token& token, const SharedPlace& shared);
    Result beginPlain(const Token& token, const SharedPlace& shared);
    Result beginShaped(data::MemoryLayout layout, const SharedPlace& shared);
    Result beginMap(const Token& map, const SharedPlace& shared);
    ClassPointer readNewClass(int depth);

    Lexer& lexer_;
    Payloads& payloads_;
    fv::ArrayFactory factory_;
    std::uint64_t firstShared_;
    std::vector<Shared> shared_;
    std::vector<std::unique_ptr<ReadFrame>> frames_;
    std::size_t pending_ = 0; // items that lists have announced, each of which takes a byte at least
    std::size_t properties_ = 0;
    std::size_t mostProperties_;
};

template <class T>
const T& ArrayReader::referred(const Token& tag, const char* expected) {
    const std::uint64_t number = lexer_.expectUnsigned("the number of a shared value");
    const std::uint64_t place = number - firstShared_;
    if (number < firstShared_ || place >= shared_.size()) {
        lexer_.failAt(tag.offset,
                      "expected the number of a shared value before, found " + std::to_string(number));
    }
    const T* const value = std::get_if<T>(&shared_[place]);
    if (value == nullptr) {
        lexer_.failAt(tag.offset, std::string("expected ") + expected +
                                      ", found a reference to something else, or to what it is in");
    }
    return *value;
}

// One function for each kind: reads what follows its tag or its name.
fv::Array readTyped(ArrayReader& reader, const Token& tag, std::optional<Size> size,
                    data::MemoryLayout layout);
fv::Array readBooleans(ArrayReader& reader, Size size, data::MemoryLayout layout);
fv::Array readNumber(ArrayReader& reader, const Token& number);
fv::Array readComplexNumber(ArrayReader& reader);
/// A row of characters.
fv::Array readText(ArrayReader& reader, const Token& text);
fv::Array readChars(ArrayReader& reader);
fv::Array readStrings(ArrayReader& reader);
fv::Array readEnum(ArrayReader& reader);
fv::Array readSparse(ArrayReader& reader, ArrayType type);

std::unique_ptr<ReadFrame> beginCells(ArrayReader& reader, Size size, data::MemoryLayout layout,
                                      SharedPlace shared);
std::unique_ptr<ReadFrame> beginStructs(ArrayReader& reader, SharedPlace shared);
std::unique_ptr<ReadFrame> beginObjects(ArrayReader& reader, ArrayType type, std::size_t entries,
                                        SharedPlace shared);

} // namespace vexa::storage
