#pragma once

// A stand-in for the application framework of a host: what korvel uses of such a framework, and
// nothing else. On Windows it draws through GDI; elsewhere its device context is left to the host.

#if defined(_WIN32)
#ifdef STAND_IN_BUILDING
#define STAND_IN_API __declspec(dllexport)
#else
#define STAND_IN_API __declspec(dllimport)
#endif
#include <windows.h>

#include <host_gdi.h>
#else
#define STAND_IN_API __attribute__((visibility("default")))
#include <host_device.h>
#endif

#include <host_array.h>

STAND_IN_API int AfxMessageBox(const char* text, unsigned type = MB_OK, unsigned help = 0);

struct AFX_EXTENSION_MODULE {
    BOOL bInitialized;
    HINSTANCE hModule;
};

STAND_IN_API BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& record, HINSTANCE module);
/// Deletes every library that is registered for the module.
STAND_IN_API void AfxTermExtensionModule(AFX_EXTENSION_MODULE& record, BOOL all = 0);

class STAND_IN_API CDynLinkLibrary {
public:
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& record, BOOL is_system = 0);
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;
    virtual ~CDynLinkLibrary();

    HINSTANCE module;
    CDynLinkLibrary* next = nullptr;
};

// What the tests ask of the stand-in.

namespace stand_in {

/// The registered libraries.
STAND_IN_API int extension_libraries();
/// `AfxInitExtensionModule` returns 0 the next time.
STAND_IN_API void refuse_next_initialisation();
/// How many notices were shown.
STAND_IN_API int notices();

} // namespace stand_in
