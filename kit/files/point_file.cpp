#include "kit/files/point_file.h"

#include <algorithm>

#include "kit/base/error.h"

namespace korvel::kit {
namespace {

/// Takes the points from a text line by line.
class PointReader {
public:
    PointReader(const TextFile& file, PointList& out) : file_(file), out_(out) {}

    void read_line(std::string_view line, int number);

private:
    void read_coordinate(std::string_view word);
    std::string_view next_word();
    void skip_separator();
    void skip_white_space();
    [[noreturn]] void fail(std::string_view word, const std::string& message) const;

    const TextFile& file_;
    PointList& out_;
    std::string_view rest_; // of the line
    int number_ = 0;        // of the line
};

} // namespace

std::string PointList::text(std::size_t point) const {
    std::string text;
    for (int axis = 0; axis < dimensions; ++axis) {
        text.append(axis == 0 ? "" : ",").append(digits[index(point, axis)]);
    }
    return text;
}

PointList read_points(const TextFile& file, int dimensions) {
    PointList points = {.dimensions = dimensions, .coordinates = {}, .digits = {}};
    PointReader reader(file, points);
    std::string_view rest = file.text;
    for (int line = 1; !rest.empty(); ++line) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        reader.read_line(rest.substr(0, end), line);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return points;
}

namespace {

void PointReader::read_line(std::string_view line, int number) {
    rest_ = line.substr(0, line.find('#'));
    number_ = number;
    skip_white_space();
    if (rest_.empty()) {
        return;
    }
    for (int axis = 0; axis < out_.dimensions; ++axis) {
        if (axis > 0) {
            skip_separator();
        }
        const std::string_view word = next_word();
        if (word.empty() && rest_.empty()) {
            fail(word, std::to_string(axis) + " of " + std::to_string(out_.dimensions) +
                           " coordinates of a point");
        }
        read_coordinate(word);
    }
    skip_white_space();
    if (!rest_.empty()) {
        const std::string_view word = rest_.front() == ',' ? rest_.substr(0, 1) : next_word();
        fail(word, quoted(word) + " follows the " + std::to_string(out_.dimensions) +
                       " coordinates of a point");
    }
}

void PointReader::read_coordinate(std::string_view word) {
    double value = 0;
    if (!parse_finite(word, value)) {
        fail(word, quoted(word) + " is not a finite number: expected the " +
                       "xyz"[out_.coordinates.size() % static_cast<std::size_t>(out_.dimensions)] +
                       " of a point");
    }
    out_.coordinates.push_back(value);
    out_.digits.push_back(word);
}

std::string_view PointReader::next_word() {
    const auto ends_word = [](char c) { return c == ',' || is_white_space(c); };
    const auto size = std::find_if(rest_.begin(), rest_.end(), ends_word) - rest_.begin();
    const std::string_view word = rest_.substr(0, static_cast<std::size_t>(size));
    rest_.remove_prefix(word.size());
    return word;
}

// White space, with one comma at most.
void PointReader::skip_separator() {
    skip_white_space();
    if (rest_.starts_with(',')) {
        rest_.remove_prefix(1);
        skip_white_space();
    }
}

void PointReader::skip_white_space() {
    const auto size =
        std::find_if_not(rest_.begin(), rest_.end(), [](char c) { return is_white_space(c); }) -
        rest_.begin();
    rest_.remove_prefix(static_cast<std::size_t>(size));
}

void PointReader::fail(std::string_view word, const std::string& message) const {
    throw input_error(file_.name + ":" + std::to_string(number_) + ": " + message,
                      {.file = file_.name, .line = number_, .value = std::string(word)});
}

} // namespace
} // namespace korvel::kit
