#include <string>
#include <vector>

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

class CleanCommand {
public:
    explicit CleanCommand(Options options);
    void run() const;

private:
    void remove_from(kit::Solids& solids) const;

    ModelInput input_;
    std::vector<int> deleted_;
    Outputs outputs_;
};

struct Counts {
    explicit Counts(const kit::Solids& solids)
        : bodies(solids.size()), faces(solids.face_count()), vertices(solids.vertex_count()) {}

    int bodies;
    int faces;
    int vertices;
};

std::string elements_text(int bodies, int faces, int vertices);

void CleanCommand::run() const {
    outputs_.check();
    kit::Solids solids = input_.load();
    for (const int body : deleted_) {
        check_number("--delete", body, solids.size(), "body", input_.file());
    }
    const Counts before(solids);
    remove_from(solids);
    const Counts after(solids);
    if (after.faces == 0) {
        throw kit::input_error(shown(input_.file()) +
                               ": nothing would be left, and a model without faces is no model");
    }
    print("%s: %s", shown(input_.file()).c_str(),
          elements_text(before.bodies, before.faces, before.vertices).c_str());
    print("taken out: %s", elements_text(before.bodies - after.bodies, before.faces - after.faces,
                                         before.vertices - after.vertices)
                               .c_str());
    facts()
        .set("model", model_record(solids))
        .set("bodies_removed", before.bodies - after.bodies)
        .set("faces_removed", before.faces - after.faces)
        .set("vertices_removed", before.vertices - after.vertices);
    print("left: %s, %s", counted(after.bodies, "body", "bodies").c_str(),
          model_figures(solids).c_str());
    outputs_.write_model(solids);
}

} // namespace

void add_clean_command(Program& program) {
    add_command<CleanCommand>(program, "clean",
                              "Remove bodies, unused faces and unused vertices from a model");
}

namespace {

CleanCommand::CleanCommand(Options options) {
    input_.add_options(options);
    options.add("--delete", deleted_, "BODY", "Remove this body; may be repeated").repeated();
    outputs_.add_model(options);
    options.footer(
        "Faces of no body and vertices of no face are removed. The rest keeps its order\n"
        "and is renumbered. Bodies are named by their numbers in\n"
        "MODEL; a face that two bodies share remains with the other one.\n"
        "\n"
        "Example:\n"
        "  korvel clean states.model --delete 3 --delete 17 -o fewer.model");
}

void CleanCommand::remove_from(kit::Solids& solids) const {
    const Task task("cleaning");
    if (deleted_.empty()) {
        solids.clean();
    } else {
        solids.remove(deleted_);
    }
}

std::string elements_text(int bodies, int faces, int vertices) {
    return counted(bodies, "body", "bodies") + ", " + counted(faces, "face") + ", " +
           counted(vertices, "vertex", "vertices");
}

} // namespace
} // namespace korvel::command
