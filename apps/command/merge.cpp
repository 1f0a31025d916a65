#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/loaded_model.h"
#include "apps/command/outputs.h"
#include "apps/command/report.h"
#include "kit/solids/join.h"

namespace korvel::kit {
namespace {

class MergeCommand {
public:
    explicit MergeCommand(CLI::App& command);
    void run() const;

private:
    std::vector<std::string> inputs_;
    Outputs outputs_;
};

void tell(const std::string& name, const TMOD3D& model);

} // namespace

void add_merge_command(CLI::App& program) {
    CLI::App* command = program.add_subcommand("merge", "Put the bodies of models into one model");
    command->group("Commands");
    const auto self = std::make_shared<MergeCommand>(*command);
    command->callback([self] { self->run(); });
}

namespace {

MergeCommand::MergeCommand(CLI::App& command) {
    command.add_option("MODELS", inputs_, "Body model files")->required()->type_name("FILE");
    outputs_.add_file(command, "Write the model")->required();
    command.footer(
        "Vertices, faces and bodies of the second model are numbered on from those of the\n"
        "first, and so on. Nothing is joined: bodies that touch or overlap stay what they\n"
        "are, with vertices of their own. Colours and parameters of the bodies are kept.\n"
        "\n"
        "Example:\n"
        "  korvel merge box.model ball.model -o both.model");
}

void MergeCommand::run() const {
    outputs_.check();
    // Added one by one they come out the same, but each time everything is derived anew.
    TMOD3D parts;
    for (const std::string& input : inputs_) {
        TMOD3D part;
        load_model(input, part);
        tell(input, part);
        append_bodies(part, parts);
    }
    TMOD3D whole;
    whole.add_model(parts);
    tell("together", whole);
    outputs_.write([&](FILE* out) { whole.write_mode(out); });
}

void tell(const std::string& name, const TMOD3D& model) {
    std::printf("%s: %s, %s\n", name.c_str(),
                counted(model.bodies.GetSize(), "body", "bodies").c_str(),
                figures_text(model).c_str());
}

} // namespace
} // namespace korvel::kit
