#include "Factory.hpp"

#include <vexa/client/Client.hpp>

#include <stdexcept>
#include <utility>

namespace vexa::client {

namespace {

/// One factory serves all: it has no state. Never destroyed, since handles may outlive any static object.
data::impl::ArrayFactoryImpl* sharedFactory() {
    static Factory& factory = *new Factory;
    factory.retain();
    return &factory;
}

/// Runs when the library is loaded. Another back-end that came first keeps the place, and loading still succeeds.
const bool registeredOnLoad = [] {
    try {
        return registerBackEnd();
    } catch (const std::logic_error&) {
        return false;
    }
}();

} // namespace

bool registerBackEnd() { return data::impl::ArrayFactoryImpl::registerClientFactoryFunction(&sharedFactory); }

const char* InvalidBufferException::what() const noexcept {
    return "The buffer cannot be the storage of this Array";
}
InvalidBufferException::~InvalidBufferException() = default;

NamedException::NamedException(std::string message)
    : message_(std::make_shared<const std::string>(std::move(message))) {}
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

} // namespace vexa::client
