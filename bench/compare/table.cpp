#include "bench/compare/table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace korvel::bench {
namespace {

using Cells = std::array<std::string, 9>;

constexpr std::array<int, 9> widths = {-16, -17, 9, 9, -20, 6, 6, -14, -34};

void print_row(const Cells& cells);
void print_rule();
std::string grouped(int number);
std::string duration(double seconds);
std::string rounded(double value);
std::string findings(const Row& row);

} // namespace

Table::Table() {
    print_row({"job", "input", "size", "korvel", "peer", "ratio", "growth", "goal", "found"});
    print_rule();
}

void Table::add(const Row& row) {
    Cells cells;
    cells[0] = row.job;
    cells[1] = row.input;
    cells[2] = grouped(row.size);
    cells[3] = (row.finished ? "" : "> ") + duration(row.seconds);
    if (!row.peer.empty()) {
        const double ratio = row.seconds / row.peer_seconds;
        cells[4] = row.peer + " " + duration(row.peer_seconds);
        cells[5] = rounded(ratio);
        if (row.goal) {
            cells[7] = rounded(*row.goal) + " " + verdict(row.finished && ratio <= *row.goal);
        }
    }
    if (row.growth) {
        cells[6] = rounded(*row.growth);
    }
    if (row.doubling_goal) {
        const bool is_met =
            row.finished && row.growth && std::exp2(*row.growth) <= *row.doubling_goal;
        cells[7] = "x " + rounded(*row.doubling_goal) + " " + verdict(is_met);
    }
    cells[8] = findings(row);
    print_row(cells);
}

void Table::add_measure(const std::string& job, const std::string& input, int size, double value,
                        const std::string& unit, double goal) {
    print_row({job, input, grouped(size), rounded(value), "", "", "",
               rounded(goal) + " " + verdict(value <= goal), unit});
}

void Table::print_summary() const {
    std::printf("\n%d of %d goals are met\n", met_, goals_);
}

std::string Table::verdict(bool is_met) {
    ++goals_;
    met_ += is_met ? 1 : 0;
    return is_met ? "met" : "MISSED";
}

namespace {

/// A negative width aligns left. Widths count bytes, so cells are ASCII only.
void print_row(const Cells& cells) {
    for (std::size_t k = 0; k < cells.size(); ++k) {
        std::printf("| %*s ", widths[k], cells[k].c_str());
    }
    std::printf("|\n");
    std::fflush(stdout);
}

void print_rule() {
    for (const int width : widths) {
        std::printf("|%s%s",
                    std::string(static_cast<std::size_t>(std::abs(width)) + 1, '-').c_str(),
                    width > 0 ? ":" : "-");
    }
    std::printf("|\n");
}

/// To three significant digits.
std::string rounded(double value) {
    char text[32];
    const int digits_before = value < 1 ? 1 : static_cast<int>(std::log10(value)) + 1;
    std::snprintf(text, sizeof text, "%.*f", std::max(0, 3 - digits_before), value);
    return text;
}

std::string duration(double seconds) {
    if (seconds < 1e-3) {
        return rounded(seconds * 1e6) + " us";
    }
    return seconds < 1 ? rounded(seconds * 1e3) + " ms" : rounded(seconds) + " s";
}

std::string grouped(int number) {
    std::string text = std::to_string(number);
    for (int k = static_cast<int>(text.size()) - 3; k > 0; k -= 3) {
        text.insert(static_cast<std::size_t>(k), 1, ',');
    }
    return text;
}

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.8g", value);
    return text;
}

/// The tolerance covers sums in different orders and korvel's single precision for vertices read.
bool are_same(double a, double b) {
    return std::abs(a - b) <= 1e-7 * std::abs(a);
}

std::string findings(const Row& row) {
    const std::string ours = number(row.found);
    const bool both = row.peer.empty() || are_same(row.found, row.peer_found);
    return (both ? ours : ours + " / " + number(row.peer_found)) + " " + row.found_name;
}

} // namespace
} // namespace korvel::bench
