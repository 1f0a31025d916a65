#include "apps/command/closest_word.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace korvel::command {
namespace {

std::size_t distance(const std::string& a, const std::string& b) {
    using Row = std::vector<std::size_t>; // distances of a prefix of a from each prefix of b
    Row before_last(b.size() + 1);
    Row last(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        last[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        Row row(b.size() + 1, i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], before_last[j - 2] + 1);
            }
        }
        before_last = std::move(last);
        last = std::move(row);
    }
    return last[b.size()];
}

} // namespace

std::string closest_word(const std::string& word, const std::vector<std::string>& words) {
    // A third of the letters may differ, three of them at most: more is another word.
    std::size_t least = std::min<std::size_t>(3, word.size() / 3) + 1;
    std::string closest;
    for (const std::string& candidate : words) {
        const bool is_begun = word.size() > 2 && candidate.starts_with(word);
        const std::size_t differs = is_begun ? 0 : distance(word, candidate);
        if (differs < least) {
            least = differs;
            closest = candidate;
        }
    }
    return closest;
}

} // namespace korvel::command
