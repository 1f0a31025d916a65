#include <cstdio>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/loaded_model.h"
#include "apps/command/outputs.h"
#include "apps/command/report.h"
#include "kit/base/errors.h"

namespace korvel::kit {
namespace {

class CleanCommand {
public:
    explicit CleanCommand(CLI::App& command);
    void run();

private:
    void take_out_bodies();

    std::string input_;
    std::vector<int> deleted_;
    Outputs outputs_;
    TMOD3D model_;
};

std::string elements_text(int bodies, int faces, int vertices);

} // namespace

void add_clean_command(CLI::App& program) {
    CLI::App* command =
        program.add_subcommand("clean", "Take bodies and all that is not in use out of a model");
    command->group("Commands");
    const auto self = std::make_shared<CleanCommand>(*command);
    command->callback([self] { self->run(); });
}

namespace {

CleanCommand::CleanCommand(CLI::App& command) {
    command.add_option("MODEL", input_, "Body model file")->required()->type_name("FILE");
    command.add_option("--delete", deleted_, "Take out this body; may be repeated")
        ->type_name("BODY")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    outputs_.add_file(command, "Write the model")->required();
    command.footer(
        "Faces that belong to no body and vertices that belong to no face go. What stays\n"
        "keeps its order and is numbered anew. Bodies are named by their numbers in\n"
        "MODEL; a face that two bodies share stays with the other one.\n"
        "\n"
        "Example:\n"
        "  korvel clean states.model --delete 3 --delete 17 -o fewer.model");
}

void CleanCommand::run() {
    outputs_.check();
    load_model(input_, model_);
    for (const int body : deleted_) {
        check_number("--delete", body, model_.bodies.GetSize(), "body", input_);
    }
    const int bodies = model_.bodies.GetSize();
    const int faces = model_.polys.GetSize();
    const int vertices = model_.verts.GetSize();
    take_out_bodies();
    if (model_.polys.IsEmpty()) {
        throw InputError(input_ + ": nothing would be left, and a model without faces is no model");
    }
    std::printf("%s: %s\n", input_.c_str(), elements_text(bodies, faces, vertices).c_str());
    std::printf("taken out: %s\n",
                elements_text(bodies - model_.bodies.GetSize(), faces - model_.polys.GetSize(),
                              vertices - model_.verts.GetSize())
                    .c_str());
    std::printf("left: %s, %s\n", counted(model_.bodies.GetSize(), "body", "bodies").c_str(),
                figures_text(model_).c_str());
    outputs_.write([&](FILE* out) { model_.write_mode(out); });
}

// From the highest number, which leaves the lower ones as they are. Each `deletet` derives the
// whole model anew, so only the last body goes that way; what stays is the same, but for the corner
// at which the list of a face starts.
void CleanCommand::take_out_bodies() {
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
} // namespace korvel::kit
