#include "apps/command/input.h"

#include "apps/command/report.h"
#include "apps/command/task.h"

namespace korvel::command {

std::string shown(const std::string& input) {
    return input == "-" ? "standard input" : input;
}

kit::TextFile read_input(const std::string& name) {
    if (name != "-") {
        return kit::TextFile(kit::path_of(name));
    }
    static bool is_taken = false;
    if (is_taken) {
        throw kit::input_error("standard input can be read once only");
    }
    is_taken = true;
    return kit::TextFile::standard_input();
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
