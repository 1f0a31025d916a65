#include <algorithm>
#include <string>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/outputs.h"
#include "apps/command/task.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class CheckCommand {
public:
    explicit CheckCommand(Options options);
    void run() const;

private:
    kit::FileKind kind(const kit::TextFile& file) const;
    void check(const kit::TextFile& file, kit::FileKind kind) const;
    void fix(const kit::TextFile& file, kit::FileKind kind) const;
    void check_features() const;

    std::string input_;
    std::string kind_;
    bool is_fixed_ = false;
    Outputs outputs_;
};

void report_findings(const kit::TextFile& file, const kit::Findings& findings);
std::vector<Record> records_of(const std::vector<kit::Finding>& findings);
[[noreturn]] void fail(const kit::TextFile& file, kit::FileKind kind, std::size_t problems,
                       const char* how);

void CheckCommand::run() const {
    if (is_fixed_ != outputs_.has_file()) {
        throw kit::input_error(is_fixed_ ? "--fix needs --output" : "--output needs --fix");
    }
    outputs_.check();
    if (kind_.empty() && holds_features(input_)) {
        check_features();
        return;
    }
    const kit::TextFile file = read_input(input_);
    const kit::FileKind kind = this->kind(file);
    facts().set("input", file.name).set("kind", kit::kind_word(kind));
    is_fixed_ ? fix(file, kind) : check(file, kind);
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
    options.add_flag("--fix", is_fixed_,
                     "Repair curves, regions or a model as far as possible, and write\n"
                     "the result unless problems remain");
    outputs_.add_file(options, "Write the repaired file");
    options.footer("One line for each problem, with file, line and value; notes are not problems.\n"
                   "With --fix one line for each kind of repair, and what remains.\n"
                   "Exit status: 0 nothing wrong or all repaired, 2 something wrong.\n"
                   "\n"
                   "Examples:\n"
                   "  korvel check states.model\n"
                   "  korvel check scan.model --fix -o clean.model");
}

kit::FileKind CheckCommand::kind(const kit::TextFile& file) const {
    for (const kit::FileKind kind : kit::file_kinds()) {
        if (kind_ == kit::kind_word(kind)) {
            return kind;
        }
    }
    return kit::kind_of(file);
}

void CheckCommand::check(const kit::TextFile& file, kit::FileKind kind) const {
    const kit::Findings findings = [&] {
        const Task task("checking " + file.name);
        return kit::check_file(file, kind);
    }();
    report_findings(file, findings);
    if (!findings.problems.empty()) {
        fail(file, kind, findings.problems.size(), "");
    }
    print("%s: %s, nothing wrong", file.name.c_str(), kit::kind_name(kind));
}

void CheckCommand::fix(const kit::TextFile& file, kit::FileKind kind) const {
    if (!kit::is_repairable(kind)) {
        throw kit::input_error(file.name + ": a " + kit::kind_name(kind) +
                               ", --fix repairs curves, regions and models");
    }
    const kit::RepairedFile repaired = [&] {
        const Task task("repairing " + file.name);
        return kit::repair_file(file, kind);
    }();
    std::vector<Record> repairs;
    for (const kit::Repair& repair : repaired.repairs) {
        print("%s: %s: %d", file.name.c_str(), repair.what.c_str(), repair.count);
        repairs.push_back(Record().set("what", repair.what).set("count", repair.count));
    }
    facts().set("repairs", std::move(repairs));
    report_findings(file, repaired.remaining);
    if (!repaired.is_sound()) {
        fail(file, kind, repaired.remaining.problems.size(), " that cannot be repaired");
    }
    print("%s: %s, %s", file.name.c_str(), kit::kind_name(kind),
          repaired.repairs.empty() ? "nothing to repair" : "repaired");
    outputs_.write([&](kit::OutputFile& out) { repaired.write(out); });
}

// What is wrong is the error of reading them.
void CheckCommand::check_features() const {
    if (is_fixed_) {
        throw kit::input_error(shown(input_) +
                               ": features, --fix repairs curves, regions and models");
    }
    facts().set("input", shown(input_)).set("kind", "features");
    Task task("checking " + shown(input_));
    read_features(input_, {}, task.context());
    print("%s: features, nothing wrong", shown(input_).c_str());
    facts().set("problems", std::vector<Record>()).set("notes", std::vector<Record>());
}

void report_findings(const kit::TextFile& file, const kit::Findings& findings) {
    for (const kit::Finding& problem : findings.problems) {
        print("%s:%d: %s", file.name.c_str(), problem.line, problem.message.c_str());
    }
    for (const kit::Finding& note : findings.notes) {
        print("%s:%d: note: %s", file.name.c_str(), note.line, note.message.c_str());
    }
    facts().set("problems", records_of(findings.problems)).set("notes", records_of(findings.notes));
}

std::vector<Record> records_of(const std::vector<kit::Finding>& findings) {
    std::vector<Record> records;
    records.reserve(findings.size());
    for (const kit::Finding& finding : findings) {
        records.push_back(Record().set("line", finding.line).set("message", finding.message));
    }
    return records;
}

void fail(const kit::TextFile& file, kit::FileKind kind, std::size_t problems, const char* how) {
    throw kit::input_error(file.name + ": " + kit::kind_name(kind) + " with " +
                               counted(static_cast<int>(problems), "problem") + how,
                           {.file = file.name});
}

} // namespace
} // namespace korvel::command
