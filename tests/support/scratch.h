#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

namespace korvel::test {

/// All of a file, byte by byte.
inline std::string contents(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

/// A text file that the library wrote by itself, with the line ends of the system as "\n".
inline std::string lines_of(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

/// A temporary directory for each test, removed afterwards.
class Scratch : public testing::Test {
protected:
    Scratch() {
        std::random_device number;
        do {
            directory_ =
                std::filesystem::temp_directory_path() / ("korvel-" + std::to_string(number()));
        } while (!std::filesystem::create_directory(directory_));
    }
    ~Scratch() override { std::filesystem::remove_all(directory_); }

    std::filesystem::path path(const std::string& name) const { return directory_ / name; }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name), std::ios::binary) << text;
    }

    std::string read(const std::string& name) const { return contents(path(name)); }

    int files() const {
        const std::filesystem::directory_iterator entries(directory_);
        return static_cast<int>(std::distance(begin(entries), end(entries)));
    }

    std::filesystem::path directory_;
};

/// The same, as the current directory.
class ScratchAsCurrent : public Scratch {
protected:
    ScratchAsCurrent() { std::filesystem::current_path(directory_); }
    ~ScratchAsCurrent() override { std::filesystem::current_path(before_); }

private:
    std::filesystem::path before_ = std::filesystem::current_path();
};

} // namespace korvel::test
