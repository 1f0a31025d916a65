#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/report.h"
#include "kit/base/errors.h"
#include "kit/files/file_kind.h"
#include "kit/files/findings.h"

namespace korvel::kit {
namespace {

class CheckCommand {
public:
    explicit CheckCommand(CLI::App& command);
    void run() const;

private:
    FileKind kind(const TextFile& file) const;

    std::string input_;
    std::string kind_;
};

} // namespace

void add_check_command(CLI::App& program) {
    CLI::App* command =
        program.add_subcommand("check", "Tell everything that is wrong with a file");
    command->group("Commands");
    const auto self = std::make_shared<CheckCommand>(*command);
    command->callback([self] { self->run(); });
}

namespace {

CheckCommand::CheckCommand(CLI::App& command) {
    std::vector<std::string> words;
    for (const FileKind kind : file_kinds()) {
        words.emplace_back(kind_word(kind));
    }
    command.add_option("FILE", input_, "Any file that korvel reads or writes")
        ->required()
        ->type_name("FILE");
    command
        .add_option("--kind", kind_,
                    "What the file is meant to be: curves, regions, model,\n"
                    "section, written-section or triangles; found out if not given")
        ->type_name("KIND")
        ->check(CLI::IsMember(words).description(""));
    command.footer("One line for each problem, with file, line and value; notes are no problems.\n"
                   "Exit status: 0 nothing wrong, 2 something wrong.\n"
                   "\n"
                   "Example:\n"
                   "  korvel check states.model");
}

void CheckCommand::run() const {
    const TextFile file(input_);
    const FileKind kind = this->kind(file);
    const Findings findings = check_file(file, kind);
    for (const Finding& problem : findings.problems) {
        std::printf("%s:%d: %s\n", input_.c_str(), problem.line, problem.message.c_str());
    }
    for (const Finding& note : findings.notes) {
        std::printf("%s:%d: note: %s\n", input_.c_str(), note.line, note.message.c_str());
    }
    const int problems = static_cast<int>(findings.problems.size());
    if (problems > 0) {
        std::fflush(stdout);
        throw InputError(input_ + ": " + kind_name(kind) + " with " + counted(problems, "problem"));
    }
    std::printf("%s: %s, nothing wrong\n", input_.c_str(), kind_name(kind));
}

FileKind CheckCommand::kind(const TextFile& file) const {
    for (const FileKind kind : file_kinds()) {
        if (kind_ == kind_word(kind)) {
            return kind;
        }
    }
    return kind_of(file);
}

} // namespace
} // namespace korvel::kit
