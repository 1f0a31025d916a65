// Standard input and output as files, with descriptors of POSIX.

#include <csignal>
#include <cstdio>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "kit/base/error.h"
#include "kit/files/curve_file.h"
#include "kit/files/output_file.h"
#include "kit/files/text_file.h"
#include "tests/support/scratch.h"

namespace korvel::test {
namespace {

class StandardStreams : public Scratch {
protected:
    // Calls `work` while a descriptor is another file.
    static void redirect(int which, int other, const auto& work) {
        std::fflush(nullptr); // what was printed before goes where it was to go
        const int before = dup(which);
        dup2(other, which);
        close(other);
        work();
        dup2(before, which);
        close(before);
    }
};

TEST_F(StandardStreams, AreAnOutputThatStaysOpen) {
    const int file = open(path("out").c_str(), O_CREAT | O_WRONLY, 0600);
    redirect(STDOUT_FILENO, file, [] {
        std::printf("report\n");
        {
            kit::OutputFile out(kit::standard_output);
            std::fprintf(out.stream(), "file\n");
            out.replace();
        }
        std::printf("more\n");
        std::fflush(stdout);
    });
    EXPECT_EQ(read("out"), "report\nfile\nmore\n");
}

TEST_F(StandardStreams, DistinguishAClosedPipe) {
    const auto former = std::signal(SIGPIPE, SIG_IGN);
    for (const std::size_t size : {std::size_t{1}, std::size_t{1} << 20}) { // buffered, or not
        for (const bool is_pipe : {true, false}) {
            int ends[2] = {-1, open("/dev/full", O_WRONLY)};
            if (is_pipe) {
                close(ends[1]);
                ASSERT_EQ(pipe(ends), 0);
                close(ends[0]);
            }
            redirect(STDOUT_FILENO, ends[1], [&] {
                kit::OutputFile out(kit::standard_output);
                std::fputs(std::string(size, 'x').c_str(), out.stream());
                try {
                    out.close();
                    ADD_FAILURE() << "no error";
                } catch (const kit::Error& error) {
                    EXPECT_EQ(error.is_closed_pipe(), is_pipe) << size;
                    EXPECT_TRUE(std::string(error.what())
                                    .starts_with("standard output: cannot be written: "));
                }
                std::clearerr(stdout);
            });
        }
    }
    std::signal(SIGPIPE, former);
}

TEST_F(StandardStreams, AreAnInput) {
    write("in", "1\n1\n0 x\n");
    redirect(STDIN_FILENO, open(path("in").c_str(), O_RDONLY), [] {
        try {
            kit::read_curves(kit::TextFile::standard_input());
            ADD_FAILURE() << "no error";
        } catch (const kit::Error& error) {
            EXPECT_STREQ(error.what(),
                         "standard input:3: 'x' is not a number: expected the y of a point");
        }
    });
    std::clearerr(stdin);
}

} // namespace
} // namespace korvel::test
