#pragma once

#include "korvel/platform/export.h"
#include "korvel/platform/thread_override.h"

namespace korvel {

/// Records whether every number that exact classes read from text in this thread, while the object
/// exists, was a word of its own: a decimal number without an exponent, followed by white space or
/// by the end of the stream. The readers convert numbers as `fscanf` does, which takes "1-2" for
/// two numbers and "7x" for a number and an end; this shows that none of the kind occurred. The
/// thread that constructs it destroys it. Of nested objects only the innermost records.
class KORVEL_PLATFORM_API PlainReading {
public:
    PlainReading();
    PlainReading(const PlainReading&) = delete;
    PlainReading& operator=(const PlainReading&) = delete;
    PlainReading(PlainReading&&) = delete;
    PlainReading& operator=(PlainReading&&) = delete;
    ~PlainReading();

    /// False once a number was anything else, or may have been: integers of over nine digits and
    /// reals of over fifteen count as such, and with other C libraries than GNU's and mingw-w64's
    /// every number.
    bool is_plain() const { return override_.value; }

private:
    ThreadOverride<bool> override_;
};

/// Records that a number was not plain.
KORVEL_PLATFORM_API void report_odd_number();

} // namespace korvel
