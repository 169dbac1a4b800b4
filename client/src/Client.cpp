// Registration when the library is loaded, and the classes that handles shall recognise.
#include "CellArray.hpp"
#include "Factory.hpp"
#include "StringArray.hpp"
#include "StructArray.hpp"

#include <vexa/client/Client.hpp>
#include <vexa/data/detail/InPlace.hpp>

#include <stdexcept>
#include <typeinfo>

namespace vexa::client {

namespace {

/// One factory serves all: it has no state. Never destroyed, since handles may outlive any static object.
data::impl::ArrayFactoryImpl* sharedFactory() {
    static Factory& factory = *new Factory;
    factory.retain();
    return &factory;
}

/// Runs when the library is loaded. Loading succeeds even when another back-end was registered first and
/// stays.
const bool registeredOnLoad = [] {
    data::detail::recognise(data::detail::RecognisedKind::CELLS, typeid(CellArray));
    data::detail::recognise(data::detail::RecognisedKind::STRINGS, typeid(StringArray));
    data::detail::recognise(data::detail::RecognisedKind::STRUCTS, typeid(StructArray));
    data::detail::recogniseFactory(typeid(Factory));
    try {
        return registerBackEnd();
    } catch (const std::logic_error&) {
        return false;
    }
}();

} // namespace

bool registerBackEnd() { return data::impl::ArrayFactoryImpl::registerClientFactoryFunction(&sharedFactory); }

} // namespace vexa::client
