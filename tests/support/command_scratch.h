#pragma once

#include <gmock/gmock.h>

#include <sys/wait.h>

#include "tests/support/scratch.h"

namespace korvel::test {

inline const std::string data = KORVEL_DATA_DIR "/";

/// A model of one tetrahedron, the corner of a cuboid, with this colour and texture as a file has
/// them.
inline std::string tetrahedron(const std::string& colour = "120 0.5 0.6") {
    return "4\n0 0 0\n6 0 0\n0 6 0\n0 0 6\n4\n0 1 2\n0 1 3\n0 2 3\n1 2 3\n1\n4\n" + colour +
           "\n0 1 2 3\n";
}

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
