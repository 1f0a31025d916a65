#include "apps/command/input.h"

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

kit::Solids read_solids(const std::string& name) {
    const kit::TextFile file = read_input(name);
    Task task("reading the model");
    return kit::Solids::read(file, task.context());
}

kit::Solids load_solids(const std::string& name) {
    facts().set("input", shown(name));
    return read_solids(name);
}

} // namespace korvel::command
