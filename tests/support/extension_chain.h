#pragma once

#include <vector>

#include "korvel/platform/framework.h"

namespace korvel::test {

/// The modules of the framework's chain, the last one registered first.
inline std::vector<HINSTANCE> chain() {
    std::vector<HINSTANCE> modules;
    for (const CDynLinkLibrary* library = first_extension_library(); library != nullptr;
         library = library->next()) {
        modules.push_back(library->module());
    }
    return modules;
}

} // namespace korvel::test
