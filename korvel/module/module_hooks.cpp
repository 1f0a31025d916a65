// What the system's loader calls when a process loads the library and when it unloads it. A static
// build is part of its host and is neither loaded nor unloaded.

#if !defined(KORVEL_STATIC)

#include <utility>

#include "korvel/platform/export.h"
#include "korvel/platform/framework.h"

namespace {

// At the end of a process destructors of static objects run before `unloaded`: neither has one.
AFX_EXTENSION_MODULE extension_module;
CDynLinkLibrary* registration = nullptr; // null when the framework has refused

/// Adds the library to the framework's chain of loaded extension libraries. False, with nothing
/// registered, when the framework does not accept it.
bool attach(HINSTANCE module) noexcept {
    if (AfxInitExtensionModule(extension_module, module) == 0) {
        return false;
    }
    try {
        registration = new CDynLinkLibrary(extension_module);
    } catch (...) { // no exception may pass the system's loader
        AfxTermExtensionModule(extension_module);
    }
    return registration != nullptr;
}

/// Removes it from the chain. Also called after `attach` has failed.
void detach() noexcept {
    if (CDynLinkLibrary* const registered = std::exchange(registration, nullptr)) {
        AfxTermExtensionModule(extension_module);
#if defined(KORVEL_USE_HOST_FRAMEWORK)
        static_cast<void>(registered); // a host's framework deletes what is registered for a module
#else
        delete registered;
#endif
    }
}

} // namespace

#if defined(_WIN32)

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    switch (reason) {
    case DLL_PROCESS_ATTACH:
        return attach(module) ? TRUE : FALSE;
    case DLL_PROCESS_DETACH:
        detach();
        return TRUE;
    default: // starting and ending threads change nothing
        return TRUE;
    }
}

#else

namespace {

[[gnu::constructor]] void loaded() {
    attach(&extension_module);
}

[[gnu::destructor]] void unloaded() {
    detach();
}

} // namespace

#endif
#endif
