#include "kit/pictures/section_picture.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "kit/base/number_text.h"
#include "kit/pictures/flat_section.h"
#include "kit/pictures/label_place.h"
#include "kit/pictures/plot_axis.h"
#include "kit/pictures/scale_bar.h"
#include "kit/pictures/section_legend.h"

namespace korvel::kit {
namespace {

constexpr COLORREF ink = RGB(50, 50, 50);
constexpr COLORREF pale = RGB(226, 226, 226);
constexpr double outer_lines = 4.2; // above and below the plot, in heights of the font
constexpr double legend_gap = 2;    // between plot and legend, likewise

class SectionPainter {
public:
    SectionPainter(const Rectangle& box, const Section& section,
                   const SectionPictureOptions& options);

    Rectangle shown() const { return {u_.from, v_.from, u_.to, v_.to}; }
    Rectangle pixels() const { return {u_.start, v_.end, u_.end, v_.start}; }
    void paint_grid(CDC& dc);
    void paint_polygons(FlatSection& polygons, CDC& dc);
    void write_names(const Section& section, const FlatSection& polygons, CDC& dc);
    void paint_axes(CDC& dc);
    void paint_bar(CDC& dc);
    void paint_legend(CDC& dc);

private:
    void set_room(double left_labels);
    void fit();
    void fill();
    void set_steps();
    void line(CDC& dc, double x0, double y0, double x1, double y1);

    const Rectangle box_;
    const PlaneAxes axes_;
    const SectionPictureOptions& options_;
    double font_;
    LabelWriter* labels_; ///< null where the polygons are shown alone, as in small pictures
    std::optional<SectionLegend> legend_;
    PlotAxis u_;
    PlotAxis v_;
};

Rectangle box_of(const Section& section, const SectionPictureOptions& options);

} // namespace

void draw(const Section& section, CDC& dc, const SectionPictureOptions& options) {
    const Rectangle box = box_of(section, options);
    if (box.is_empty()) {
        return;
    }
    SectionPainter painter(box, section, options);
    FlatSection polygons = flatten(section, painter.shown());
    painter.paint_grid(dc);
    painter.paint_polygons(polygons, dc);
    painter.write_names(section, polygons, dc);
    painter.paint_axes(dc);
    if (options.scale_bar) {
        painter.paint_bar(dc);
    }
    painter.paint_legend(dc);
}

SectionPlot plot_of(const Section& section, const SectionPictureOptions& options) {
    const Rectangle box = box_of(section, options);
    if (box.is_empty()) {
        return {};
    }
    const SectionPainter painter(box, section, options);
    return {painter.pixels(), painter.shown()};
}

SectionScale SectionPlot::scale() const {
    return {.middle = {(shown.left + shown.right) / 2, (shown.top + shown.bottom) / 2},
            .u = (shown.right - shown.left) / (pixels.right - pixels.left),
            .v = (shown.bottom - shown.top) / (pixels.bottom - pixels.top)};
}

Point2 SectionPlot::to_pixel(const Point2& seen) const {
    const SectionScale lengths = scale();
    return {pixels.left + (seen[0] - shown.left) / lengths.u,
            pixels.bottom - (seen[1] - shown.top) / lengths.v};
}

Point2 SectionPlot::from_pixel(const Point2& pixel) const {
    const SectionScale lengths = scale();
    return {shown.left + (pixel[0] - pixels.left) * lengths.u,
            shown.top + (pixels.bottom - pixel[1]) * lengths.v};
}

namespace {

// That of a scale is its middle.
Rectangle box_of(const Section& section, const SectionPictureOptions& options) {
    if (options.scale) {
        Rectangle middle;
        middle.take_in(options.scale->middle[0], options.scale->middle[1]);
        return middle;
    }
    return options.part ? *options.part : section.bounds();
}

SectionPainter::SectionPainter(const Rectangle& box, const Section& section,
                               const SectionPictureOptions& options)
    : box_(box), axes_(section.axes()), options_(options) {
    constexpr double smallest_with_text = 200;
    constexpr double largest_legend = 0.3; // of the picture's width
    const double side = std::min(options.size.width, options.size.height);
    labels_ = side >= smallest_with_text ? options.labels : nullptr;
    font_ = std::max(9.0, side * 0.017);
    if (options.legend && labels_ != nullptr && !section.empty()) {
        legend_.emplace(section, options.names, *labels_,
                        LegendRoom{largest_legend * options.size.width,
                                   options.size.height - 2 * outer_lines * font_, font_});
    }
    // The width of the labels depends on the steps and these on the room that the labels leave.
    set_room(font_ * 4);
    fit();
    if (labels_ == nullptr) {
        return;
    }
    set_steps();
    double widest = 0;
    for (const double value : v_.ticks()) {
        widest = std::max(widest, labels_->text_width(v_.label(value), font_));
    }
    set_room(widest);
    fit();
    set_steps();
}

// The pixels that the plot may take.
void SectionPainter::set_room(double left_labels) {
    const bool has_text = labels_ != nullptr;
    const PictureSize size = options_.size;
    const double margin = has_text ? font_ * 1.8 : std::max(2.0, 0.02 * size.width);
    u_.start = has_text ? margin + left_labels + font_ * 0.6 : margin;
    u_.end = size.width - margin - (legend_ ? legend_gap * font_ + legend_->width() : 0);
    v_.start = size.height - (has_text ? font_ * outer_lines : margin);
    v_.end = has_text ? font_ * outer_lines : margin;
}

// Gives both axes the same scale unless that leaves the shorter side of a long section a quarter of
// its room or less; then narrows the plot to what is in it, with a little air around.
void SectionPainter::fit() {
    if (options_.scale) {
        fill();
        return;
    }
    constexpr double strip = 0.25;
    constexpr double longish = 0.5;
    constexpr double air = 0.04;
    const double room_u = u_.end - u_.start;
    const double room_v = v_.start - v_.end;
    const double inner_u = room_u - 2 * air * std::min(room_u, room_v);
    const double inner_v = room_v - 2 * air * std::min(room_u, room_v);
    double span_u = box_.right - box_.left;
    double span_v = box_.bottom - box_.top;
    const double least = std::max({span_u, span_v, 1e-9}) * 1e-9;
    span_u = std::max(span_u, least);
    span_v = std::max(span_v, least);

    const double scale = std::min(inner_u / span_u, inner_v / span_v);
    const double part_u = scale * span_u / inner_u;
    const double part_v = scale * span_v / inner_v;
    u_.exaggeration = part_u < strip && span_u < longish * span_v ? round_below(1 / part_u) : 1;
    v_.exaggeration = part_v < strip && span_v < longish * span_u ? round_below(1 / part_v) : 1;

    const auto narrow = [](PlotAxis& axis, double least_value, double span, double pixels) {
        const double towards_end = axis.end > axis.start ? 1 : -1;
        const double room = std::abs(axis.end - axis.start);
        const double padded = std::min(room, span * pixels + 2 * air * room);
        const double spare = (room - padded) / 2;
        axis.start += towards_end * spare;
        axis.end -= towards_end * spare;
        const double middle = least_value + span / 2;
        axis.from = middle - padded / pixels / 2;
        axis.to = middle + padded / pixels / 2;
    };
    narrow(u_, box_.left, span_u, scale * u_.exaggeration);
    narrow(v_, box_.top, span_v, scale * v_.exaggeration);
}

void SectionPainter::fill() {
    const SectionScale& scale = *options_.scale;
    const auto spread = [](PlotAxis& axis, double middle, double unit) {
        const double half = std::abs(axis.end - axis.start) / 2 * unit;
        axis.from = middle - half;
        axis.to = middle + half;
    };
    spread(u_, scale.middle[0], scale.u);
    spread(v_, scale.middle[1], scale.v);
    constexpr double parts = 1000; // what is shown of a factor
    u_.exaggeration = std::round(scale.v / scale.u * parts) / parts;
    v_.exaggeration = std::round(scale.u / scale.v * parts) / parts;
}

void SectionPainter::set_steps() {
    const auto step = [](const PlotAxis& axis, double pixels) {
        // The next round number above.
        const double least = pixels / axis.pixels_per_unit();
        double round = round_below(least);
        round = round < least ? round_below(round * 2.5) : round;
        return round;
    };
    v_.step = step(v_, font_ * 3);
    u_.step = step(u_, font_ * 4);
    // Labels side by side need their widths.
    const double widest = std::max(labels_->text_width(u_.label(u_.from), font_),
                                   labels_->text_width(u_.label(u_.to), font_));
    u_.step = step(u_, std::max(font_ * 4, widest + 2 * font_));
}

void SectionPainter::paint_grid(CDC& dc) {
    if (labels_ == nullptr) {
        return;
    }
    CPen pen(PS_SOLID, options_.units_per_pixel, pale);
    CPen* const previous = dc.SelectObject(&pen);
    for (const double value : u_.ticks()) {
        line(dc, u_.place(value), v_.start, u_.place(value), v_.end);
    }
    for (const double value : v_.ticks()) {
        line(dc, u_.start, v_.place(value), u_.end, v_.place(value));
    }
    dc.SelectObject(previous);
}

void SectionPainter::paint_polygons(FlatSection& polygons, CDC& dc) {
    const int units = options_.units_per_pixel;
    CPen outline(PS_SOLID, units * 3 / 4, ink);
    CPen* const previous = dc.SelectObject(&outline);
    // A negative unit of v lets it grow upward.
    polygons.model.draw_filled_model(
        0, 1, static_cast<int>(u_.start * units), static_cast<int>(v_.start * units), u_.from,
        v_.from, 1 / u_.pixels_per_unit(), -1 / v_.pixels_per_unit(), units, &dc);
    dc.SelectObject(previous);
}

// Each as large as it fits into its body, if that can be read.
void SectionPainter::write_names(const Section& section, const FlatSection& polygons, CDC& dc) {
    if (labels_ == nullptr) {
        return;
    }
    constexpr double smallest_font = 6.5;
    CPen pen(PS_SOLID, 1, ink);
    CPen* const previous = dc.SelectObject(&pen);
    const double largest_font = font_ * 0.8;
    TakenPlaces taken(largest_font);
    for (std::size_t i = 0; i < section.bodies().size(); ++i) {
        std::vector<std::vector<Point2>> rings = polygons.rings(static_cast<int>(i));
        for (std::vector<Point2>& ring : rings) {
            for (Point2& corner : ring) {
                corner = {u_.place(corner[0]), v_.place(corner[1])};
            }
        }
        const auto body = static_cast<std::size_t>(section.bodies()[i].body);
        const bool has_name = body < options_.names.size() && !options_.names[body].empty();
        const std::string name = has_name ? options_.names[body] : std::to_string(body);
        const double width = labels_->text_width(name, largest_font) + 0.4 * largest_font;
        const auto place =
            find_label_place(rings, width, largest_font, smallest_font / largest_font);
        if (!place) {
            continue;
        }
        const auto [x, y] = place->middle;
        const double size = std::min(1.0, place->room);
        const double half_height = size * largest_font / 2;
        const double half_width = size * width / 2;
        if (taken.take({x - half_width, y - half_height, x + half_width, y + half_height})) {
            labels_->write_text(name, x, y, size * largest_font, Anchor::middle);
        }
    }
    dc.SelectObject(previous);
}

void SectionPainter::paint_axes(CDC& dc) {
    if (labels_ == nullptr) {
        return;
    }
    CPen pen(PS_SOLID, options_.units_per_pixel, ink);
    CPen* const previous = dc.SelectObject(&pen);
    line(dc, u_.start, v_.end, u_.start, v_.start);
    line(dc, u_.start, v_.start, u_.end, v_.start);
    line(dc, u_.end, v_.start, u_.end, v_.end);
    line(dc, u_.end, v_.end, u_.start, v_.end);
    const double tick = font_ * 0.4;
    for (const double value : u_.ticks()) {
        line(dc, u_.place(value), v_.start, u_.place(value), v_.start + tick);
        labels_->write_text(u_.label(value), u_.place(value), v_.start + tick + font_ * 0.8, font_,
                            Anchor::middle);
    }
    for (const double value : v_.ticks()) {
        line(dc, u_.start, v_.place(value), u_.start - tick, v_.place(value));
        labels_->write_text(v_.label(value), u_.start - tick - font_ * 0.3, v_.place(value), font_,
                            Anchor::end);
    }
    const double name_size = font_ * 1.15;
    labels_->write_text(u_.name(axes_.u), (u_.start + u_.end) / 2, v_.start + font_ * 2.9,
                        name_size, Anchor::middle);
    const std::string v_name = v_.name(axes_.v);
    labels_->write_text(v_name, u_.start, v_.end - font_, name_size,
                        v_name.size() > 1 ? Anchor::start : Anchor::middle);
    labels_->write_text(options_.title, u_.start, v_.end - font_ * 2.8, name_size, Anchor::start);
    labels_->write_text(options_.remark, u_.end, v_.end - font_ * 2.8, name_size, Anchor::end);
    dc.SelectObject(previous);
}

// Along u, in the line of its name; both axes state their own scales.
void SectionPainter::paint_bar(CDC& dc) {
    if (labels_ == nullptr) {
        return;
    }
    constexpr double largest_part = 0.25; // of the plot
    const double length = round_below(largest_part * (u_.to - u_.from));
    const double width = length * u_.pixels_per_unit();
    paint_scale_bar(dc, *labels_,
                    {.right = u_.end,
                     .bottom = v_.start + font_ * 4,
                     .width = width,
                     .font = font_,
                     .units_per_pixel = options_.units_per_pixel},
                    number_text(length));
}

// Beside the plot; from its upper side, or higher if there are more lines than fit beside it.
void SectionPainter::paint_legend(CDC& dc) {
    if (!legend_) {
        return;
    }
    const double lowest_top = options_.size.height - outer_lines * font_ - legend_->height();
    legend_->paint(dc, *labels_, {u_.end + legend_gap * font_, std::min(v_.end, lowest_top)},
                   options_.units_per_pixel);
}

void SectionPainter::line(CDC& dc, double x0, double y0, double x1, double y1) {
    const auto device = [&](double pixel) {
        return static_cast<int>(pixel * options_.units_per_pixel);
    };
    dc.MoveTo(device(x0), device(y0));
    dc.LineTo(device(x1), device(y1));
}

} // namespace
} // namespace korvel::kit
