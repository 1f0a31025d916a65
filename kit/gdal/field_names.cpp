#include "kit/gdal/field_names.h"

#include <algorithm>
#include <set>

namespace korvel::kit {
namespace {

// The first bytes of a text, without the part of a character that would be cut.
std::string shortened(const std::string& text, std::size_t bytes) {
    std::size_t end = std::min(bytes, text.size());
    const auto continues = [&](std::size_t at) {
        return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
    };
    while (end > 0 && continues(end)) {
        --end;
    }
    return text.substr(0, end);
}

std::string in_capitals(std::string text) {
    for (char& c : text) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return text;
}

} // namespace

std::vector<std::string> field_names(const std::vector<Field>& fields, std::size_t bytes) {
    std::vector<std::string> names;
    std::set<std::string> used;
    for (const Field& field : fields) {
        const std::string whole = field.name.empty() ? "field" : field.name;
        std::string name = shortened(whole, bytes);
        for (int number = 1; !used.insert(in_capitals(name)).second; ++number) {
            std::string ending = "_";
            ending += std::to_string(number);
            name = shortened(whole, bytes - ending.size());
            name += ending;
        }
        names.push_back(name);
    }
    return names;
}

} // namespace korvel::kit
