#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
#include "apps/command/outputs.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class MergeCommand {
public:
    explicit MergeCommand(Options options);
    void run() const;

private:
    std::vector<std::string> inputs_;
    Outputs outputs_;
};

void print_figures(const std::string& name, const kit::Solids& solids);

void MergeCommand::run() const {
    outputs_.check();
    std::vector<kit::Solids> parts;
    for (const std::string& input : inputs_) {
        parts.push_back(load_solids(input));
        print_figures(input, parts.back());
    }
    const kit::Solids whole = kit::merge(std::move(parts));
    print_figures("together", whole);
    outputs_.write([&](kit::OutputFile& out) { whole.write(out); });
}

} // namespace

void add_merge_command(Program& program) {
    add_command<MergeCommand>(program, "merge", "Put the bodies of several models into one model");
}

namespace {

MergeCommand::MergeCommand(Options options) {
    options.add("MODELS", inputs_, "FILE", "Body model files").required();
    outputs_.add_file(options, "Write the model").required();
    options.footer(
        "Vertices, faces and bodies of the second model are numbered on from those of the\n"
        "first, and so on. Nothing is joined: bodies that touch or overlap keep\n"
        "their own vertices and faces; 'korvel weld' joins those that touch. Colours and\n"
        "parameters of the bodies are kept.\n"
        "\n"
        "Example:\n"
        "  korvel merge box.model ball.model -o both.model");
}

void print_figures(const std::string& name, const kit::Solids& solids) {
    std::printf("%s: %s, %s\n", name.c_str(), counted(solids.size(), "body", "bodies").c_str(),
                model_figures(solids).c_str());
}

} // namespace
} // namespace korvel::command
