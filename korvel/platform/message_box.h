#pragma once

#include <functional>

#include "korvel/platform/export.h"
#include "korvel/platform/thread_override.h"
#include "korvel/platform/types.h"

namespace korvel {

/// Shows `text` (never null) to the user and returns the button that closed the box, such as IDOK.
using message_box_handler = std::function<int(const char* text, unsigned type)>;

/// Installs the handler that `AfxMessageBox` calls in every thread without a `MessageBoxOverride`,
/// and returns the former one; both may be empty. Several threads may call the handler at once.
KORVEL_PLATFORM_API message_box_handler set_message_box_handler(message_box_handler handler);

/// Installs a handler for the notices of the calling thread alone, while the object exists. The
/// thread that constructs it destroys it. Overrides nest; an empty handler counts too, and sends
/// the text to standard error.
class KORVEL_PLATFORM_API MessageBoxOverride {
public:
    explicit MessageBoxOverride(message_box_handler handler);
    MessageBoxOverride(const MessageBoxOverride&) = delete;
    MessageBoxOverride& operator=(const MessageBoxOverride&) = delete;
    MessageBoxOverride(MessageBoxOverride&&) = delete;
    MessageBoxOverride& operator=(MessageBoxOverride&&) = delete;
    ~MessageBoxOverride();

private:
    ThreadOverride<message_box_handler> override_;
};

} // namespace korvel

/// Shows a notice through the handler of the calling thread, or else of the process, and returns
/// its result. Without a handler the text goes to standard error and the result is IDOK.
KORVEL_PLATFORM_API int AfxMessageBox(const char* text, unsigned type = MB_OK);
