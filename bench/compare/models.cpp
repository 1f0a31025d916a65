// Reading and cutting models.

#include <cmath>
#include <cstdio>
#include <fstream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/compare/contest.h"
#include "bench/compare/jobs.h"
#include "bench/compare/peers.h"
#include "bench/inputs/models.h"

namespace korvel::bench {
namespace {

constexpr int goal_size = 800'000;
constexpr double cut_at = 12.3456789;

void compare_reading(Series& series, TMOD3D& made, std::optional<double> goal);
Run read(const ModelFile& file);
void compare_cutting(Series& series, TMOD3D& made, std::optional<double> goal);
Run cut(TMOD3D& model);
double length(const TMOD2D& section);
double peak_memory_of(const ModelFile& file);

struct Comparison {
    const char* job;
    const char* found;
    void (*compare)(Series& series, TMOD3D& made, std::optional<double> goal);
    double goal;
};

constexpr Comparison comparisons[] = {
    {"read model", "edges", compare_reading, 0.3},
    {"section", "length", compare_cutting, 1},
};

} // namespace

void compare_models(Table& table, bool is_quick) {
    const std::vector<int> sizes =
        is_quick ? std::vector{20'000, 40'000} : std::vector{100'000, 200'000, 400'000, goal_size};
    const std::vector<int> rounds = is_quick ? std::vector{4, 5} : std::vector{6, 7, 8};
    for (const Comparison& c : comparisons) {
        Series balls(table, c.job, "bumpy ball", c.found);
        for (const int faces : sizes) {
            TMOD3D made;
            bumpy_ball(made, faces);
            c.compare(balls, made, faces == goal_size ? std::optional(c.goal) : std::nullopt);
        }
        Series refined(table, c.job, "refined ball", c.found);
        for (const int count : rounds) {
            TMOD3D made;
            bumpy_refined_ball(made, count);
            c.compare(refined, made, std::nullopt);
        }
    }

    TMOD3D made;
    bumpy_ball(made, sizes.back());
    const double faces = made.polys.GetSize();
    table.add_measure("peak memory", "bumpy ball", made.polys.GetSize(),
                      peak_memory_of(ModelFile(made)) / faces, "KiB a face", 1.1);
}

long peak_memory_of_reading(const char* file) {
    TMOD3D model;
    read_model(file, model);
    return peak_memory();
}

double number_from_new_process(const std::string& arguments) {
    const std::string command =
        std::filesystem::read_symlink("/proc/self/exe").string() + " " + arguments;
    const std::unique_ptr<FILE, int (*)(FILE*)> answer(popen(command.c_str(), "r"), pclose);
    long number = 0;
    if (!answer || std::fscanf(answer.get(), "%ld", &number) != 1) {
        throw std::runtime_error("no answer from " + command);
    }
    return static_cast<double>(number);
}

long peak_memory() {
    std::ifstream status("/proc/self/status");
    std::string word;
    long kibibytes = 0;
    while (status >> word && word != "VmHWM:") {
    }
    status >> kibibytes;
    return kibibytes;
}

namespace {

void compare_reading(Series& series, TMOD3D& made, std::optional<double> goal) {
    const ModelFile file(made);
    const ModelFile off(made, ModelFile::Form::off);
    const int faces = made.polys.GetSize();
    series.race(faces, [&] { return read(file); },
                {{"CGAL", [&] { return read_with_cgal(off.path()); }, goal},
                 {"CGAL, fscanf", [&] { return scan_with_cgal(file.path()); }}});
}

Run read(const ModelFile& file) {
    TMOD3D model;
    Run run;
    run.seconds = seconds_of([&] { read_model(file.path(), model); });
    run.found = model.lines.GetSize();
    return run;
}

void compare_cutting(Series& series, TMOD3D& made, std::optional<double> goal) {
    const ModelFile file(made);
    TMOD3D model;
    read_model(file.path(), model);
    const CgalMesh mesh(file.path());
    series.race(model.polys.GetSize(), [&] { return cut(model); },
                {{"CGAL", [&] { return mesh.cut(cut_at); }, goal}});
}

Run cut(TMOD3D& model) {
    TMOD2D section;
    Run run;
    run.seconds = seconds_of([&] { model.get_x_section(cut_at, section); });
    run.found = length(section);
    return run;
}

double length(const TMOD2D& section) {
    double sum = 0;
    for (const POLY3D& loop : section.polys) {
        const double* from = section.verts[loop.verts[loop.verts.GetUpperBound()]].model_xyz;
        for (const int v : loop.verts) {
            const double* to = section.verts[v].model_xyz;
            sum += std::hypot(to[0] - from[0], to[1] - from[1], to[2] - from[2]);
            from = to;
        }
    }
    return sum;
}

/// In KiB, from a new process of this program.
double peak_memory_of(const ModelFile& file) {
    return number_from_new_process(std::string(peak_memory_option) + " " + file.path().string());
}

} // namespace
} // namespace korvel::bench
