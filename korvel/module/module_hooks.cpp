// What the system's loader calls when a process loads the library and when it unloads it. A static
// build is part of its host and is neither loaded nor unloaded.

#if !defined(KORVEL_STATIC)

#include <utility>

#include "korvel/platform/export.h"
#include "korvel/platform/framework.h"

namespace {

// At the end of a process destructors of static objects run before `unloaded`: neither has one.
AFX_EXTENSION_MODULE extension_module;
CDynLinkLibrary* registration = nullptr;

/// Adds the library to the framework's chain of loaded extension libraries, or removes it. False
/// when the framework does not accept it.
bool attach_or_detach(bool attaches, HINSTANCE module) {
    if (!attaches) {
        AfxTermExtensionModule(extension_module);
        delete std::exchange(registration, nullptr);
        return true;
    }
    if (AfxInitExtensionModule(extension_module, module) == 0) {
        return false;
    }
    registration = new CDynLinkLibrary(extension_module);
    return true;
}

} // namespace

#if defined(_WIN32)

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    switch (reason) {
    case DLL_PROCESS_ATTACH:
        return attach_or_detach(true, module) ? TRUE : FALSE;
    case DLL_PROCESS_DETACH:
        attach_or_detach(false, module);
        return TRUE;
    default: // starting and ending threads change nothing
        return TRUE;
    }
}

#else

namespace {

[[gnu::constructor]] void loaded() {
    attach_or_detach(true, &extension_module);
}

[[gnu::destructor]] void unloaded() {
    attach_or_detach(false, &extension_module);
}

} // namespace

#endif
#endif
