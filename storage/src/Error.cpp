#include <vexa/storage/Error.hpp>

#include <utility>

namespace vexa::storage {

struct Error::Content {
    std::string file;
    std::uint64_t offset;
    std::string text;
};

namespace {

std::string line(const std::string& file, std::uint64_t offset, std::string_view message) {
    std::string text = file + ": ";
    if (offset != Error::nowhere) {
        text += "byte " + std::to_string(offset) + ": ";
    }
    return text.append(message);
}

} // namespace

Error::Error(std::string file, std::uint64_t offset, std::string_view message) {
    std::string text = line(file, offset, message);
    content_ = std::make_shared<Content>(Content{std::move(file), offset, std::move(text)});
}
Error::~Error() = default;

const char* Error::what() const noexcept { return content_->text.c_str(); }
const std::string& Error::file() const noexcept { return content_->file; }
std::uint64_t Error::offset() const noexcept { return content_->offset; }

} // namespace vexa::storage
