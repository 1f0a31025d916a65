#pragma once

#include "korvel/module/korvel.h"

// KORVEL_KIT_API marks what the kit exports. KORVEL_KIT_BUILDING is defined only while the kit is
// compiled as a shared library.

#if defined(KORVEL_KIT_BUILDING)
#define KORVEL_KIT_API KORVEL_EXPORT
#else
#define KORVEL_KIT_API KORVEL_IMPORT
#endif
