// Faults of an output: full devices, limits, closed pipes, signals.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstring>
#include <functional>
#include <numbers>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/command_scratch.h"

namespace korvel::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class Faults : public CommandScratch {
protected:
    void SetUp() override {
        write("out", "former");
        write("p.svg", "former picture");
        std::filesystem::create_directory(path("t"));
        write("t/trg.dat", "former trace");
        write("disc", disc(100));
        write("coin", disc(16));
        ASSERT_EQ(run("starter ball --size 50 --rounds 1 -o ball").status, 0);
        files_before_ = files();
    }

    // A region file below the limit on sizes that the tests set, with results above it.
    static std::string disc(int corners) {
        std::ostringstream text;
        text << std::fixed << corners << '\n';
        for (int i = 0; i < corners; ++i) {
            const double angle = 2 * std::numbers::pi * i / corners;
            text << 12.3 * std::cos(angle) << ' ' << 12.3 * std::sin(angle) << '\n';
        }
        text << "1\n" << corners << '\n';
        for (int i = 0; i < corners; ++i) {
            text << i << ' ';
        }
        text << "\n1\n1\n0\n";
        return text.str();
    }

    // Nothing was replaced and nothing was left behind.
    void expect_untouched(const std::string& what) const {
        EXPECT_EQ(read("out"), "former") << what;
        EXPECT_EQ(read("p.svg"), "former picture") << what;
        EXPECT_EQ(files(), files_before_) << what;
        EXPECT_EQ(read("t/trg.dat"), "former trace") << what;
        EXPECT_EQ(entries("t"), 1) << what;
    }

    int entries(const std::string& directory) const {
        const std::filesystem::directory_iterator all(path(directory));
        return static_cast<int>(std::distance(begin(all), end(all)));
    }

    int files_before_ = 0;
};

// Each writes more than the eight half-kilobytes of the limit below; OUT is replaced by the target.
const std::vector<std::string> writing_commands = {
    "regions " + data + "us-states.curves -o OUT",
    "regions " + data + "us-states.curves --picture OUT.svg",
    "triangles disc -o OUT",
    "triangles disc --picture OUT.svg",
    "solid disc --levels 0,3 -o OUT",
    "starter ball --size 1 --rounds 4 -o OUT",
    "section ball --x 1 --picture OUT.png",
    "merge ball ball -o OUT",
    "view ball --edges --picture OUT.png",
};

// Below the limit, as their input must be.
const std::vector<std::string> commands_that_write_little = {
    "clean ball -o OUT",
    "move ball --body 0 --by 1,2 -o OUT",
};

std::string with_target(std::string command, const std::string& target) {
    return command.replace(command.find("OUT"), std::strlen("OUT"), target);
}

TEST_F(Faults, AFileLimitIsAnErrorLikeAnyOther) {
    for (const std::string& command : writing_commands) {
        const Result result = run(with_target(command, "./out"), {}, "ulimit -f 8; ");
        EXPECT_EQ(result.status, 1) << command;
        EXPECT_THAT(result.err, HasSubstr("cannot be written: File too large")) << command;
        expect_untouched(command);
    }
    EXPECT_EQ(run("section ball --x 1 --picture ./p.svg", {}, "ulimit -f 8; ").status, 1);
    expect_untouched("a picture over a former one");
}

TEST_F(Faults, ATraceFileIsWrittenWholeOrNotAtAll) {
    const Result result = run("triangles coin --trace t -o out", {}, "ulimit -f 8; ");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "korvel: t: cannot be written: the traces are not complete\n");
    expect_untouched("a trace that was cut off");

    EXPECT_EQ(run("triangles coin --trace t -o /dev/full").status, 1);
    expect_untouched("another output that cannot be written");

    EXPECT_EQ(run("triangles coin --trace disc -o out").err,
              "korvel: disc: cannot be written: Not a directory\n");
    expect_untouched("a file where the directory should be");

    ASSERT_EQ(run("triangles coin --trace t").status, 0);
    EXPECT_THAT(read("t/trg.dat"), StartsWith("side=0 p=0 1\n"));
    EXPECT_THAT(read("t/wwwtrg.dat"), StartsWith("points=16\n"));
    EXPECT_EQ(entries("t"), 2);
}

TEST_F(Faults, AFullDeviceIsAnError) {
    std::vector<std::string> commands = writing_commands;
    commands.insert(commands.end(), commands_that_write_little.begin(),
                    commands_that_write_little.end());
    for (const std::string& command : commands) {
        if (command.ends_with("OUT")) {
            const Result result = run(with_target(command, "/dev/full"));
            EXPECT_EQ(result.status, 1) << command;
            EXPECT_THAT(result.err, HasSubstr("/dev/full: cannot be written: No space left"))
                << command;
            expect_untouched(command);
        }
    }
    for (const char* command : {"info disc", "locate disc 1,1", "check ball", "--version"}) {
        const Result result = run(command, "/dev/full");
        EXPECT_EQ(result.status, 1) << command;
        EXPECT_EQ(result.err,
                  "korvel: standard output: cannot be written: No space left on device\n");
    }
}

TEST_F(Faults, AClosedPipeEndsQuietly) {
    constexpr int closed_pipe = 9; // the shell takes one digit
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    ASSERT_EQ(dup2(ends[1], closed_pipe), closed_pipe);
    close(ends[0]);
    close(ends[1]);
    std::vector<std::string> commands = writing_commands;
    commands.insert(commands.end(), commands_that_write_little.begin(),
                    commands_that_write_little.end());
    for (const std::string& command : commands) {
        if (command.ends_with("OUT")) {
            const Result result = run(with_target(command, "/dev/fd/9"));
            EXPECT_EQ(result.status, 1) << command;
            EXPECT_EQ(result.err, "") << command;
            expect_untouched(command);
        }
    }
    std::string points;
    for (int i = 0; i < 2000; ++i) {
        points += " 1,1";
    }
    // Less and more than the stream's buffer holds.
    for (const std::string& command : {std::string("info disc"), "locate disc" + points}) {
        const Result result = run(command, "&9");
        EXPECT_EQ(result.status, 1) << command;
        EXPECT_EQ(result.err, "") << command;
    }
    close(closed_pipe);
}

/// A command that has written a trace and one output and waits, before the other one, for the
/// reader of a pipe.
class Waiting {
public:
    Waiting(const std::filesystem::path& directory, const std::function<void()>& prepare)
        : child_(fork()) {
        if (child_ == 0) {
            prepare();
            const int nowhere = open("/dev/null", O_RDWR);
            dup2(nowhere, STDOUT_FILENO);
            dup2(nowhere, STDERR_FILENO);
            if (chdir(directory.c_str()) == 0) {
                execl(KORVEL_COMMAND, KORVEL_COMMAND, "triangles", "coin", "--trace", "t", "-o",
                      "out", "--picture", "pipe.svg", nullptr);
            }
            _exit(127);
        }
        for (int tries = 0; tries < 3000 && !has_written(directory); ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }

    void send(int signal) const { kill(child_, signal); }
    int wait() const {
        int ended = 0;
        waitpid(child_, &ended, 0);
        return ended;
    }

private:
    static bool has_written(const std::filesystem::path& directory) {
        for (const auto& entry : std::filesystem::directory_iterator(directory)) {
            std::error_code gone;
            if (entry.path().extension() == ".tmp" && entry.file_size(gone) > 0 && !gone) {
                return true;
            }
        }
        return false;
    }

    pid_t child_;
};

TEST_F(Faults, ASignalLeavesNothingBehind) {
    ASSERT_EQ(mkfifo(path("pipe.svg").c_str(), 0600), 0);
    ++files_before_;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const Waiting command(directory_, [&] { std::signal(signal, SIG_DFL); });
        EXPECT_EQ(files(), files_before_ + 1) << "the temporary file";
        EXPECT_EQ(entries("t"), 4) << "two temporary files and a directory";
        command.send(signal);
        const int ended = command.wait();
        EXPECT_TRUE(WIFSIGNALED(ended) && WTERMSIG(ended) == signal) << signal;
        expect_untouched(std::to_string(signal));
    }
}

TEST_F(Faults, ASignalThatIsIgnoredStaysIgnored) {
    ASSERT_EQ(mkfifo(path("pipe.svg").c_str(), 0600), 0);
    const Waiting command(directory_, [] { std::signal(SIGHUP, SIG_IGN); });
    command.send(SIGHUP);
    const int reader = open(path("pipe.svg").c_str(), O_RDONLY | O_NONBLOCK);
    const int ended = command.wait();
    std::string picture(1 << 16, '\0'); // the pipe holds no more
    picture.resize(std::max<ssize_t>(0, ::read(reader, picture.data(), picture.size())));
    close(reader);
    EXPECT_TRUE(WIFEXITED(ended) && WEXITSTATUS(ended) == 0);
    EXPECT_THAT(picture, testing::EndsWith("</svg>\n"));
    EXPECT_THAT(read("out"), testing::Not(StartsWith("former")));
}

} // namespace
} // namespace korvel::test
