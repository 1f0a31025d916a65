#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/report.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class CheckCommand {
public:
    explicit CheckCommand(Options options);
    void run() const;

private:
    kit::FileKind kind(const kit::TextFile& file) const;

    std::string input_;
    std::string kind_;
};

void CheckCommand::run() const {
    const kit::TextFile file(input_);
    const kit::FileKind kind = this->kind(file);
    const kit::Findings findings = kit::check_file(file, kind);
    for (const kit::Finding& problem : findings.problems) {
        print("%s:%d: %s", shown(input_).c_str(), problem.line, problem.message.c_str());
    }
    for (const kit::Finding& note : findings.notes) {
        print("%s:%d: note: %s", shown(input_).c_str(), note.line, note.message.c_str());
    }
    const int problems = static_cast<int>(findings.problems.size());
    if (problems > 0) {
        throw kit::input_error(shown(input_) + ": " + kit::kind_name(kind) + " with " +
                               counted(problems, "problem"));
    }
    print("%s: %s, nothing wrong", shown(input_).c_str(), kit::kind_name(kind));
}

} // namespace

void add_check_command(Program& program) {
    add_command<CheckCommand>(program, "check", "Report everything that is wrong with a file");
}

namespace {

CheckCommand::CheckCommand(Options options) {
    std::vector<std::string> words;
    for (const kit::FileKind kind : kit::file_kinds()) {
        words.emplace_back(kit::kind_word(kind));
    }
    options.add("FILE", input_, "FILE", "Any file that korvel reads or writes").required();
    options
        .add("--kind", kind_, "KIND",
             "The expected kind: curves, regions, model,\n"
             "section, written-section or triangles; detected if not given")
        .one_of(words);
    options.footer("One line for each problem, with file, line and value; notes are not problems.\n"
                   "Exit status: 0 nothing wrong, 2 something wrong.\n"
                   "\n"
                   "Example:\n"
                   "  korvel check states.model");
}

kit::FileKind CheckCommand::kind(const kit::TextFile& file) const {
    for (const kit::FileKind kind : kit::file_kinds()) {
        if (kind_ == kit::kind_word(kind)) {
            return kind;
        }
    }
    return kit::kind_of(file);
}

} // namespace
} // namespace korvel::command
