#include <string>
#include <utility>
#include <vector>

#include "apps/command/command.h"
#include "apps/command/report.h"
#include "kit/kit.h"

namespace korvel::command {
namespace {

class FormatsCommand {
public:
    explicit FormatsCommand(Options options);
    void run() const;
};

/// A line of the list.
struct ListedFormat {
    std::string name;
    std::string title;
    std::vector<std::string> suffixes = {};
    bool is_written = true;
};

std::vector<ListedFormat> all_formats();
std::string line_of(const ListedFormat& format);

void FormatsCommand::run() const {
    std::vector<Record> records;
    for (const ListedFormat& format : all_formats()) {
        print_answer(line_of(format));
        Record record;
        record.set("name", format.name)
            .set("title", format.title)
            .set("suffixes", format.suffixes)
            .set("written", format.is_written);
        records.push_back(std::move(record));
    }
    facts().set("formats", std::move(records));
    if (const kit::ForeignLibrary& library = kit::foreign_library(); library.formats == nullptr) {
        print("Other formats need GDAL, %s.", library.missing.c_str());
    }
}

} // namespace

void add_formats_command(Program& program) {
    add_command<FormatsCommand>(program, "formats",
                                "List the formats that this build reads and writes");
}

namespace {

FormatsCommand::FormatsCommand(Options options) {
    options.footer(
        "The first ones are korvel's own, which are detected by their contents, whatever the\n"
        "suffix. Meshes and maps of features follow; the name is what --from and --to of\n"
        "'korvel convert' take.");
}

std::vector<ListedFormat> all_formats() {
    std::vector<ListedFormat> formats;
    for (const kit::FileKind kind : kit::file_kinds()) {
        const bool is_written = kind != kit::FileKind::section;
        formats.push_back({.name = kit::kind_word(kind),
                           .title = kit::kind_name(kind),
                           .is_written = is_written});
    }
    for (const kit::MeshFormatInfo& format : kit::mesh_formats()) {
        ListedFormat listed = {.name = format.name, .title = format.title};
        if (!format.suffix.empty()) {
            listed.suffixes.push_back(format.suffix);
        }
        formats.push_back(std::move(listed));
    }
    for (kit::FeatureFormat& format : kit::feature_formats()) {
        formats.push_back({std::move(format.name), std::move(format.title),
                           std::move(format.suffixes), format.can_write});
    }
    return formats;
}

std::string line_of(const ListedFormat& format) {
    constexpr std::size_t name_width = 18;
    std::string line = format.name;
    line.append(line.size() < name_width ? name_width - line.size() : 1, ' ');
    line += format.is_written ? "read, written  " : "read           ";
    line += format.title;
    for (std::size_t i = 0; i < format.suffixes.size(); ++i) {
        line.append(i == 0 ? " (" : ", ").append(format.suffixes[i]);
    }
    return line + (format.suffixes.empty() ? "" : ")");
}

} // namespace
} // namespace korvel::command
