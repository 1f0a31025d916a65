#include "apps/command/point_input.h"

#include <algorithm>

#include "apps/command/arguments.h"
#include "apps/command/input.h"
#include "apps/command/report.h"
#include "apps/command/task.h"

namespace korvel::command {

void PointInput::add_options(Options options) {
    const Option operands = options.add("POINTS", operands_, form_, "Points to look up");
    options
        .add("--points", file_name_, "FILE",
             "Look up the points of a file, one in each line;\n"
             "- is standard input, as if no points were given")
        .excludes(operands);
}

void PointInput::load(const std::string& other, const std::string& operand) {
    if (!operands_.empty()) {
        check_operands();
        for (const std::string& point : operands_) {
            file_.text.append(point).append("\n");
        }
    } else {
        const std::string name = file_name_.empty() ? "-" : file_name_;
        if (name == "-" && other == "-") {
            throw kit::input_error("standard input cannot be both " + operand +
                                   " and the points; give points or --points FILE");
        }
        file_ = read_input(name);
    }
    points_ = kit::read_points(file_, dimensions());
}

int PointInput::dimensions() const {
    return static_cast<int>(std::count(form_.begin(), form_.end(), ',')) + 1;
}

void PointInput::check_operands() const {
    for (const std::string& point : operands_) {
        dimensions() == 2 ? static_cast<void>(parse_real_point("POINTS", point))
                          : static_cast<void>(parse_point3("POINTS", point));
    }
}

void PointInput::answer(const char* thing, const Find& find) const {
    const std::vector<std::optional<int>> answers = found(find);
    std::vector<Record> records;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        print_answer(points_.text(i) + " " + (answers[i] ? std::to_string(*answers[i]) : "none"));
        if (is_json()) {
            const auto first =
                points_.coordinates.begin() + static_cast<std::ptrdiff_t>(i) * dimensions();
            records.push_back(Record()
                                  .set("point", std::vector<double>(first, first + dimensions()))
                                  .set(thing, answers[i]));
        }
    }
    facts().set("answers", std::move(records));
}

std::vector<std::optional<int>> PointInput::found(const Find& find) const {
    constexpr std::size_t block = 1024;
    std::vector<std::optional<int>> answers(points_.size());
    const auto width = static_cast<std::size_t>(dimensions());
    Task task("looking up points");
    kit::for_each_in_parallel(
        static_cast<int>((answers.size() + block - 1) / block), 0,
        [&](int which) {
            const std::size_t first = static_cast<std::size_t>(which) * block;
            for (std::size_t i = first; i < std::min(first + block, answers.size()); ++i) {
                answers[i] = find(points_.coordinates.data() + i * width);
            }
        },
        "looking up points", task.context());
    return answers;
}

} // namespace korvel::command
