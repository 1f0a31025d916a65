#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/input.h"
#include "apps/command/messages.h"
#include "apps/command/model_input.h"
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
    /// What the file is, as messages name it, and what is wrong with it.
    struct Checked {
        std::string kind;
        kit::Findings findings;
    };

    /// What the file is, what was repaired, what remains, and how the result is written.
    struct Fixed {
        std::string kind;
        std::vector<kit::Repair> repairs;
        kit::Findings remaining;
        std::function<void()> write;
    };

    kit::FileKind kind(const kit::TextFile& file) const;
    Checked check() const;
    Fixed fix() const;
    void report(const Checked& checked) const;
    void report(const Fixed& fixed) const;
    void report_findings(const kit::Findings& findings) const;
    [[noreturn]] void fail(const std::string& kind, std::size_t problems, const char* how) const;
    bool is_mesh() const { return kind_.empty() && holds_mesh(input_); }
    bool is_features() const { return kind_.empty() && holds_features(input_); }

    std::string input_;
    std::string kind_;
    bool is_fixed_ = false;
    ModelReader reader_;
    Outputs outputs_;
};

std::vector<Record> records_of(const std::vector<kit::Finding>& findings);

void CheckCommand::run() const {
    if (is_fixed_ != outputs_.has_file()) {
        throw kit::input_error(is_fixed_ ? "--fix needs --output" : "--output needs --fix");
    }
    reader_.check(is_mesh());
    outputs_.check();
    facts().set("input", shown(input_));
    if (is_fixed_) {
        report(fix());
    } else {
        report(check());
    }
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
                     "Repair curves, regions, a model or a mesh as far as possible, and write\n"
                     "the result unless problems remain");
    reader_.add_option(options);
    outputs_.add_file(options, "Write the repaired file; of a mesh .stl, .ply, … or a model",
                      Outputs::Formats::meshes);
    options.footer("One line for each problem, with file, line and value; notes are not problems.\n"
                   "With --fix one line for each kind of repair, and what remains.\n"
                   "Exit status: 0 nothing wrong or all repaired, 2 something wrong.\n"
                   "\n"
                   "Examples:\n"
                   "  korvel check states.model\n"
                   "  korvel check scan.model --fix -o clean.model\n"
                   "  korvel check scan.stl --fix -o clean.stl");
}

kit::FileKind CheckCommand::kind(const kit::TextFile& file) const {
    for (const kit::FileKind kind : kit::file_kinds()) {
        if (kind_ == kit::kind_word(kind)) {
            return kind;
        }
    }
    return kit::kind_of(file);
}

// What is wrong with features is the error of reading them.
CheckCommand::Checked CheckCommand::check() const {
    Task task("checking " + shown(input_));
    if (is_mesh()) {
        facts().set("kind", "mesh");
        return {"mesh", kit::check_mesh(read_mesh(input_, {}, task.context()), reader_.options())};
    }
    if (is_features()) {
        facts().set("kind", "features");
        read_features(input_, {}, task.context());
        return {"features", {}};
    }
    const kit::TextFile file = read_input(input_);
    const kit::FileKind kind = this->kind(file);
    facts().set("kind", kit::kind_word(kind));
    return {kit::kind_name(kind), kit::check_file(file, kind)};
}

CheckCommand::Fixed CheckCommand::fix() const {
    Task task("repairing " + shown(input_));
    if (is_mesh()) {
        facts().set("kind", "mesh");
        kit::RepairedMesh mesh = kit::repair_mesh(read_mesh(input_, {}, task.context()),
                                                  reader_.options(), task.context());
        const auto solids = std::make_shared<kit::Solids>(std::move(mesh.solids));
        return {"mesh", std::move(mesh.repairs), std::move(mesh.remaining),
                [this, solids] { outputs_.write_model(*solids); }};
    }
    if (is_features()) {
        throw kit::input_error(shown(input_) +
                               ": features, --fix repairs curves, regions, models and meshes");
    }
    const kit::TextFile file = read_input(input_);
    const kit::FileKind kind = this->kind(file);
    facts().set("kind", kit::kind_word(kind));
    if (!kit::is_repairable(kind)) {
        throw kit::input_error(file.name + ": a " + kit::kind_name(kind) +
                               ", --fix repairs curves, regions, models and meshes");
    }
    const auto repaired = std::make_shared<kit::RepairedFile>(kit::repair_file(file, kind));
    return {kit::kind_name(kind), repaired->repairs, repaired->remaining, [this, repaired] {
                outputs_.write([&](kit::OutputFile& out) { repaired->write(out); });
            }};
}

void CheckCommand::report(const Checked& checked) const {
    report_findings(checked.findings);
    if (!checked.findings.problems.empty()) {
        fail(checked.kind, checked.findings.problems.size(), "");
    }
    print("%s: %s, nothing wrong", shown(input_).c_str(), checked.kind.c_str());
}

void CheckCommand::report(const Fixed& fixed) const {
    std::vector<Record> repairs;
    for (const kit::Repair& repair : fixed.repairs) {
        print("%s: %s: %d", shown(input_).c_str(), repair.what.c_str(), repair.count);
        repairs.push_back(Record().set("what", repair.what).set("count", repair.count));
    }
    facts().set("repairs", std::move(repairs));
    report_findings(fixed.remaining);
    if (!fixed.remaining.problems.empty()) {
        fail(fixed.kind, fixed.remaining.problems.size(), " that cannot be repaired");
    }
    print("%s: %s, %s", shown(input_).c_str(), fixed.kind.c_str(),
          fixed.repairs.empty() ? "nothing to repair" : "repaired");
    fixed.write();
}

// The findings in a mesh have no lines.
void CheckCommand::report_findings(const kit::Findings& findings) const {
    const auto place = [&](const kit::Finding& finding) {
        return finding.line > 0 ? shown(input_) + ":" + std::to_string(finding.line)
                                : shown(input_);
    };
    for (const kit::Finding& problem : findings.problems) {
        print("%s: %s", place(problem).c_str(), problem.message.c_str());
    }
    for (const kit::Finding& note : findings.notes) {
        print("%s: note: %s", place(note).c_str(), note.message.c_str());
    }
    facts().set("problems", records_of(findings.problems)).set("notes", records_of(findings.notes));
}

std::vector<Record> records_of(const std::vector<kit::Finding>& findings) {
    std::vector<Record> records;
    records.reserve(findings.size());
    for (const kit::Finding& finding : findings) {
        Record record;
        if (finding.line > 0) {
            record.set("line", finding.line);
        }
        records.push_back(record.set("message", finding.message));
    }
    return records;
}

void CheckCommand::fail(const std::string& kind, std::size_t problems, const char* how) const {
    throw kit::input_error(shown(input_) + ": " + kind + " with " +
                               counted(static_cast<int>(problems), "problem") + how,
                           {.file = shown(input_)});
}

} // namespace
} // namespace korvel::command
