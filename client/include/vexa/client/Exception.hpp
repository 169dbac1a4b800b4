// Errors of the embedded back-end, where the library has none that says as much.
#pragma once

#include <foundation/vexadata/Exception.hpp>

#include <cstddef>
#include <memory>
#include <string>

namespace vexa::client {

/// A buffer was handed over that cannot be the storage of an array: there is none although the array has
/// elements, its memory layout is neither column- nor row-major, or it is not aligned for its elements.
class VEXADATA_API InvalidBufferException final : public foundation::vexadata::Exception {
public:
    const char* what() const noexcept override;
    ~InvalidBufferException() override;
    InvalidBufferException() = default;
    InvalidBufferException(const InvalidBufferException&) = default;
    InvalidBufferException& operator=(const InvalidBufferException&) = default;
};

/// The column starts of a sparse matrix in compressed columns do not rise from 0 to the number of its values.
class VEXADATA_API InvalidColumnStartsException final : public foundation::vexadata::Exception {
public:
    const char* what() const noexcept override;
    ~InvalidColumnStartsException() override;
    InvalidColumnStartsException() = default;
    InvalidColumnStartsException(const InvalidColumnStartsException&) = default;
    InvalidColumnStartsException& operator=(const InvalidColumnStartsException&) = default;
};

/// Base of errors whose message tells what was wrong. Copies share the text, which lives as long as any of
/// them.
class VEXADATA_API NamedException : public foundation::vexadata::Exception {
public:
    const char* what() const noexcept override;
    ~NamedException() override;
    NamedException(const NamedException&) = default;
    NamedException& operator=(const NamedException&) = default;

protected:
    /// The text that `what` gives.
    explicit NamedException(std::string message);

private:
    std::shared_ptr<const std::string> message_;
};

/// A struct array has no field of this name.
class VEXADATA_API UnknownFieldException final : public NamedException {
public:
    /// For the name that was asked for.
    explicit UnknownFieldException(const std::string& name);
    ~UnknownFieldException() override;
};

/// A list of field names holds one twice, or one that is not a letter followed by letters, digits and
/// underscores.
class VEXADATA_API InvalidFieldNameException final : public NamedException {
public:
    /// For a name, and what is wrong with it.
    InvalidFieldNameException(const std::string& name, const std::string& reason);
    ~InvalidFieldNameException() override;
};

/// An enumeration array does not know a member of this name.
class VEXADATA_API UnknownMemberException final : public NamedException {
public:
    /// For the name that was asked for, of this class.
    UnknownMemberException(const std::string& name, const std::string& className);
    ~UnknownMemberException() override;
};

/// An enumeration array was asked for with member names, but not with one for each element.
class VEXADATA_API WrongNumberOfNamesException final : public NamedException {
public:
    /// For as many names and as many elements.
    WrongNumberOfNamesException(std::size_t names, std::size_t elements);
    ~WrongNumberOfNamesException() override;
};

/// A class has no property of this name; or there is no class, as in an element without object.
class VEXADATA_API UnknownPropertyException final : public NamedException {
public:
    /// `className` is empty when there is no class.
    UnknownPropertyException(const std::string& name, const std::string& className);
    ~UnknownPropertyException() override;
};

/// Several superclasses define a property of this name, and none was named with it.
class VEXADATA_API AmbiguousPropertyException final : public NamedException {
public:
    /// For the name that was asked for, of this class.
    AmbiguousPropertyException(const std::string& name, const std::string& className);
    ~AmbiguousPropertyException() override;
};

/// A class cannot have this property of its own: the name is no identifier, comes twice, or is that of
/// another class.
class VEXADATA_API InvalidPropertyException final : public NamedException {
public:
    /// For a property of a class, and what is wrong with it.
    InvalidPropertyException(const std::string& name, const std::string& className,
                             const std::string& reason);
    ~InvalidPropertyException() override;
};

/// The name of a class or of an enumeration has a NUL.
class VEXADATA_API InvalidClassNameException final : public NamedException {
public:
    /// For a name.
    explicit InvalidClassNameException(const std::string& name);
    ~InvalidClassNameException() override;
};

/// A class cannot have this superclass, which is the class itself or has it among its own.
class VEXADATA_API InvalidSuperclassException final : public NamedException {
public:
    /// For the superclass and the class that was to have it.
    InvalidSuperclassException(const std::string& name, const std::string& className);
    ~InvalidSuperclassException() override;
};

/// Classes of another back-end have no objects, arrays or subclasses here.
class VEXADATA_API ForeignClassException final : public NamedException {
public:
    /// For the name of the class.
    explicit ForeignClassException(const std::string& name);
    ~ForeignClassException() override;
};

/// An object of another class was stored into an array of objects of one class.
class VEXADATA_API WrongClassException final : public NamedException {
public:
    /// For the names of the two classes.
    WrongClassException(const std::string& found, const std::string& expected);
    ~WrongClassException() override;
};

/// A variable cannot have this name: it is made of other characters than letters, digits and underscores, or
/// begins with a digit.
class VEXADATA_API InvalidVariableNameException final : public NamedException {
public:
    /// For a name.
    explicit InvalidVariableNameException(const std::string& name);
    ~InvalidVariableNameException() override;
};

} // namespace vexa::client
