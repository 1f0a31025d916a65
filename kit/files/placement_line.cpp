#include "kit/files/placement_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

#include "kit/base/error.h"

namespace korvel::kit {
namespace {

// Volumes of what has such coordinates, in single precision, are still finite.
constexpr double largest = 1e30;

/// Takes the words of the line one after another.
class LineReader {
public:
    LineReader(const TextFile& file, std::vector<Finding>* problems);

    Placement read();

private:
    std::string_view next();
    bool take(std::string_view word);
    bool take_number(double& value);
    double number(const char* what);
    [[noreturn]] void fail(std::string_view word, const std::string& message) const;

    const TextFile& file_;
    std::vector<Finding>* problems_;
    std::string_view rest_; // of the line
};

std::string digits_of(double coordinate);
std::string_view trimmed(std::string_view text);
std::string on_one_line(std::string_view text);

} // namespace

std::string placement_line(const Placement& placement) {
    if (placement.is_plain()) {
        return {};
    }
    const Point3 origin = placement.grid.origin();
    std::string line;
    const auto add = [&](std::string_view word) {
        line.append(line.empty() ? "" : " ").append(word);
    };
    add("grid");
    add(placement.grid.step_text());
    add("origin");
    add(digits_of(origin[0]));
    add(digits_of(origin[1]));
    if (origin[2] != 0) {
        add(digits_of(origin[2]));
    }
    if (placement.grid.is_y_down()) {
        add("down");
    }
    if (const std::string reference = on_one_line(placement.reference); !reference.empty()) {
        add("reference");
        add(reference);
    }
    line += '\n';
    return line;
}

Placement read_placement(const TextFile& file, std::vector<Finding>* problems) {
    if (without_placement(file.text).size() == file.text.size()) {
        return {};
    }
    try {
        return LineReader(file, problems).read();
    } catch (const Error&) {
        if (problems == nullptr) {
            throw;
        }
        return {};
    }
}

std::string_view without_placement(std::string_view text) {
    constexpr std::string_view first_word = "grid";
    const std::string_view content = text.substr(0, text.find_last_not_of(white_space) + 1);
    const std::size_t start = content.rfind('\n') + 1; // 0 where there is one line only
    const std::string_view line = trimmed(content.substr(start));
    const bool has_word = line.substr(0, first_word.size()) == first_word &&
                          (line.size() == first_word.size() ||
                           is_white_space(static_cast<unsigned char>(line[first_word.size()])));
    return has_word ? text.substr(0, start) : text;
}

namespace {

LineReader::LineReader(const TextFile& file, std::vector<Finding>* problems)
    : file_(file), problems_(problems),
      rest_(trimmed(std::string_view(file.text).substr(without_placement(file.text).size()))) {}

Placement LineReader::read() {
    next(); // "grid"
    const std::string_view step = next();
    if (!take("origin")) {
        fail(next(), " follows the step of the grid, where 'origin' is expected");
    }
    Point3 origin = {number("the x of the grid's origin"), number("the y of the grid's origin"), 0};
    take_number(origin[2]);
    const std::optional<Grid> grid = Grid::parse(step, origin);
    if (!grid || grid->step() < 1 / largest || grid->step() > largest) {
        fail(step,
             " is not the step of a grid: expected a number from 1e-30 to 1e30, or a fraction");
    }
    Placement placement = {.grid = *grid};
    placement.grid.turn_y_down(take("down"));
    if (take("reference")) {
        if (rest_.empty()) {
            fail(rest_, " is not a reference system");
        }
        placement.reference = rest_;
    } else if (!rest_.empty()) {
        fail(next(), " follows the origin of the grid");
    }
    return placement;
}

std::string_view LineReader::next() {
    const std::string_view word = rest_.substr(0, rest_.find_first_of(white_space));
    rest_ = trimmed(rest_.substr(word.size()));
    return word;
}

bool LineReader::take(std::string_view word) {
    const std::string_view before = rest_;
    const bool is_it = next() == word;
    rest_ = is_it ? rest_ : before;
    return is_it;
}

// Takes the next word if it is a number.
bool LineReader::take_number(double& value) {
    const std::string_view before = rest_;
    double number = 0;
    const bool is_number = parse_finite(next(), number) && std::abs(number) <= largest;
    value = is_number ? number : value;
    rest_ = is_number ? rest_ : before;
    return is_number;
}

double LineReader::number(const char* what) {
    double value = 0;
    if (!take_number(value)) {
        fail(next(), std::string(" is not a number of a usual size: expected ") + what);
    }
    return value;
}

void LineReader::fail(std::string_view word, const std::string& message) const {
    const std::string_view before = without_placement(file_.text);
    const auto line = static_cast<int>(std::count(before.begin(), before.end(), '\n')) + 1;
    if (problems_ != nullptr) {
        problems_->push_back({line, quoted(word) + message});
    }
    throw input_error(file_.name + ":" + std::to_string(line) + ": " + quoted(word) + message,
                      {.file = file_.name, .line = line, .value = std::string(word)});
}

// As many as read back as the same number, without an exponent where that is no longer.
std::string digits_of(double coordinate) {
    constexpr double longest = 1e15;
    std::array<char, 400> digits = {};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(),
                                            coordinate, std::chars_format::fixed);
    const bool is_short =
        coordinate == 0 || (std::abs(coordinate) < longest && std::abs(coordinate) > 1 / longest);
    return is_short ? std::string(digits.data(), end) : shortest_digits(coordinate);
}

std::string_view trimmed(std::string_view text) {
    text = text.substr(0, text.find_last_not_of(white_space) + 1);
    return text.substr(std::min(text.find_first_not_of(white_space), text.size()));
}

// Line breaks with the indentation that follows become blanks.
std::string on_one_line(std::string_view text) {
    std::string line;
    for (std::string_view rest = trimmed(text); !rest.empty();) {
        const std::size_t end = std::min(rest.find_first_of("\n\v\f\r"), rest.size());
        line.append(line.empty() ? "" : " ").append(trimmed(rest.substr(0, end)));
        rest = trimmed(rest.substr(end));
    }
    return line;
}

} // namespace
} // namespace korvel::kit
