#pragma once

#include <string>
#include <vector>

namespace korvel::test {

/// An OpenGL call with its numbers.
struct GlCall {
    std::string name;
    std::vector<double> numbers;

    bool operator==(const GlCall&) const = default;
};
using GlCalls = std::vector<GlCall>;

void PrintTo(const GlCall& call, std::ostream* out);

/// The calls since the last time. Nothing is drawn: the recorder defines OpenGL's names itself.
GlCalls take_gl_calls();

} // namespace korvel::test
