// Which back-end a new `ArrayFactory` uses: two places for factory functions, each filled once in a process.
// That of the engine comes before that of the client library, so that an extension loaded by an engine uses
// the arrays of that engine.
#include <vexa/data/impl/ArrayFactoryImpl.hpp>

#include <atomic>
#include <stdexcept>

namespace vexa::data::impl {

namespace {

using Function = ArrayFactoryImpl* (*)();
using Place = std::atomic<Function>;

// Constant-initialised: back-ends register from the initialisers of other libraries.
constinit Place vexaFactoryFuncPtr{nullptr};
constinit Place clientFactoryFuncPtr{nullptr};

bool registerOnce(Place& place, Function function, const char* message) {
    Function current = nullptr;
    if (place.compare_exchange_strong(current, function) || current == function) {
        return true;
    }
    throw std::logic_error(message);
}

} // namespace

bool ArrayFactoryImpl::registerVexaFactoryFunction(Function function) {
    return registerOnce(vexaFactoryFuncPtr, function,
                        "attempted to assign vexaFactoryFuncPtr twice to different values.");
}

bool ArrayFactoryImpl::registerClientFactoryFunction(Function function) {
    return registerOnce(clientFactoryFuncPtr, function,
                        "attempted to assign clientFactoryFuncPtr twice to different values.");
}

ArrayFactoryImpl* ArrayFactoryImpl::getDefaultFactory() {
    if (Function engine = vexaFactoryFuncPtr.load()) {
        return engine();
    }
    Function client = clientFactoryFuncPtr.load();
    return client == nullptr ? nullptr : client();
}

} // namespace vexa::data::impl
