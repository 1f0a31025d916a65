#include <string>

#include "apps/command/arguments.h"
#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/outputs.h"
#include "apps/command/report.h"
#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class WeldCommand {
public:
    explicit WeldCommand(Options options);
    void run() const;

private:
    kit::WeldReport weld(kit::Solids& solids) const;

    ModelInput input_;
    kit::WeldOptions options_;
    Outputs outputs_;
};

void WeldCommand::run() const {
    check_tolerance(options_.tolerance);
    outputs_.check();
    kit::Solids solids = input_.load();
    print("%s: %s, %s", shown(input_.file()).c_str(),
          counted(solids.size(), "body", "bodies").c_str(), model_figures(solids).c_str());
    facts().set("former", model_record(solids));
    const kit::WeldReport report = weld(solids);
    facts().set("model", model_record(solids)).set("welded", weld_record(report));
    print("%s", weld_text(report).c_str());
    print("now: %s", model_figures(solids).c_str());
    outputs_.write_model(solids);
}

} // namespace

void add_weld_command(Program& program) {
    add_command<WeldCommand>(program, "weld", "Let bodies that touch share vertices and faces");
}

namespace {

WeldCommand::WeldCommand(Options options) {
    input_.add_options(options);
    options
        .add("--tolerance", options_.tolerance, "T",
             "Join vertices that are no farther apart; 0: those at one place")
        .with_default();
    outputs_.add_model(options);
    options.footer(
        "Vertices, edges and faces that coincide become one. Walls along an axis that two\n"
        "bodies have in common get the same triangles first, also where the bodies have\n"
        "different heights. Bodies that share a face are neighbours: moving a vertex moves\n"
        "both. Bodies keep their order and colours; vertices and faces that nothing uses\n"
        "disappear.\n"
        "\n"
        "Examples:\n"
        "  korvel weld both.model -o welded.model\n"
        "  korvel weld scanned.model --tolerance 0.001 -o welded.model");
}

kit::WeldReport WeldCommand::weld(kit::Solids& solids) const {
    Task task("welding");
    try {
        return kit::weld(solids, options_, task.context());
    } catch (const kit::Error& error) {
        throw kit::input_error(shown(input_.file()) + ": " + error.what());
    }
}

} // namespace
} // namespace korvel::command
