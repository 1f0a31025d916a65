#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "apps/command/options.h"
#include "kit/kit.h"

namespace korvel::command {

/// The points that a command looks up: operands, a file, or standard input when neither is given.
class PointInput {
public:
    /// `form` is that of an operand, "X,Y" or "X,Y,Z".
    explicit PointInput(std::string form) : form_(std::move(form)) {}

    void add_options(Options options);

    /// Reads the points. Throws an input error when one does not fit, or when they are to come from
    /// standard input and so is `other`, which is named `operand`.
    void load(const std::string& other, const std::string& operand);

    using Find = std::function<std::optional<int>(const double* coordinates)>;

    /// Prints for each point what `find` returns for it, and sets the facts "answers", each with
    /// what is found under the name of `thing`. `find` is called from several threads.
    void answer(const char* thing, const Find& find) const;

private:
    int dimensions() const;
    void check_operands() const;
    std::vector<std::optional<int>> found(const Find& find) const;

    std::string form_;
    std::vector<std::string> operands_;
    std::string file_name_;
    kit::TextFile file_ = {"POINTS", {}};
    kit::PointList points_;
};

} // namespace korvel::command
