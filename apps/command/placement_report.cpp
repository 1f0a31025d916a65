#include "apps/command/placement_report.h"

#include <utility>
#include <vector>

#include "apps/command/messages.h"
#include "apps/command/report.h"

namespace korvel::command {
namespace {

std::string grid_text(const kit::Grid& grid);
std::vector<double> origin_of(const kit::Grid& grid);
std::string reference_text(const std::string& reference);

} // namespace

std::string placement_text(const kit::Placement& placement) {
    return grid_text(placement.grid)
        .append(placement.reference.empty() ? "" : ", ")
        .append(reference_text(placement.reference));
}

Record placement_record(const kit::Placement& placement) {
    Record record;
    record.set("step", placement.grid.step_text()).set("origin", origin_of(placement.grid));
    if (placement.grid.is_y_down()) {
        record.set("y_down", true);
    }
    if (!placement.reference.empty()) {
        record.set("reference", placement.reference);
    }
    return record;
}

void set_placement(const kit::Placement& placement) {
    if (!placement.is_plain()) {
        facts().set("grid", placement_record(placement));
    }
}

void report_placement(const kit::Placement& placement, std::optional<double> largest_shift) {
    if (placement.is_plain() && largest_shift.value_or(0) == 0) {
        return;
    }
    std::string text = grid_text(placement.grid);
    Record record = placement_record(placement);
    if (largest_shift) {
        text += *largest_shift == 0 ? ", no point moved" : ", points moved by up to ";
        text += *largest_shift == 0 ? "" : number_text(*largest_shift);
        record.set("largest_shift", *largest_shift);
    }
    print("%s%s%s", text.c_str(), placement.reference.empty() ? "" : ", ",
          reference_text(placement.reference).c_str());
    facts().set("grid", std::move(record));
}

namespace {

std::string grid_text(const kit::Grid& grid) {
    std::string text = "grid " + grid.step_text();
    if (grid.origin() != kit::space_origin) {
        const char* separator = ", origin ";
        for (const double coordinate : origin_of(grid)) {
            text.append(separator).append(number_text(coordinate));
            separator = ",";
        }
    }
    return text.append(grid.is_y_down() ? ", y down" : "");
}

// Without a z of 0.
std::vector<double> origin_of(const kit::Grid& grid) {
    const kit::Point3 origin = grid.origin();
    std::vector<double> coordinates(origin.begin(), origin.end());
    if (coordinates.back() == 0) {
        coordinates.pop_back();
    }
    return coordinates;
}

// In WKT the first text in quotes is the name.
std::string reference_text(const std::string& reference) {
    const std::string name = kit::reference_name(reference);
    const std::size_t start = name.find('"') + 1;
    return start == 0 ? name : name.substr(start, name.find('"', start) - start);
}

} // namespace
} // namespace korvel::command
