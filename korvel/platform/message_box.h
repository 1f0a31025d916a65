#pragma once

#include <functional>

#include "korvel/platform/export.h"
#include "korvel/platform/types.h"

namespace korvel {

/// Shows `text` (never null) to the user and returns the button that closed the box, such as IDOK.
using message_box_handler = std::function<int(const char* text, unsigned type)>;

/// Installs what `AfxMessageBox` calls and returns the handler before; both may be empty.
KORVEL_PLATFORM_API message_box_handler set_message_box_handler(message_box_handler handler);

} // namespace korvel

/// Shows a notice through the installed handler. With none installed it goes to standard error
/// and the answer is IDOK.
KORVEL_PLATFORM_API int AfxMessageBox(const char* text, unsigned type = MB_OK);
