#include "Complaint.hpp"

#include "Text.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>

namespace vexa::inspect {

Complaint& Complaint::add(std::string_view text) noexcept {
    forEachPrintable(text, [this](const auto& piece) {
        const std::string_view bytes = piece.view();
        cut_ = cut_ || bytes.size() > longest - size_;
        if (cut_) return;
        std::copy(bytes.begin(), bytes.end(), line_.begin() + static_cast<std::ptrdiff_t>(size_));
        size_ += bytes.size();
    });
    return *this;
}

Complaint& Complaint::add(std::uint64_t number) noexcept {
    std::array<char, 20> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return add(std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())));
}

void Complaint::send() noexcept {
    if (cut_) size_ += ellipsis.copy(line_.data() + size_, ellipsis.size());
    line_[size_++] = '\n';
    std::string_view rest(line_.data(), size_);
    while (!rest.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, rest.data(), rest.size());
        if (written < 0 && errno != EINTR) return;
        rest.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

} // namespace vexa::inspect
