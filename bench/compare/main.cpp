// Compares korvel with its peers, job by job, on the same input in the same run.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "bench/compare/jobs.h"

namespace korvel::bench {
namespace {

constexpr struct {
    const char* name;
    void (*compare)(Table& table, bool is_quick);
} groups[] = {
    {"regions", compare_regions},
    {"triangles", compare_triangles},
    {"map-triangles", compare_map_triangles},
    {"models", compare_models},
    {"merging", compare_merging},
    {"convert", compare_convert},
    {"meshes", compare_meshes},
};

/// All groups if none is named.
void compare(const std::vector<std::string>& names, bool is_quick) {
    Table table;
    for (const auto& group : groups) {
        if (names.empty() || std::count(names.begin(), names.end(), group.name) > 0) {
            group.compare(table, is_quick);
        }
    }
    table.print_summary();
}

bool is_group(const std::string& name) {
    return std::any_of(std::begin(groups), std::end(groups),
                       [&](const auto& group) { return group.name == name; });
}

int run(std::vector<std::string> words) {
    if (words.size() == 2 && words[0] == peak_memory_option) {
        std::printf("%ld\n", peak_memory_of_reading(words[1].c_str()));
        return 0;
    }
    if (words.size() == 2 && words[0] == mesh_option) {
        std::printf("%ld\n", peak_memory_of_reading_mesh(words[1].c_str()));
        return 0;
    }
    if (words.size() == 3 && words[0] == convert_option) {
        std::printf("%ld\n", peak_memory_of_converting(words[1].c_str(), words[2].c_str()));
        return 0;
    }
    const bool is_quick = std::erase(words, "--quick") > 0;
    if (!std::all_of(words.begin(), words.end(), is_group)) {
        std::fprintf(stderr, "usage: korvel_compare [--quick] [GROUP...]\ngroups:");
        for (const auto& group : groups) {
            std::fprintf(stderr, " %s", group.name);
        }
        std::fprintf(stderr, "\n");
        return 2;
    }
    compare(words, is_quick);
    return 0;
}

} // namespace
} // namespace korvel::bench

int main(int argc, char** argv) try {
    return korvel::bench::run({argv + 1, argv + argc});
} catch (const std::exception& error) {
    std::fprintf(stderr, "korvel_compare: %s\n", error.what());
    return 1;
}
