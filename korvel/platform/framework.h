#pragma once

// The part of the host's application framework that the library uses, in portable form.

#include "korvel/platform/array.h"
#include "korvel/platform/device_context.h"
#include "korvel/platform/extension_module.h"
#include "korvel/platform/message_box.h"
#include "korvel/platform/types.h"
