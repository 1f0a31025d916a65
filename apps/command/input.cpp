#include "apps/command/input.h"

#include <cctype>
#include <cstdio>

#include "apps/command/report.h"
#include "apps/command/task.h"

namespace korvel::command {
namespace {

void take_standard_input();

} // namespace

std::string shown(const std::string& input) {
    return input == "-" ? "standard input" : input;
}

kit::TextFile read_input(const std::string& name) {
    if (name != "-") {
        return kit::TextFile(kit::path_of(name));
    }
    take_standard_input();
    return kit::TextFile::standard_input();
}

namespace {

void take_standard_input() {
    static bool is_taken = false;
    if (is_taken) {
        throw kit::input_error("standard input can be read once only");
    }
    is_taken = true;
}

} // namespace

bool holds_features(const std::string& name) {
    if (name != "-") {
        return kit::holds_features(kit::path_of(name));
    }
    int first = std::getc(stdin);
    while (kit::is_white_space(first)) {
        first = std::getc(stdin);
    }
    std::ungetc(first, stdin);
    return first == '{';
}

kit::Features read_features(const std::string& name, const kit::ReadFeaturesOptions& options,
                            const kit::Context& context) {
    if (name != "-") {
        return kit::read_features(kit::path_of(name), options, context);
    }
    take_standard_input();
    return kit::read_geojson_features(stdin, shown(name), options, context);
}

kit::Map load_regions(const kit::TextFile& file) {
    facts().set("input", file.name);
    Task task("reading regions");
    return kit::Map::read(file, task.context());
}

bool holds_mesh(const std::string& name, bool is_model) {
    if (name != "-") {
        return kit::holds_mesh(kit::path_of(name));
    }
    const int first = std::getc(stdin);
    std::ungetc(first, stdin);
    return std::isalpha(first) != 0 || (is_model && first == '#');
}

kit::Mesh read_mesh(const std::string& name, std::optional<kit::MeshFormat> format,
                    const kit::Context& context) {
    if (name != "-") {
        return kit::read_mesh(kit::path_of(name), format, context);
    }
    take_standard_input();
    return kit::read_mesh(stdin, shown(name), format, context);
}

} // namespace korvel::command
