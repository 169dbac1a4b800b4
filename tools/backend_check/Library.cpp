#include "Library.hpp"

#include <dlfcn.h>

namespace vexa::check {

Owned<ArrayFactoryImpl> loadBackend(const std::string& path) {
    // Without a slash the loader would look in its own directories.
    const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
    if (::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL) == nullptr) {
        const char* reason = ::dlerror();
        fail(std::string("it cannot be loaded: ") + (reason == nullptr ? "no reason given" : reason));
    }
    ArrayFactoryImpl* factory = ArrayFactoryImpl::getDefaultFactory();
    if (factory == nullptr)
        fail(
            "it loads, but no factory is registered then. A back-end calls "
            "vexa::data::impl::ArrayFactoryImpl::registerClientFactoryFunction from the initialiser of a variable at "
            "namespace scope, and the function that it registers returns a factory");
    return Owned<ArrayFactoryImpl>(factory);
}

} // namespace vexa::check
