#include "kit/files/findings.h"

#include <algorithm>

namespace korvel::kit {

void note_unused(const std::vector<bool>& is_used, const std::vector<int>& lines,
                 const char* things, const char* wholes, Findings& out) {
    const auto unused = std::count(is_used.begin(), is_used.end(), false);
    if (unused == 0) {
        return;
    }
    const auto first = std::find(is_used.begin(), is_used.end(), false) - is_used.begin();
    const int line = lines[static_cast<std::size_t>(first)];
    const std::string name = numbered(things, static_cast<int>(first));
    if (unused == 1) {
        out.notes.push_back({line, name + " belongs to no " + wholes});
    } else {
        out.notes.push_back(
            {line, name + " and " + std::to_string(unused - 1) + " more belong to no " + wholes});
    }
}

std::string numbered(const char* thing, int number) {
    return std::string(thing) + " " + std::to_string(number);
}

} // namespace korvel::kit
