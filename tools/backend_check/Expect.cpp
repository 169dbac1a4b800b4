#include "Expect.hpp"

#include "Kinds.hpp"

#include <foundation/vexadata/Exception.hpp>

#include <cxxabi.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <memory>
#include <typeinfo>

namespace vexa::check {

namespace {
void (*failureListener)(const std::string& reason) = nullptr;
}

void listenToFailures(void (*listener)(const std::string& reason)) { failureListener = listener; }

void fail(std::string reason) {
    if (failureListener != nullptr) failureListener(reason);
    throw Failure{std::move(reason)};
}

std::string inParentheses(const std::string& first, const std::string& second) {
    return std::string("(").append(first).append(",").append(second).append(")");
}

std::string show(bool value) { return value ? "true" : "false"; }

/// The shortest text that tells the value from every other.
std::string show(double value) {
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

std::string show(const std::string& text) { return '"' + text + '"'; }

std::string show(const std::u16string& text) {
    static constexpr std::string_view digits = "0123456789abcdef";
    std::string shown = "\"";
    for (const char16_t unit : text) {
        if (unit >= u' ' && unit < u'\x7f') {
            shown.push_back(static_cast<char>(unit));
            continue;
        }
        shown += "\\u";
        for (int shift = unit > 0xfff ? 12 : unit > 0xff ? 8 : unit > 0xf ? 4 : 0; shift >= 0; shift -= 4)
            shown.push_back(digits[unit >> shift & 0xf]);
    }
    return shown + '"';
}

std::string show(const std::vector<std::size_t>& dimensions) {
    if (dimensions.empty()) return "no dimensions";
    std::string shown;
    for (const std::size_t extent : dimensions)
        shown.append(shown.empty() ? "" : "x").append(std::to_string(extent));
    return shown;
}

std::string show(const std::vector<std::string>& texts) {
    std::string shown;
    for (const std::string& text : texts)
        shown.append(shown.empty() ? "" : ", ").append(text);
    return "[" + shown + "]";
}

std::string show(foundation::vexadata::ArrayType type) {
    return std::string(nameOf(type)) + " (" + std::to_string(static_cast<long>(type)) + ")";
}

namespace {

std::string className(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), &std::free);
    const std::string full = name == nullptr ? type.name() : name.get();
    const std::size_t colon = full.rfind("::");
    return colon == std::string::npos || full.find('<') < colon ? full : full.substr(colon + 2);
}

} // namespace

std::string describeException() {
    try {
        throw;
    } catch (const Failure& failure) {
        return failure.reason;
    } catch (const std::exception& error) {
        return className(typeid(error)) + " (\"" + error.what() + "\")";
    } catch (const foundation::vexadata::Exception& error) {
        return className(typeid(error)) + " (\"" + error.what() + "\")";
    } catch (...) {
        const std::type_info* type = abi::__cxa_current_exception_type();
        return type == nullptr ? "something unknown" : "an object of type " + className(*type);
    }
}

} // namespace vexa::check
