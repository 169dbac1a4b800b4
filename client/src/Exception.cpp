// Messages of the errors of the embedded back-end.
#include <vexa/client/Exception.hpp>

#include <string>

namespace vexa::client {

const char* InvalidBufferException::what() const noexcept {
    return "The buffer cannot be the storage of this Array";
}
InvalidBufferException::~InvalidBufferException() = default;

const char* InvalidColumnStartsException::what() const noexcept {
    return "Column starts must rise from zero to the number of values";
}
InvalidColumnStartsException::~InvalidColumnStartsException() = default;

namespace {

/// Writes a NUL in a name as a backslash and 0: readers of a message stop at the first NUL.
std::string withoutNuls(const std::string& message) {
    std::string readable;
    for (const char c : message) {
        readable += c == '\0' ? std::string("\\0") : std::string(1, c);
    }
    return readable;
}

} // namespace

NamedException::NamedException(std::string message)
    : message_(std::make_shared<const std::string>(withoutNuls(message))) {}
const char* NamedException::what() const noexcept { return message_->c_str(); }
NamedException::~NamedException() = default;

UnknownFieldException::UnknownFieldException(const std::string& name)
    : NamedException("Unknown field '" + name + "'") {}
UnknownFieldException::~UnknownFieldException() = default;

InvalidFieldNameException::InvalidFieldNameException(const std::string& name, const std::string& reason)
    : NamedException("The field name '" + name + "' " + reason) {}
InvalidFieldNameException::~InvalidFieldNameException() = default;

UnknownMemberException::UnknownMemberException(const std::string& name, const std::string& className)
    : NamedException("Unknown member '" + name + "' of the enumeration '" + className + "'") {}
UnknownMemberException::~UnknownMemberException() = default;

WrongNumberOfNamesException::WrongNumberOfNamesException(std::size_t names, std::size_t elements)
    : NamedException(std::to_string(names) + " member names for " + std::to_string(elements) + " elements") {}
WrongNumberOfNamesException::~WrongNumberOfNamesException() = default;

UnknownPropertyException::UnknownPropertyException(const std::string& name, const std::string& className)
    : NamedException("Unknown property '" + name + "'" +
                     (className.empty() ? ": there is no class that could have it"
                                        : " of the class '" + className + "'")) {}
UnknownPropertyException::~UnknownPropertyException() = default;

AmbiguousPropertyException::AmbiguousPropertyException(const std::string& name, const std::string& className)
    : NamedException("The class '" + className + "' inherits several properties '" + name + "'") {}
AmbiguousPropertyException::~AmbiguousPropertyException() = default;

InvalidPropertyException::InvalidPropertyException(const std::string& name, const std::string& className,
                                                   const std::string& reason)
    : NamedException("The property '" + name + "' of the class '" + className + "' " + reason) {}
InvalidPropertyException::~InvalidPropertyException() = default;

InvalidClassNameException::InvalidClassNameException(const std::string& name)
    : NamedException("A class cannot be called '" + name + "'") {}
InvalidClassNameException::~InvalidClassNameException() = default;

InvalidSuperclassException::InvalidSuperclassException(const std::string& name, const std::string& className)
    : NamedException("The superclass '" + name + "' is or has the class '" + className + "' itself") {}
InvalidSuperclassException::~InvalidSuperclassException() = default;

ForeignClassException::ForeignClassException(const std::string& name)
    : NamedException("The class '" + name + "' comes from another back-end") {}
ForeignClassException::~ForeignClassException() = default;

WrongClassException::WrongClassException(const std::string& found, const std::string& expected)
    : NamedException("An object of the class '" + found + "' cannot be in an array of '" + expected + "'") {}
WrongClassException::~WrongClassException() = default;

InvalidVariableNameException::InvalidVariableNameException(const std::string& name)
    : NamedException("A variable cannot be called '" + name + "'") {}
InvalidVariableNameException::~InvalidVariableNameException() = default;

} // namespace vexa::client
