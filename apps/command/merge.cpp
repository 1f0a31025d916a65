#include <cstdio>
#include <string>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/outputs.h"
#include "kit/solids/join.h"

namespace korvel::command {
namespace {

class MergeCommand {
public:
    explicit MergeCommand(CLI::App& command);
    void run() const;

private:
    std::vector<std::string> inputs_;
    Outputs outputs_;
};

void print_figures(const std::string& name, const TMOD3D& model);

void MergeCommand::run() const {
    outputs_.check();
    // Added one by one they come out the same, but each time everything is derived anew.
    TMOD3D parts;
    for (const std::string& input : inputs_) {
        TMOD3D part;
        load_model(input, part);
        print_figures(input, part);
        kit::append_bodies(part, parts);
    }
    TMOD3D whole;
    whole.add_model(parts);
    print_figures("together", whole);
    outputs_.write([&](kit::OutputFile& out) { whole.write_mode(out.stream()); });
}

} // namespace

void add_merge_command(CLI::App& program) {
    add_command<MergeCommand>(program, "merge", "Put the bodies of several models into one model");
}

namespace {

MergeCommand::MergeCommand(CLI::App& command) {
    command.add_option("MODELS", inputs_, "Body model files")->required()->type_name("FILE");
    outputs_.add_file(command, "Write the model")->required();
    command.footer(
        "Vertices, faces and bodies of the second model are numbered on from those of the\n"
        "first, and so on. Nothing is joined: bodies that touch or overlap keep\n"
        "their own vertices and faces. Colours and parameters of the bodies are kept.\n"
        "\n"
        "Example:\n"
        "  korvel merge box.model ball.model -o both.model");
}

void print_figures(const std::string& name, const TMOD3D& model) {
    std::printf("%s: %s, %s\n", name.c_str(),
                counted(model.bodies.GetSize(), "body", "bodies").c_str(),
                model_figures(model).c_str());
}

} // namespace
} // namespace korvel::command
