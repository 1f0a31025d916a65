#include "kit/pictures/section_legend.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numeric>

#include "kit/base/number_text.h"

namespace korvel::kit {
namespace {

std::vector<std::size_t> largest_bodies(const Section& section, std::size_t count);
std::string legend_name(const SectionBody& body, const std::vector<std::string>& names);
std::string area_text(double area);
std::string cut_to(std::string text, double width, double font, LabelWriter& labels);

constexpr double line_height = 1.5; // of the font, as all lengths here
constexpr double swatch_width = 1.6;
constexpr double swatch_height = 1;
constexpr double gap = 0.6;
constexpr const char* name_title = "body";
constexpr const char* area_title = "area";

} // namespace

// The widths of all listed areas and names make that of the list. One line is that of the titles.
SectionLegend::SectionLegend(const Section& section, const std::vector<std::string>& names,
                             LabelWriter& labels, const LegendRoom& room)
    : font_(room.font) {
    constexpr double least_lines = 2;
    const double lines = room.height / (line_height * room.font) - 1;
    const auto most = static_cast<std::size_t>(std::max(least_lines, lines));
    const std::size_t bodies = section.bodies().size();
    const std::size_t listed = bodies <= most ? bodies : most - 1;
    if (listed < bodies) {
        more_ = "\u2026 and " + std::to_string(bodies - listed) + " more";
    }
    double widest_name = labels.text_width(name_title, font_);
    double widest_area = labels.text_width(area_title, font_);
    lines_.reserve(listed);
    for (const std::size_t i : largest_bodies(section, listed)) {
        const SectionBody& body = section.bodies()[i];
        lines_.push_back({section[body.polygons.front()].colour(), legend_name(body, names),
                          area_text(body.area)});
        widest_area = std::max(widest_area, labels.text_width(lines_.back().area, font_));
    }
    const double fixed = (swatch_width + 2 * gap) * font_ + widest_area;
    const double name_room = std::max(2 * font_, room.width - fixed);
    for (Line& line : lines_) {
        line.name = cut_to(std::move(line.name), name_room, font_, labels);
        widest_name = std::max(widest_name, labels.text_width(line.name, font_));
    }
    width_ = std::max(fixed + widest_name, labels.text_width(more_, font_));
}

double SectionLegend::height() const {
    const std::size_t lines = 1 + lines_.size() + (more_.empty() ? 0 : 1);
    return static_cast<double>(lines) * line_height * font_;
}

void SectionLegend::paint(CDC& dc, LabelWriter& labels, const Point2& upper_left,
                          int units_per_pixel) const {
    const auto device = [&](double pixel) { return static_cast<int>(pixel * units_per_pixel); };
    CPen pen(PS_SOLID, units_per_pixel, RGB(50, 50, 50));
    CPen* const former_pen = dc.SelectObject(&pen);
    const auto [left, top] = upper_left;
    const double names = left + (swatch_width + gap) * font_;
    double middle = top + line_height * font_ / 2;
    labels.write_text(name_title, names, middle, font_, Anchor::start);
    labels.write_text(area_title, left + width_, middle, font_, Anchor::end);
    for (const Line& line : lines_) {
        middle += line_height * font_;
        CBrush brush(RGB(line.colour.red, line.colour.green, line.colour.blue));
        CBrush* const former_brush = dc.SelectObject(&brush);
        const int x0 = device(left);
        const int x1 = device(left + swatch_width * font_);
        const int y0 = device(middle - swatch_height * font_ / 2);
        const int y1 = device(middle + swatch_height * font_ / 2);
        const std::array<POINT, 4> corners = {{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}};
        dc.Polygon(corners.data(), static_cast<int>(corners.size()));
        dc.SelectObject(former_brush);
        labels.write_text(line.name, names, middle, font_, Anchor::start);
        labels.write_text(line.area, left + width_, middle, font_, Anchor::end);
    }
    if (!more_.empty()) {
        middle += line_height * font_;
        labels.write_text(more_, left, middle, font_, Anchor::start);
    }
    dc.SelectObject(former_pen);
}

namespace {

// Indices into the bodies of a section, ascending; of equal ones the first.
std::vector<std::size_t> largest_bodies(const Section& section, std::size_t count) {
    std::vector<std::size_t> order(section.bodies().size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    const auto area = [&](std::size_t i) { return section.bodies()[i].area; };
    std::ranges::stable_sort(order, std::greater(), area);
    order.resize(count);
    std::ranges::sort(order);
    return order;
}

std::string legend_name(const SectionBody& body, const std::vector<std::string>& names) {
    const auto number = static_cast<std::size_t>(body.body);
    const bool has_name = number < names.size() && !names[number].empty();
    return has_name ? names[number] : std::to_string(body.body);
}

// In whole units, or in five digits where that is finer.
std::string area_text(double area) {
    if (!(area > 0)) {
        return number_text(area);
    }
    const double step = std::pow(10, std::min(0.0, std::floor(std::log10(area)) - 4));
    return number_text(std::round(area / step) * step);
}

// By whole characters of UTF-8, with an ellipsis.
std::string cut_to(std::string text, double width, double font, LabelWriter& labels) {
    constexpr std::size_t most_bytes = 400;
    const auto fits = [&](const std::string& shown) {
        return labels.text_width(shown, font) <= width;
    };
    if (text.size() <= most_bytes && fits(text)) {
        return text;
    }
    text.resize(std::min(text.size(), most_bytes));
    const auto is_inside_character = [&] {
        return !text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U;
    };
    do {
        while (is_inside_character()) {
            text.pop_back();
        }
        if (!text.empty()) {
            text.pop_back();
        }
    } while (!text.empty() && !fits(text + "\u2026"));
    return text + "\u2026";
}

} // namespace
} // namespace korvel::kit
