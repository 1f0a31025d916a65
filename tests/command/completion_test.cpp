#include <cstdlib>
#include <string>

#include "tests/support/command_scratch.h"

namespace korvel::test {
namespace {

class Completion : public CommandScratch {
protected:
    /// What a shell's script prints, error messages included.
    std::string output_of(const std::string& shell, const std::string& script) {
        write("script", script);
        const std::string line =
            "cd " + directory_.string() + " && " + shell + " script > replies 2>&1";
        EXPECT_EQ(std::system(line.c_str()), 0) << read("replies");
        return read("replies");
    }
};

bool is_installed(const std::string& shell) {
    return std::system(("command -v " + shell + " > /dev/null").c_str()) == 0;
}

TEST_F(Completion, OfBashRepliesWithCommandsOptionsWordsAndFiles) {
    write("completion", run("--completion bash").out);
    write("states.curves", "");
    // Each line is one command line; its last word is completed.
    EXPECT_EQ(output_of("bash", R"(
        source ./completion
        complete_words() {
            COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
            _korvel
            echo "${COMPREPLY[*]}"
        }
        complete_words korvel se
        complete_words korvel --v
        complete_words korvel regions --s
        complete_words korvel regions sta
        complete_words korvel regions --select st
        complete_words korvel regions states.curves -o sta
        complete_words korvel regions --output = sta
        complete_words korvel move --vert
        complete_words korvel help se
        complete_words korvel starter ''
        complete_words korvel solid --fill d
        complete -p korvel
    )"),
              "section\n"
              "--version\n"
              "--select --seed --size --stretch\n"
              "states.curves\n"
              "\n"
              "states.curves\n"
              "states.curves\n"
              "--vertex\n"
              "section\n"
              "cube ball\n"
              "delaunay\n"
              "complete -o filenames -F _korvel korvel\n");
}

TEST_F(Completion, OfFishRepliesWithCommandsOptionsAndWords) {
    if (!is_installed("fish")) {
        GTEST_SKIP() << "fish is not installed";
    }
    write("completion", run("--completion fish").out);
    EXPECT_EQ(output_of("HOME=$PWD fish --no-config", R"(
        source ./completion
        complete -C 'korvel se' | string replace -r '\t.*' ''
        complete -C 'korvel starter c' | string replace -r '\t.*' ''
        complete -C 'korvel move --vert' | string replace -r '\t.*' ''
        complete -C 'korvel solid --fill d' | string replace -r '\t.*' ''
    )"),
              "section\ncube\n--vertex\ndelaunay\n");
}

TEST_F(Completion, OfZshIsSoundAndListsEveryCommand) {
    const std::string script = run("--completion zsh").out;
    EXPECT_THAT(script, testing::StartsWith("#compdef korvel\n"));
    for (const char* const line :
         {"        'section:Cut a model by a plane'\n", "        section) _arguments ",
          "'(-o --output)--output[", ":FILE:_files'", ":cube|ball:(cube ball)'"}) {
        EXPECT_THAT(script, testing::HasSubstr(line));
    }
    if (is_installed("zsh")) {
        write("completion", script);
        EXPECT_EQ(output_of("zsh -f", "zsh -n ./completion"), "");
    }
}

TEST_F(Completion, OfAnotherShellIsAnError) {
    EXPECT_EQ(run("--completion tcsh").status, 2);
    EXPECT_EQ(run("--help").out.find("--completion"), std::string::npos);
}

} // namespace
} // namespace korvel::test
