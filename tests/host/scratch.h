#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace korvel::test {

/// A directory of its own for each test, gone afterwards.
class Scratch : public testing::Test {
protected:
    Scratch() {
        std::string pattern = (std::filesystem::temp_directory_path() / "korvel-XXXXXX").string();
        directory_ = mkdtemp(pattern.data());
    }
    ~Scratch() override { std::filesystem::remove_all(directory_); }

    std::filesystem::path place(const std::string& name) const { return directory_ / name; }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(place(name), std::ios::binary) << text;
    }

    std::string read(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(place(name), std::ios::binary).rdbuf();
        return text.str();
    }

    int files() const {
        const std::filesystem::directory_iterator entries(directory_);
        return static_cast<int>(std::distance(begin(entries), end(entries)));
    }

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

    std::filesystem::path directory_;
};

} // namespace korvel::test
