#pragma once

#include <gmock/gmock.h>

#include <sys/wait.h>

#include "tests/support/scratch.h"

namespace korvel::test {

/// Runs the command in a directory of its own.
class CommandScratch : public Scratch {
protected:
    struct Result {
        int status;
        std::string out;
        std::string err;
    };

    /// Runs the command in the scratch directory. Nothing in the arguments may need quoting.
    /// Standard output goes to `out`, if given, instead of the result. `before` is what the shell
    /// does first, such as "ulimit -f 8; ".
    Result run(const std::string& arguments, std::string out = {},
               const std::string& before = {}) const {
        const std::filesystem::path reports = directory_.string() + "-reports";
        std::filesystem::create_directory(reports);
        const std::string err = (reports / "err").string();
        const bool is_caught = out.empty();
        out = is_caught ? (reports / "out").string() : out;
        const std::string line = "cd " + directory_.string() + " && " + before +
                                 KORVEL_COMMAND " " + arguments + " >" + out + " 2>" + err;
        const int ended = std::system(line.c_str());
        Result result = {WIFEXITED(ended) ? WEXITSTATUS(ended) : -1,
                         is_caught ? read(out) : std::string(), read(err)};
        std::filesystem::remove_all(reports);
        return result;
    }
};

} // namespace korvel::test
