#include <string>
#include <utility>
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

class MergeCommand {
public:
    explicit MergeCommand(Options options);
    void run() const;

private:
    std::vector<std::string> inputs_;
    ModelReader reader_;
    Outputs outputs_;
};

void print_figures(const std::string& name, const kit::Solids& solids);

void MergeCommand::run() const {
    outputs_.check();
    std::vector<kit::Solids> parts;
    std::vector<Record> records;
    for (const std::string& input : inputs_) {
        Record record;
        parts.push_back(reader_.read(input, record));
        print_figures(shown(input), parts.back());
        records.push_back(model_record(parts.back(), std::move(record)));
    }
    kit::Solids whole = [&] {
        Task task("merging");
        return kit::merge(std::move(parts), task.context());
    }();
    whole.set_placement(kit::placement_for_file(whole));
    print_figures("together", whole);
    facts().set("inputs", inputs_).set("models", records).set("model", model_record(whole));
    if (outputs_.is_model_file()) {
        warn_of_rounding(whole);
    }
    outputs_.write_model(whole);
}

} // namespace

void add_merge_command(Program& program) {
    add_command<MergeCommand>(program, "merge", "Put the bodies of several models into one model");
}

namespace {

MergeCommand::MergeCommand(Options options) {
    options.add("MODELS", inputs_, "FILE", "Body model files, or meshes").required();
    reader_.add_option(options);
    outputs_.add_model(options);
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
    print("%s: %s, %s", name.c_str(), counted(solids.size(), "body", "bodies").c_str(),
          model_figures(solids).c_str());
}

} // namespace
} // namespace korvel::command
