#pragma once

#include <functional>

#include "korvel/platform/export.h"
#include "korvel/platform/types.h"

namespace korvel {

/// Shows `text` (never null) to the user and returns the button that closed the box, such as IDOK.
using message_box_handler = std::function<int(const char* text, unsigned type)>;

/// Installs the handler that `AfxMessageBox` calls and returns the former one; both may be empty.
KORVEL_PLATFORM_API message_box_handler set_message_box_handler(message_box_handler handler);

} // namespace korvel

/// Shows a notice through the installed handler and returns its result. With none installed the
/// text goes to standard error and the result is IDOK.
KORVEL_PLATFORM_API int AfxMessageBox(const char* text, unsigned type = MB_OK);
