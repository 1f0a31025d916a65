#include "kit/files/body_names.h"

#include <algorithm>
#include <charconv>

#include "kit/base/error.h"
#include "kit/files/placement_line.h"

namespace korvel::kit {
namespace {

/// A line, and what is wrong with it, if anything.
struct NameLine {
    int body = -1;
    std::string_view name = {};
    std::string_view wrong_word = {};
    std::string problem = {};
};

NameLine parse_line(std::string_view line, int bodies);
bool begins_with_body(std::string_view line);
std::string_view take_word(std::string_view& rest);
std::string_view without_blanks(std::string_view text);

} // namespace

std::string body_name_lines(std::span<const std::string> names) {
    std::string lines;
    for (std::size_t body = 0; body < names.size(); ++body) {
        std::string name = names[body];
        std::replace_if(name.begin(), name.end(), is_white_space, ' ');
        name = without_blanks(name);
        if (!name.empty()) {
            lines.append("body ").append(std::to_string(body)).append(" name ").append(name) +=
                '\n';
        }
    }
    return lines;
}

std::vector<std::string> read_body_names(const TextFile& file, int bodies,
                                         std::vector<Finding>* problems) {
    const std::string_view text = without_placement(file.text);
    const std::size_t start = without_body_names(text).size();
    std::string_view rest = text.substr(start);
    std::vector<std::string> names;
    if (without_blanks(rest).empty()) {
        return names;
    }
    names.resize(static_cast<std::size_t>(bodies));
    auto number = static_cast<int>(std::count(text.begin(), text.begin() + start, '\n')) + 1;
    for (; !rest.empty(); ++number) {
        const std::string_view content = without_blanks(rest.substr(0, rest.find('\n')));
        rest.remove_prefix(std::min(rest.find('\n'), rest.size() - 1) + 1);
        if (content.empty()) {
            continue;
        }
        const NameLine line = parse_line(content, bodies);
        if (line.problem.empty()) {
            names[static_cast<std::size_t>(line.body)] = line.name;
            continue;
        }
        const std::string message = quoted(line.wrong_word).append(line.problem);
        if (problems == nullptr) {
            throw input_error(
                file.name + ":" + std::to_string(number) + ": " + message,
                {.file = file.name, .line = number, .value = std::string(line.wrong_word)});
        }
        problems->push_back({number, message});
    }
    return names;
}

// From the last line on, as long as they are such lines.
std::string_view without_body_names(std::string_view text) {
    std::size_t end = text.size(); // of what is before the lines
    for (std::size_t at = end;;) {
        const std::string_view content =
            text.substr(0, text.substr(0, at).find_last_not_of(white_space) + 1);
        const std::size_t start = content.rfind('\n') + 1; // 0 where there is one line only
        if (!begins_with_body(without_blanks(content.substr(start)))) {
            return text.substr(0, end);
        }
        at = end = start;
    }
}

namespace {

NameLine parse_line(std::string_view line, int bodies) {
    NameLine parsed;
    std::string_view rest = line;
    take_word(rest); // "body"
    const std::string_view index = take_word(rest);
    const auto [end, error] =
        std::from_chars(index.data(), index.data() + index.size(), parsed.body);
    if (error != std::errc() || end != index.data() + index.size() || parsed.body < 0 ||
        parsed.body >= bodies) {
        parsed.wrong_word = index;
        parsed.problem = " is not a body, of which there are " + std::to_string(bodies);
        return parsed;
    }
    const std::string_view word = take_word(rest);
    if (word != "name" || rest.empty()) {
        parsed.wrong_word = word;
        parsed.problem = " follows the number of a body, where 'name' and a name are expected";
    }
    parsed.name = rest;
    return parsed;
}

bool begins_with_body(std::string_view line) {
    return take_word(line) == "body";
}

std::string_view take_word(std::string_view& rest) {
    const std::string_view word = rest.substr(0, rest.find_first_of(white_space));
    rest = without_blanks(rest.substr(word.size()));
    return word;
}

std::string_view without_blanks(std::string_view text) {
    text = text.substr(0, text.find_last_not_of(white_space) + 1);
    return text.substr(std::min(text.find_first_not_of(white_space), text.size()));
}

} // namespace
} // namespace korvel::kit
