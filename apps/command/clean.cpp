#include <cstdio>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/outputs.h"
#include "kit/base/error.h"

namespace korvel::command {
namespace {

class CleanCommand {
public:
    explicit CleanCommand(CLI::App& command);
    void run();

private:
    void delete_bodies();

    std::string input_;
    std::vector<int> deleted_;
    Outputs outputs_;
    TMOD3D model_;
};

std::string elements_text(int bodies, int faces, int vertices);

void CleanCommand::run() {
    outputs_.check();
    load_model(input_, model_);
    for (const int body : deleted_) {
        check_number("--delete", body, model_.bodies.GetSize(), "body", input_);
    }
    const int bodies = model_.bodies.GetSize();
    const int faces = model_.polys.GetSize();
    const int vertices = model_.verts.GetSize();
    delete_bodies();
    if (model_.polys.IsEmpty()) {
        throw kit::input_error(input_ +
                               ": nothing would be left, and a model without faces is no model");
    }
    std::printf("%s: %s\n", input_.c_str(), elements_text(bodies, faces, vertices).c_str());
    std::printf("taken out: %s\n",
                elements_text(bodies - model_.bodies.GetSize(), faces - model_.polys.GetSize(),
                              vertices - model_.verts.GetSize())
                    .c_str());
    std::printf("left: %s, %s\n", counted(model_.bodies.GetSize(), "body", "bodies").c_str(),
                model_figures(model_).c_str());
    outputs_.write([&](kit::OutputFile& out) { model_.write_mode(out.stream()); });
}

} // namespace

void add_clean_command(CLI::App& program) {
    add_command<CleanCommand>(program, "clean",
                              "Remove bodies, unused faces and unused vertices from a model");
}

namespace {

CleanCommand::CleanCommand(CLI::App& command) {
    command.add_option("MODEL", input_, "Body model file")->required()->type_name("FILE");
    command.add_option("--delete", deleted_, "Remove this body; may be repeated")
        ->type_name("BODY")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    outputs_.add_file(command, "Write the model")->required();
    command.footer(
        "Faces of no body and vertices of no face are removed. The rest keeps its order\n"
        "and is renumbered. Bodies are named by their numbers in\n"
        "MODEL; a face that two bodies share remains with the other one.\n"
        "\n"
        "Example:\n"
        "  korvel clean states.model --delete 3 --delete 17 -o fewer.model");
}

// From the highest number, which leaves the lower ones as they are. Each `deletet` derives the
// whole model anew, so only the last body goes that way; what stays is the same, but for the corner
// at which the list of a face starts.
void CleanCommand::delete_bodies() {
    std::set<int, std::greater<>> numbers(deleted_.begin(), deleted_.end());
    if (numbers.empty()) {
        model_.clear_no_use_ele();
        return;
    }
    const int last = *numbers.rbegin();
    numbers.erase(last);
    for (const int body : numbers) {
        model_.bodies.RemoveAt(body);
    }
    model_.deletet(last);
}

std::string elements_text(int bodies, int faces, int vertices) {
    return counted(bodies, "body", "bodies") + ", " + counted(faces, "face") + ", " +
           counted(vertices, "vertex", "vertices");
}

} // namespace
} // namespace korvel::command
