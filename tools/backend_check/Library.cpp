#include "Library.hpp"

#include <dlfcn.h>

#include <fstream>
#include <iterator>

namespace vexa::check {

namespace {

std::string loaded; // its path

/// What an instrumented library calls at the entry of each function is named in its table of symbols.
bool isInstrumented(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    return bytes.find("__tsan_func_entry") != std::string::npos;
}

} // namespace

Owned<ArrayFactoryImpl> loadBackend(const std::string& path) {
    // Without a slash the loader would look in its own directories.
    const std::string file = path.find('/') == std::string::npos ? "./" + path : path;
    if (::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL) == nullptr) {
        const char* reason = ::dlerror();
        fail(std::string("it cannot be loaded: ") + (reason == nullptr ? "no reason given" : reason));
    }
    loaded = file;
    ArrayFactoryImpl* factory = ArrayFactoryImpl::getDefaultFactory();
    if (factory == nullptr)
        fail(
            "it loads, but no factory is registered then. A back-end calls "
            "vexa::data::impl::ArrayFactoryImpl::registerClientFactoryFunction from the initialiser of a variable at "
            "namespace scope, and the function that it registers returns a factory");
    return Owned<ArrayFactoryImpl>(factory);
}

bool underThreadSanitizer() {
    return ::dlsym(RTLD_DEFAULT, "__tsan_init") != nullptr && isInstrumented(loaded);
}

} // namespace vexa::check
