// GeoJSON read and written again, by the kit and by ogr2ogr, each in a process of its own.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/compare/contest.h"
#include "bench/compare/jobs.h"
#include "kit/kit.h"

namespace korvel::bench {
namespace {

namespace fs = std::filesystem;

/// A directory that goes away with its files.
class ConvertFolder {
public:
    ConvertFolder()
        : path_(fs::temp_directory_path() / ("korvel-compare-" + std::to_string(getpid()))) {
        fs::create_directory(path_);
    }
    ~ConvertFolder() { fs::remove_all(path_); }
    ConvertFolder(const ConvertFolder&) = delete;
    ConvertFolder& operator=(const ConvertFolder&) = delete;

    std::string operator/(const char* name) const { return (path_ / name).string(); }

private:
    fs::path path_;
};

kit::Features scattered_points(int points);
kit::Features polygon_layer(int points);
double bytes_of(const kit::Features& features);
double seconds_of_process(const std::vector<std::string>& words);
Run converted(double seconds, const std::string& file);
void compare_layer(Table& table, const char* input, const kit::Features& features);

} // namespace

void compare_convert(Table& table, bool is_quick) {
    const int points = is_quick ? 50'000 : 500'000;
    compare_layer(table, "points", scattered_points(points));
    compare_layer(table, "polygons", polygon_layer(points));
}

long peak_memory_of_converting(const char* from, const char* to) {
    kit::write_features(kit::read_features(from), to);
    return peak_memory();
}

namespace {

void compare_layer(Table& table, const char* input, const kit::Features& features) {
    const ConvertFolder folder;
    const std::string from = folder / "from.geojson";
    const std::string to = folder / "to.geojson";
    kit::write_features(features, from);
    const int points = static_cast<int>(features.points.size());
    const std::string program = fs::read_symlink("/proc/self/exe").string();
    const auto by_ogr2ogr = [&] {
        fs::remove(to); // which it does not replace
        return converted(seconds_of_process({"ogr2ogr", to, from}), to);
    };
    Series(table, "convert", input, "points")
        .race(points,
              [&] {
                  return converted(seconds_of_process({program, convert_option, from, to}), to);
              },
              {{"ogr2ogr", by_ogr2ogr, 1.5}});

    const std::string none = folder / "none.geojson";
    kit::write_features({}, none);
    const auto peak = [&](const std::string& file) {
        return number_from_new_process(std::string(convert_option) + " " + file + " " + to);
    };
    table.add_measure("convert memory", input, points,
                      (peak(from) - peak(none)) * 1024 / bytes_of(features), "bytes a byte of data",
                      2);
}

// Each a feature with three attributes.
kit::Features scattered_points(int points) {
    std::mt19937 dice(1);
    std::uniform_real_distribution<double> longitude(-180, 180);
    kit::Features layer;
    layer.reference = "EPSG:4326";
    layer.fields = {
        {"number", kit::Field::Type::integer}, {"name"}, {"value", kit::Field::Type::real}};
    for (int i = 0; i < points; ++i) {
        layer.points.push_back({longitude(dice), longitude(dice) / 2});
        layer.paths.push_back({layer.points.size()});
        layer.features.push_back(
            {kit::Shape::points,
             layer.paths.size(),
             {std::int64_t{i}, std::string("p").append(std::to_string(i)), longitude(dice)}});
    }
    return layer;
}

// Triangles of many points, with coordinates of seven decimals, which users' files have.
kit::Features polygon_layer(int points) {
    constexpr int corners = 500;
    kit::Features layer;
    layer.reference = "EPSG:4326";
    layer.fields = {{"number", kit::Field::Type::integer}};
    for (int i = 0; i < points / corners; ++i) {
        const double x = i % 40;
        const double y = i / 40; // NOLINT(bugprone-integer-division)
        for (int k = 0; k + 1 < corners; ++k) {
            const double along = k / (corners - 1.0);
            layer.points.push_back({x + along, y + along * along / 2});
        }
        layer.points.push_back({x, y});
        layer.paths.push_back({layer.points.size()});
        layer.features.push_back({kit::Shape::polygons, layer.paths.size(), {std::int64_t{i}}});
    }
    return layer;
}

// Of the coordinates and attributes in memory.
double bytes_of(const kit::Features& features) {
    std::size_t bytes = features.points.size() * sizeof(kit::Point2) +
                        features.paths.size() * sizeof(kit::FeaturePath) +
                        features.features.size() * sizeof(kit::Feature);
    for (const kit::Feature& feature : features.features) {
        bytes += feature.values.size() * sizeof(kit::FieldValue);
    }
    return static_cast<double>(bytes);
}

Run converted(double seconds, const std::string& file) {
    Run run;
    run.seconds = seconds;
    run.found = static_cast<double>(kit::read_features(file).points.size());
    return run;
}

// Of processor time.
double seconds_of_process(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (const std::string& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    std::fflush(stdout); // or both processes would print what is buffered
    const pid_t child = fork();
    if (child == 0) {
        if (std::freopen("/dev/null", "w", stdout) != nullptr) {
            execvp(arguments[0], arguments.data());
        }
        _exit(127);
    }
    int status = 0;
    rusage used = {};
    if (child < 0 || wait4(child, &status, 0, &used) != child || status != 0) {
        throw std::runtime_error(words[0] + " failed");
    }
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

} // namespace
} // namespace korvel::bench
