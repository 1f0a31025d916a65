#include "apps/command/heights.h"

#include <charconv>
#include <cmath>
#include <map>
#include <string_view>

#include "apps/command/arguments.h"
#include "apps/command/input.h"

namespace korvel::command {
namespace {

// A line of the file, with what it takes to name it.
class HeightsLine {
public:
    HeightsLine(const std::string& file, int number, std::string_view text);

    bool is_empty() const { return words_.empty(); }
    kit::Levels levels() const;
    bool has_point() const { return words_[0].find(',') != std::string_view::npos; }
    kit::Point2 point() const;
    int region() const;

    [[noreturn]] void fail(const std::string& message, std::string_view value) const;

private:
    template <class Number>
    Number number(std::string_view word, const char* what) const;

    const std::string& file_;
    int number_;
    std::vector<std::string_view> words_;
};

std::optional<int> find_region(const HeightsLine& line, const kit::Map& map,
                               const std::map<int, int>& index_of, bool is_selection);

} // namespace

std::vector<std::optional<kit::Levels>> read_heights(const std::string& file, const kit::Map& map,
                                                     bool is_selection) {
    const kit::TextFile text = read_input(file);
    std::map<int, int> index_of;
    for (const kit::Region region : map) {
        index_of[region.number()] = region.index();
    }
    std::vector<std::optional<kit::Levels>> levels(static_cast<std::size_t>(map.size()));
    std::string_view rest = text.text;
    for (int number = 1; !rest.empty(); ++number) {
        const std::size_t end = rest.find('\n');
        const HeightsLine line(text.name, number, rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (line.is_empty()) {
            continue;
        }
        const kit::Levels stated = line.levels();
        if (const auto region = find_region(line, map, index_of, is_selection)) {
            if (levels[*region]) {
                line.fail("region " + std::to_string(map[*region].number()) +
                              " has levels from an earlier line",
                          "");
            }
            levels[*region] = stated;
        }
    }
    return levels;
}

std::vector<std::optional<kit::Levels>> levels_by_field(const kit::Map& map,
                                                        const std::string& field, double low) {
    std::size_t index = 0;
    std::string names;
    while (index < map.fields().size() && map.fields()[index].name != field) {
        names.append(names.empty() ? "" : ", ").append(map.fields()[index++].name);
    }
    if (index == map.fields().size()) {
        refuse("--height-field", field,
               names.empty() ? "an attribute: the regions have none" : "one of " + names);
    }
    std::vector<std::optional<kit::Levels>> levels;
    for (const kit::Region region : map) {
        std::optional<kit::Levels>& of_region = levels.emplace_back();
        const std::string text = kit::text_of_value(region.value(index));
        double height = 0;
        if (!text.empty() && (!kit::parse_finite(text, height) || height < 0)) {
            throw kit::input_error("region " + std::to_string(region.number()) + ": its " + field +
                                   " " + kit::quoted(text) + " is no height");
        }
        if (height > 0) {
            of_region = kit::Levels{low, low + height};
        }
    }
    return levels;
}

namespace {

std::optional<int> find_region(const HeightsLine& line, const kit::Map& map,
                               const std::map<int, int>& index_of, bool is_selection) {
    if (line.has_point()) {
        const kit::Point2 point = line.point();
        const std::optional<int> region = map.region_at(point);
        if (!region && !is_selection) {
            line.fail("no region contains this point",
                      kit::number_text(point[0]) + "," + kit::number_text(point[1]));
        }
        return region;
    }
    const auto found = index_of.find(line.region());
    if (found != index_of.end()) {
        return found->second;
    }
    if (!is_selection) {
        line.fail("there is no such region, they go from 0 to " + std::to_string(map.size() - 1),
                  std::to_string(line.region()));
    }
    return {};
}

HeightsLine::HeightsLine(const std::string& file, int number, std::string_view text)
    : file_(file), number_(number) {
    text = text.substr(0, text.find('#'));
    for (;;) {
        const std::size_t start = text.find_first_not_of(kit::white_space);
        if (start == std::string_view::npos) {
            break;
        }
        const std::size_t end = text.find_first_of(kit::white_space, start);
        words_.push_back(text.substr(start, end - start));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end);
    }
    if (!words_.empty() && words_.size() != 3) {
        fail("a line needs a region, a lower and an upper level", words_[0]);
    }
}

kit::Levels HeightsLine::levels() const {
    const kit::Levels levels = {number<double>(words_[1], "a level"),
                                number<double>(words_[2], "a level")};
    if (!(levels.low < levels.high)) {
        fail("the lower level is not below the upper one", words_[1]);
    }
    return levels;
}

kit::Point2 HeightsLine::point() const {
    const std::size_t comma = words_[0].find(',');
    return {number<double>(words_[0].substr(0, comma), "the x of a point"),
            number<double>(words_[0].substr(comma + 1), "the y of a point")};
}

int HeightsLine::region() const {
    return number<int>(words_[0], "the number of a region");
}

template <class Number>
Number HeightsLine::number(std::string_view word, const char* what) const {
    Number value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size() ||
        !std::isfinite(static_cast<double>(value))) {
        throw kit::input_error(file_ + ":" + std::to_string(number_) + ": " + kit::quoted(word) +
                                   " is not " + what,
                               {.file = file_, .line = number_, .value = std::string(word)});
    }
    return value;
}

void HeightsLine::fail(const std::string& message, std::string_view value) const {
    throw kit::input_error(file_ + ":" + std::to_string(number_) + ": " +
                               (value.empty() ? "" : kit::quoted(value) + ": ") + message,
                           {.file = file_, .line = number_, .value = std::string(value)});
}

} // namespace
} // namespace korvel::command
