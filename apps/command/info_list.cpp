#include "apps/command/info_list.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/report.h"

namespace korvel::command {
namespace {

/// A body or a region in the three forms of a list.
struct Row {
    int number = 0;
    double measure = 0; ///< area or volume
    std::string text;
    std::string csv;
    Record record;
};

constexpr std::size_t most_listed = 20;

Row row_of(const kit::Region& region, const kit::Region& measured);
Row row_of(const kit::Body& body, const kit::Surface& surface);
void put_in_order(std::vector<Row>& rows, const InfoListOptions& options);
bool is_larger(const Row& a, const Row& b);
void print_csv(const std::vector<Row>& rows, const char* header);
void print_sizes(const std::vector<Row>& rows, const char* measure, const char* thing);
void print_open_bodies(const std::vector<int>& open, std::size_t bodies);
void print_list(const std::vector<Row>& rows, const InfoListOptions& options, const char* header);
std::vector<Record> rows_as_records(std::vector<Row>& rows);
std::string aligned(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths);
std::string comma_separated(const std::vector<std::string>& cells);
std::array<double, 4> pairs_of(const kit::Rectangle& box);

} // namespace

void InfoListOptions::add_options(Options options) {
    options.add_flag("--all", is_all, "List each body or region, not only up to 20");
    options
        .add("--sort", sort, "area|volume",
             "List from the largest on: regions by area, bodies by\n"
             "volume; of more than 20 the first 20 without --all")
        .one_of({"area", "volume"});
    options.add_flag("--csv", is_csv,
                     "Print only the list, of all, as comma separated values with a header");
}

void InfoListOptions::check(kit::FileKind kind) const {
    const bool is_list = kind == kit::FileKind::model || kind == kit::FileKind::regions;
    const std::string name = std::string("a ") + kit::kind_name(kind);
    if (is_csv && !is_list) {
        throw kit::input_error("--csv: " + name + " contains no bodies or regions");
    }
    if (!sort.empty() && !is_list) {
        throw kit::input_error("--sort: " + name + " contains no bodies or regions");
    }
    const char* const measure = kind == kit::FileKind::model ? "volume" : "area";
    if (!sort.empty() && sort != measure) {
        throw kit::input_error("--sort " + sort + ": " + name + " is sorted by " + measure);
    }
}

void describe_regions(const kit::Map& map, const kit::Map& measured,
                      const InfoListOptions& options) {
    int holes = 0;
    std::vector<Row> rows;
    for (const kit::Region region : map) {
        holes += region.hole_count();
        rows.push_back(row_of(region, measured[region.index()]));
    }
    put_in_order(rows, options);
    const int rings = map.regions().ring_list.GetSize();
    facts().set("regions", map.size());
    facts().set("holes", holes).set("rings", rings).set("points", map.point_count());
    facts().set("area", measured.area());
    set_bounds(map.bounds());
    if (options.is_csv) {
        print_csv(rows, "region,points,holes,area,perimeter,x_min,x_max,y_min,y_max");
    } else {
        print("%s with %s, %s, %s, area %s", counted(map.size(), "region").c_str(),
              counted(holes, "hole").c_str(), counted(rings, "ring").c_str(),
              counted(map.point_count(), "point").c_str(), number_text(measured.area()).c_str());
        print_bounds(map.bounds());
        print_sizes(rows, "area", "region");
        print_list(rows, options, "region  points  holes                area  bounds");
    }
    facts().set("listed", rows_as_records(rows));
}

void describe_model(const kit::Solids& solids, const InfoListOptions& options) {
    const std::vector<kit::Surface> surfaces = solids.surfaces();
    std::vector<int> open;
    std::vector<Row> rows;
    for (const kit::Body body : solids) {
        const kit::Surface& surface = surfaces[static_cast<std::size_t>(body.index())];
        rows.push_back(row_of(body, surface));
        if (!surface.is_closed()) {
            open.push_back(body.index());
        }
    }
    put_in_order(rows, options);
    facts().set("model", model_record(solids)).set("open", open);
    if (options.is_csv) {
        print_csv(rows, "body,faces,edges,vertices,euler,volume,colour,state,shares_faces_with");
    } else {
        print("%s, %d of them open, %s", counted(solids.size(), "body", "bodies").c_str(),
              static_cast<int>(open.size()), model_figures(solids).c_str());
        print("bounds %s", bounds_text(solids).c_str());
        print_sizes(rows, "volume", "body");
        print_open_bodies(open, rows.size());
        print_list(rows, options,
                   "  body   faces   edges  vertices  Euler              volume  colour   state");
    }
    facts().set("listed", rows_as_records(rows));
}

void print_bounds(const kit::Rectangle& box) {
    if (!box.is_empty()) {
        print("bounds %s", bounds_text(pairs_of(box).data(), 2).c_str());
    }
}

void set_bounds(const kit::Rectangle& box) {
    if (!box.is_empty()) {
        facts().set("bounds", bounds_record(pairs_of(box).data(), 2));
    }
}

namespace {

Row row_of(const kit::Region& region, const kit::Region& measured) {
    const double area = measured.area();
    const double perimeter = measured.perimeter();
    const int points = region.point_count();
    const std::array<double, 4> box = pairs_of(region.bounds());
    const std::vector<std::string> cells = {std::to_string(region.index()), std::to_string(points),
                                            std::to_string(region.hole_count()), number_text(area)};
    Row row = {.number = region.index(), .measure = area, .text = {}, .csv = {}, .record = {}};
    row.text = aligned(cells, {6, 8, 7, 20}) + "  " + bounds_text(box.data(), 2);
    row.csv = comma_separated(cells) + "," + number_text(perimeter);
    for (const double bound : box) {
        row.csv.append(",").append(number_text(bound));
    }
    row.record.set("region", row.number)
        .set("points", points)
        .set("holes", region.hole_count())
        .set("area", area)
        .set("perimeter", perimeter)
        .set("bounds", bounds_record(box.data(), 2));
    return row;
}

Row row_of(const kit::Body& body, const kit::Surface& surface) {
    const double volume = body.volume();
    const std::string colour = colour_text(body.colour().rgb());
    const std::string state = kit::state_text(surface);
    std::string neighbours;
    for (const int neighbour : body.neighbours()) {
        neighbours.append(neighbours.empty() ? "" : " ").append(std::to_string(neighbour));
    }
    const std::vector<std::string> cells = {std::to_string(body.index()),
                                            std::to_string(surface.faces),
                                            std::to_string(surface.edges),
                                            std::to_string(surface.vertices),
                                            std::to_string(surface.euler_characteristic()),
                                            number_text(volume)};
    Row row = {.number = body.index(), .measure = volume, .text = {}, .csv = {}, .record = {}};
    row.text = aligned(cells, {6, 8, 8, 10, 7, 20}) + "  " + colour + "  " + state +
               (neighbours.empty() ? "" : ", shares faces with ") + neighbours;
    // A state may contain commas.
    row.csv = comma_separated(cells) + "," + colour + ",\"" + state + "\"," + neighbours;
    row.record.set("body", row.number)
        .set("faces", surface.faces)
        .set("edges", surface.edges)
        .set("vertices", surface.vertices)
        .set("euler_characteristic", surface.euler_characteristic())
        .set("volume", volume)
        .set("colour", colour)
        .set("closed", surface.is_closed())
        .set("state", state)
        .set("neighbours", std::vector<int>(body.neighbours().begin(), body.neighbours().end()));
    return row;
}

void put_in_order(std::vector<Row>& rows, const InfoListOptions& options) {
    if (!options.sort.empty()) {
        std::stable_sort(rows.begin(), rows.end(), is_larger);
    }
}

// What has no measure is less than all others.
bool is_larger(const Row& a, const Row& b) {
    return a.measure > b.measure || (std::isnan(b.measure) && !std::isnan(a.measure));
}

void print_csv(const std::vector<Row>& rows, const char* header) {
    print_answer(header);
    for (const Row& row : rows) {
        print_answer(row.csv);
    }
}

// Of so many that they are not all listed.
void print_sizes(const std::vector<Row>& rows, const char* measure, const char* thing) {
    if (rows.size() <= most_listed) {
        return;
    }
    std::vector<const Row*> ascending;
    ascending.reserve(rows.size());
    for (const Row& row : rows) {
        ascending.push_back(&row);
    }
    std::stable_sort(ascending.begin(), ascending.end(),
                     [](const Row* a, const Row* b) { return is_larger(*b, *a); });
    const auto text = [&](const Row* row) {
        return number_text(row->measure) + " (" + thing + " " + std::to_string(row->number) + ")";
    };
    print("%s: least %s, median %s, largest %s", measure, text(ascending.front()).c_str(),
          text(ascending[(ascending.size() - 1) / 2]).c_str(), text(ascending.back()).c_str());
}

void print_open_bodies(const std::vector<int>& open, std::size_t bodies) {
    if (open.empty() || bodies <= most_listed) {
        return;
    }
    std::string text = open.size() == 1 ? "open: body" : "open: bodies";
    for (std::size_t i = 0; i < std::min(open.size(), most_listed); ++i) {
        text.append(" ").append(std::to_string(open[i]));
    }
    if (open.size() > most_listed) {
        text.append(" and ").append(std::to_string(open.size() - most_listed)).append(" more");
    }
    print("%s", text.c_str());
}

// All of a few, and of many only when they are requested.
void print_list(const std::vector<Row>& rows, const InfoListOptions& options, const char* header) {
    std::size_t count = rows.size();
    if (count > most_listed && !options.is_all) {
        count = options.sort.empty() ? 0 : most_listed;
    }
    if (count > 0) {
        print("%s", header);
    }
    for (std::size_t i = 0; i < count; ++i) {
        print("%s", rows[i].text.c_str());
    }
    if (count < rows.size()) {
        print(count > 0 ? "... and %zu more (--all lists each)" : "--all lists each of the %zu",
              rows.size() - count);
    }
}

std::vector<Record> rows_as_records(std::vector<Row>& rows) {
    std::vector<Record> records;
    records.reserve(rows.size());
    for (Row& row : rows) {
        records.push_back(std::move(row.record));
    }
    return records;
}

// Cells as columns of these widths.
std::string aligned(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths) {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        text.append(widths[i] - std::min(widths[i] - (i > 0 ? 1 : 0), cells[i].size()), ' ');
        text += cells[i];
    }
    return text;
}

std::string comma_separated(const std::vector<std::string>& cells) {
    std::string text;
    for (const std::string& cell : cells) {
        text.append(text.empty() ? "" : ",").append(cell);
    }
    return text;
}

std::array<double, 4> pairs_of(const kit::Rectangle& box) {
    return {box.left, box.right, box.top, box.bottom};
}

} // namespace
} // namespace korvel::command
