#pragma once

// The part of the host's application framework that the library uses: in portable form, or, where
// KORVEL_USE_HOST_FRAMEWORK is defined, from the header that KORVEL_FRAMEWORK_HEADER names.

#include "korvel/platform/types.h"

#if !defined(KORVEL_USE_HOST_FRAMEWORK)
#include "korvel/platform/array.h"
#include "korvel/platform/device_context.h"
#include "korvel/platform/extension_module.h"
#include "korvel/platform/message_box.h"
#endif

#include "korvel/platform/array_range.h" // after the arrays
