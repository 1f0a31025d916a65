#include "apps/command/selection.h"

#include <optional>

#include "apps/command/report.h"

namespace korvel::command {

void Selection::add_option(Options options) {
    options.add("--select", texts_, "X,Y", "Only the region under this point; may be repeated")
        .repeated();
}

void Selection::check() {
    points_.clear();
    for (const std::string& text : texts_) {
        points_.push_back(parse_real_point("--select", text));
    }
}

std::vector<int> Selection::regions(const kit::Map& map, const std::string& file,
                                    bool by_outline) const {
    std::vector<int> found;
    std::vector<Record> records;
    for (std::size_t i = 0; i < points_.size(); ++i) {
        const kit::Point2 point = {points_[i].x, points_[i].y};
        const std::optional<int> region = by_outline ? map.outline_at(point) : map.region_at(point);
        if (region) {
            print("%s: region %d", texts_[i].c_str(), *region);
            found.push_back(*region);
        } else {
            warn(texts_[i] + ": no region contains this point");
        }
        records.push_back(
            Record().set("point", std::vector<double>{point[0], point[1]}).set("region", region));
    }
    facts().set("selected", records);
    if (found.empty()) {
        throw kit::input_error(file + ": --select finds no region");
    }
    return found;
}

} // namespace korvel::command
