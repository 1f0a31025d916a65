#pragma once

#include "korvel/platform/export.h"
#include "korvel/platform/types.h"

namespace korvel {

class ExtensionChain;

} // namespace korvel

/// One loaded extension module.
struct AFX_EXTENSION_MODULE {
    BOOL bInitialized = 0;
    HINSTANCE hModule = nullptr;
};

/// Fills the record when the module is loaded and returns non-zero. A record that is already
/// initialised keeps its module.
KORVEL_PLATFORM_API BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& record, HINSTANCE module);

/// Zeroes the record when the module is unloaded and removes every library registered for that
/// module from the chain. A record that is not initialised stays as it is.
KORVEL_PLATFORM_API void AfxTermExtensionModule(AFX_EXTENSION_MODULE& record);

/// An extension library in the chain of loaded ones. Its constructor adds it at the front; its
/// destructor removes it, unless its module was terminated before.
class KORVEL_PLATFORM_API CDynLinkLibrary {
public:
    explicit CDynLinkLibrary(const AFX_EXTENSION_MODULE& record);
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;
    ~CDynLinkLibrary();

    HINSTANCE module() const noexcept { return module_; }

    /// The library that registered before this one; null at the end of the chain.
    CDynLinkLibrary* next() const noexcept { return next_; }

private:
    friend class korvel::ExtensionChain;

    HINSTANCE module_;
    CDynLinkLibrary* next_ = nullptr;
};

namespace korvel {

/// Front of the chain, the library that registered last; null when there is none. Threads may add
/// and remove libraries at any time; who walks the chain sees that none does meanwhile.
KORVEL_PLATFORM_API CDynLinkLibrary* first_extension_library() noexcept;

} // namespace korvel
