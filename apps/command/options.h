#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace korvel::command {

// What commands use of the library that parses the arguments: its headers take longer to compile
// than a whole command, so options.cpp alone includes them.

/// One option or operand of a command: a handle, which can be copied. What changes it returns it.
class Option {
public:
    Option() = default;
    explicit Option(CLI::Option* option) : option_(option) {}

    Option required() const;

    /// The help shows the value that it has when it is not given.
    Option with_default() const;

    /// The help and the completions leave it out.
    Option hidden() const;

    /// Other numbers are refused. `note` follows the form of the value in the help.
    Option from_to(int least, int most, const std::string& note = "") const;

    /// Other words are refused.
    Option one_of(const std::vector<std::string>& words) const;

    /// It can be given several times, with one value each.
    Option repeated() const;

    Option excludes(Option other) const;
    Option needs(Option other) const;

    /// False for an option that no command has.
    bool is_given() const;

private:
    CLI::Option* option_ = nullptr;
};

/// The options and operands of a command, or a group of them: a handle, which can be copied.
class Options {
public:
    explicit Options(CLI::App* app) : app_(app) {}

    /// Adds an option, "--name" or "-n,--name", or an operand, "NAME". Parsing puts what is given
    /// into `value`; `form` is the value in the help.
    Option add(const std::string& name, std::string& value, const std::string& form,
               const std::string& purpose) const;
    Option add(const std::string& name, int& value, const std::string& form,
               const std::string& purpose) const;
    Option add(const std::string& name, double& value, const std::string& form,
               const std::string& purpose) const;
    Option add(const std::string& name, std::vector<std::string>& values, const std::string& form,
               const std::string& purpose) const;
    Option add(const std::string& name, std::vector<int>& values, const std::string& form,
               const std::string& purpose) const;

    /// Adds an option without a value.
    void add_flag(const std::string& name, bool& value, const std::string& purpose) const;

    /// A group of options, exactly one of which has to be given.
    Options one_of(const std::string& title) const;

    /// An option that has been added.
    Option option(const std::string& name) const;

    /// The text below the options in the help.
    void footer(const std::string& text) const;

    /// What is done once all arguments are parsed.
    void then(const std::function<void()>& run) const;

private:
    template <class Value>
    Option added(const std::string& name, Value& value, const std::string& form,
                 const std::string& purpose) const;

    CLI::App* app_;
};

/// What an option or an operand takes, as the help shows it.
struct Description {
    std::vector<std::string>
        names;        ///< with their hyphens, the short ones first; of an operand none
    std::string form; ///< of the value; empty: there is none
    std::string purpose;
    bool repeats = false; ///< takes several values
};

/// A command, or the program itself, which has no name here.
struct CommandDescription {
    std::string name;
    std::string purpose;
    std::vector<Description> options;
    std::vector<Description> operands;
};

/// A program of commands.
class Program {
public:
    Program(const std::string& name, const std::string& version, const std::string& purpose);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Adds a command, still without options.
    Options add_command(const std::string& name, const std::string& purpose);

    /// Adds an option with one of these words, which the help does not show. With it the program
    /// does nothing but `run`.
    void add_hidden_option(const std::string& name, const std::vector<std::string>& words,
                           const std::function<void(const std::string& word)>& run);

    /// The text below the commands in the help.
    void footer(const std::string& text);

    /// The program itself, then its commands.
    std::vector<CommandDescription> commands() const;

    /// Runs what the arguments, without the program's name, request; `help COMMAND` requests the
    /// help of a command. When they do not fit, prints what is wrong to `errors`, and what may have
    /// been meant, and returns false; throws an input error when one is empty. Without `run` no
    /// command is run.
    bool parse(std::vector<std::string> arguments, std::ostream& output, std::ostream& errors,
               bool run = true);

private:
    std::string unknown_command(const std::string& word) const;
    std::string unknown_option(const std::vector<std::string>& arguments) const;

    std::unique_ptr<CLI::App> app_;
};

} // namespace korvel::command
