#include "kit/base/module.h"

#if !defined(_WIN32)
#include <dlfcn.h>
#endif

#include "korvel/module/korvel.h"

namespace korvel::kit {

#if defined(_WIN32)

Module load_module(const std::string& name) {
    return {.missing = "which is not available on Windows: " + name};
}

#else

Module load_module(const std::string& name) {
    const std::string file = "lib" + name + ".so";
    // Without a folder in its name: then the dynamic loader searches.
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* symbol = library != nullptr ? dlsym(library, "korvel_module") : nullptr;
    if (symbol == nullptr) {
        const char* reason = dlerror(); // NOLINT(concurrency-mt-unsafe): of this thread
        return {.missing = "which is not installed: " + (reason != nullptr ? reason : file)};
    }
    const void* implementation = reinterpret_cast<ModuleEntry>(symbol)(KORVEL_VERSION);
    if (implementation == nullptr) {
        return {.missing = "whose module is not of korvel " KORVEL_VERSION ": " + file};
    }
    return {.implementation = implementation};
}

#endif

Module module_left_out(const std::string& option) {
    return {.missing = "which this build of korvel does not have (" + option + ")"};
}

} // namespace korvel::kit
