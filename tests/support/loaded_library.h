#pragma once

// Libraries that are loaded while the program runs, by the calls of the system.

#if defined(_WIN32)
#include "korvel/platform/types.h"
#else
#include <dlfcn.h>
#endif

namespace korvel::test {

#if defined(_WIN32)

using Library = HMODULE;

/// Null when the system or the library itself refuses.
inline Library load_library(const char* file) {
    return LoadLibraryA(file);
}
inline bool unload_library(Library library) {
    return FreeLibrary(library) != 0;
}
inline bool is_library_loaded(const char* file) {
    return GetModuleHandleA(file) != nullptr;
}
/// Whether the library is the one that a framework knows by `module`.
inline bool is_library_of(Library library, HMODULE module) {
    return library == module;
}

#else

using Library = void*;

inline Library load_library(const char* file) {
    return dlopen(file, RTLD_NOW | RTLD_LOCAL);
}
inline bool unload_library(Library library) {
    return dlclose(library) == 0;
}
inline bool is_library_loaded(const char* file) {
    void* const library = dlopen(file, RTLD_NOW | RTLD_NOLOAD);
    return library != nullptr && dlclose(library) == 0;
}
inline bool is_library_of(Library library, const void* module) {
    Dl_info owner{};
    void* const loaded =
        dladdr(module, &owner) != 0 ? dlopen(owner.dli_fname, RTLD_NOW | RTLD_NOLOAD) : nullptr;
    return loaded != nullptr && dlclose(loaded) == 0 && loaded == library;
}

#endif

} // namespace korvel::test
