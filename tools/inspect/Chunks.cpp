#include "Chunks.hpp"

#include "InputError.hpp"

namespace vexa::inspect {

std::string_view Chunks::read() {
    const std::size_t length = source_.read(bytes_.data(), bytes_.size());
    progress_.advance(length);
    read_ = {bytes_.data(), length};
    return read_;
}

std::string_view Chunks::converted(std::string_view bytes) {
    if (converted_.empty()) return bytes;
    return {converted_.data(), latin1ToUtf8(bytes, converted_.data())};
}

std::string_view Chunks::next() { return converted(read()); }

std::string_view Chunks::first() {
    std::string_view head = read();
    if (head.empty()) throw InputError("the file is empty; expected a header line", 1);
    const bool latin1 = !converted_.empty();
    if (head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF"))
        throw InputError(
            latin1 ? "the text is UTF-16; expected Latin-1" : "the text is UTF-16; expected UTF-8", 1);
    if (head.starts_with("\xEF\xBB\xBF")) {
        if (latin1) throw InputError("the text says that it is UTF-8; expected Latin-1", 1);
        head.remove_prefix(3);
    }
    return converted(head);
}

} // namespace vexa::inspect
