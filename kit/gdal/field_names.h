#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "kit/files/features.h"

namespace korvel::kit {

/// Names for fields that differ in more than capital letters and have at most that many bytes of
/// UTF-8: shortened, and with "_1", "_2", … at the end where that is needed; "field" for an empty
/// one.
std::vector<std::string> field_names(const std::vector<Field>& fields, std::size_t bytes);

} // namespace korvel::kit
