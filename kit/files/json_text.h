#pragma once

#include <string>
#include <string_view>

#include "kit/files/features.h"

namespace korvel::kit {

/// Appends a string of JSON with its quotes. Bytes that are no UTF-8 become U+FFFD.
void append_json_string(std::string& out, std::string_view text);

/// Appends a number in the shortest digits that read back as the same; null if it is not finite.
void append_json_number(std::string& out, double value);

/// Appends a value; a real that is whole gets ".0", so that it stays a real. Null for none.
void append_json_value(std::string& out, const FieldValue& value);

} // namespace korvel::kit
