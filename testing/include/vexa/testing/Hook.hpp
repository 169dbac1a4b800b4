// What a forwarding double tells of the calls that it passes on, and what may be done about them.
#pragma once

#include <complex>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

namespace vexa::testing {

/// A call that a double is about to pass on. Valid while the hook runs.
class Call {
public:
    /// The name of the operation, such as `"setElementValue"`. Of static storage duration.
    const char* name() const noexcept { return name_; }
    /// The call with its arguments, such as `setElementValue(3, "", 1.5)`: numbers and truth values as they
    /// are, text in quotation marks, dimensions as `"2x3"`, enumerators as their number, everything else as
    /// `..`.
    /// @throws std::bad_alloc
    virtual std::string text() const = 0;

protected:
    /// Keeps a pointer to the name.
    explicit Call(const char* name) noexcept : name_(name) {}
    ~Call() = default;

private:
    const char* name_;
};

/// Sees every call before it is passed on. One hook may serve any number of doubles: the doubles that a
/// double makes have the hook of their maker. The functions run on the thread that made the call. Each of
/// them does nothing unless overridden.
class Hook {
public:
    virtual ~Hook() = default;
    /// Before an operation. What it throws goes to the caller, and the operation is not passed on.
    virtual void operation(const Call& call) { static_cast<void>(call); }
    /// Before one of the queries of an array that must not throw: type, layout, dimensions, count, emptiness,
    /// identity, equality. What it throws goes to the caller all the same.
    virtual void query(const Call& call) { static_cast<void>(call); }
    /// Asked when an operation has given a pointer that is not null: whether the caller gets null instead.
    /// What was given is then released.
    virtual bool givesNull() { return false; }
};

namespace detail {

template <class Argument>
void write(std::ostream& out, const Argument& argument) {
    if constexpr (std::is_same_v<Argument, std::string>) {
        out << '"' << argument << '"';
    } else if constexpr (std::is_same_v<Argument, std::vector<std::size_t>>) {
        const char* separator = "\"";
        for (const std::size_t extent : argument) {
            out << separator << extent;
            separator = "x";
        }
        out << '"';
    } else if constexpr (std::is_same_v<Argument, bool> || std::is_floating_point_v<Argument>) {
        out << argument;
    } else if constexpr (std::is_integral_v<Argument>) {
        out << +argument;
    } else if constexpr (std::is_enum_v<Argument>) {
        out << static_cast<std::int64_t>(argument);
    } else {
        out << "..";
    }
}
template <class T>
void write(std::ostream& out, const std::complex<T>& argument) {
    out << +argument.real() << '+' << +argument.imag() << 'i';
}

/// A call with arguments that live elsewhere.
template <class... Arguments>
class CallOf final : public Call {
public:
    explicit CallOf(const char* name, const Arguments&... arguments) noexcept
        : Call(name), arguments_(arguments...) {}

    std::string text() const override {
        std::ostringstream out;
        out << std::boolalpha << name() << '(';
        std::apply(
            [&](const Arguments&... arguments) {
                [[maybe_unused]] const char* separator = "";
                ((out << separator, write(out, arguments), separator = ", "), ...);
            },
            arguments_);
        out << ')';
        return out.str();
    }

private:
    std::tuple<const Arguments&...> arguments_;
};

} // namespace detail

} // namespace vexa::testing
