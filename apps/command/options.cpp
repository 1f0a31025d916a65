#include "apps/command/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <ostream>
#include <utility>

#include "apps/command/closest_word.h"
#include "kit/kit.h"

namespace korvel::command {

namespace {

/// Lists a group of options under its title, like the other options.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_expanded(const CLI::App* group) const override;
};

void check_argument(std::string& word, std::size_t number);
std::string suggestion(const std::string& word, const std::vector<std::string>& words);
bool has_option(const CLI::App& app, const std::string& name);
std::string uncapitalized(std::string text);
void describe(const CLI::App& app, CommandDescription& command);
Description described(const CLI::Option& option);

} // namespace

Program::Program(const std::string& name, const std::string& version, const std::string& purpose)
    : app_(std::make_unique<CLI::App>(purpose, name)) {
    app_->allow_windows_style_options(false); // "/c/data" is a file on every system
    app_->set_version_flag("--version", name + " " + version);
    app_->require_subcommand(0, 1);
    app_->formatter(std::make_shared<HelpFormatter>());
    app_->get_formatter()->label("SUBCOMMAND", "COMMAND");
}

Program::~Program() = default;

Options Program::add_command(const std::string& name, const std::string& purpose) {
    CLI::App* const command = app_->add_subcommand(name, purpose);
    command->group("Commands");
    return Options(command);
}

void Program::add_hidden_option(const std::string& name, const std::vector<std::string>& words,
                                const std::function<void(const std::string& word)>& run) {
    const auto stop_after_run = [run](const std::string& word) {
        run(word);
        throw CLI::Success();
    };
    app_->add_option_function<std::string>(name, stop_after_run)
        ->check(CLI::IsMember(words))
        ->group("");
}

void Program::footer(const std::string& text) {
    app_->footer(text);
}

bool Program::parse(std::vector<std::string> arguments, std::ostream& output, std::ostream& errors,
                    bool run) {
    if (!run) {
        app_->parse_complete_callback([] { throw CLI::Success(); });
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        check_argument(arguments[i], i + 1);
    }
    if (!arguments.empty() && arguments[0] == "help") {
        std::rotate(arguments.begin(), arguments.begin() + 1, arguments.end());
        arguments.back() = "--help";
    }
    const std::string command = arguments.empty() || arguments[0][0] == '-' ? "" : arguments[0];
    std::string problem = command.empty() ? "" : unknown_command(command);
    if (problem.empty()) {
        try {
            std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
            app_->parse(std::move(reversed)); // which takes them from the end
            if (!app_->get_subcommands().empty()) {
                return true;
            }
            problem = "a command is required";
        } catch (const CLI::Success& request) { // for help or for the version
            return app_->exit(request, output, errors) == 0;
        } catch (const CLI::ExtrasError& error) {
            problem = unknown_option(arguments);
            problem = problem.empty() ? uncapitalized(error.what()) : problem;
        } catch (const CLI::ParseError& error) {
            problem = uncapitalized(error.what());
        }
    }
    const std::string name = app_->get_name();
    errors << name << ": " << problem << '\n';
    const bool is_known = !command.empty() && unknown_command(command).empty();
    errors << name << ": '" << name << (is_known ? " " + command : "")
           << (is_known ? " --help' lists the options\n" : " --help' lists the commands\n");
    return false;
}

std::string Program::unknown_command(const std::string& word) const {
    std::vector<std::string> names;
    for (const CommandDescription& command : commands()) {
        if (command.name == word) {
            return {};
        }
        names.push_back(command.name);
    }
    return kit::quoted(word) + " is not a command" + suggestion(word, names);
}

// The first one, if there is one.
std::string Program::unknown_option(const std::vector<std::string>& arguments) const {
    const auto all = commands();
    const auto command = std::find_if(all.begin(), all.end(), [&](const CommandDescription& one) {
        return one.name == arguments[0];
    });
    const bool has_command = command != all.end();
    const CLI::App* const app = has_command ? app_->get_subcommand(arguments[0]) : app_.get();
    std::vector<std::string> names;
    for (const Description& option : (has_command ? *command : all[0]).options) {
        names.insert(names.end(), option.names.begin(), option.names.end());
    }
    for (const std::string& argument : arguments) {
        const std::string word = argument.substr(0, argument.find('='));
        const bool is_option = word.size() > 1 && word[0] == '-' &&
                               std::isdigit(static_cast<unsigned char>(word[1])) == 0;
        if (is_option && !has_option(*app, word)) {
            return kit::quoted(word) + " is not an option" + suggestion(word, names);
        }
    }
    return {};
}

std::vector<CommandDescription> Program::commands() const {
    std::vector<CommandDescription> commands(1);
    describe(*app_, commands[0]);
    const CLI::App& app = *app_;
    for (const CLI::App* const subcommand : app.get_subcommands(nullptr)) {
        CommandDescription& command = commands.emplace_back();
        command.name = subcommand->get_name();
        command.purpose = subcommand->get_description();
        describe(*subcommand, command);
    }
    return commands;
}

namespace {

std::string HelpFormatter::make_expanded(const CLI::App* group) const {
    const auto is_shown = [](const CLI::Option* option) { return !option->get_group().empty(); };
    return make_group(group->get_description(), false, group->get_options(is_shown));
}

void check_argument(std::string& word, std::size_t number) {
    // An empty word would name the parser's groups of options, in which it loses its way.
    if (word.empty()) {
        throw kit::input_error("argument " + std::to_string(number) + " is empty");
    }
    // The parser takes -1,2 as a value, but -.5,2 as an option.
    const bool lacks_zero = word.size() > 2 && word[0] == '-' && word[1] == '.' &&
                            std::isdigit(static_cast<unsigned char>(word[2])) != 0;
    if (lacks_zero) {
        word.insert(1, "0");
    }
}

std::string suggestion(const std::string& word, const std::vector<std::string>& words) {
    const std::string meant = closest_word(word, words);
    return meant.empty() ? "" : "; did you mean '" + meant + "'?";
}

// Also a hidden one, or one of a group.
bool has_option(const CLI::App& app, const std::string& name) {
    if (app.get_option_no_throw(name) != nullptr) {
        return true;
    }
    const auto groups =
        app.get_subcommands([](const CLI::App* group) { return group->get_name().empty(); });
    return std::any_of(groups.begin(), groups.end(),
                       [&](const CLI::App* group) { return has_option(*group, name); });
}

std::string uncapitalized(std::string text) {
    const auto is_upper = [](char c) { return std::isupper(static_cast<unsigned char>(c)) != 0; };
    if (text.size() > 1 && is_upper(text[0]) && !is_upper(text[1])) {
        text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    }
    return text;
}

void describe(const CLI::App& app, CommandDescription& command) {
    for (const CLI::Option* const option : app.get_options()) {
        if (!option->get_group().empty()) {
            (option->get_positional() ? command.operands : command.options)
                .push_back(described(*option));
        }
    }
    const auto is_group = [](const CLI::App* group) { return group->get_name().empty(); };
    for (const CLI::App* const group : app.get_subcommands(is_group)) {
        describe(*group, command);
    }
}

Description described(const CLI::Option& option) {
    Description result;
    for (const std::string& name : option.get_snames()) {
        result.names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        result.names.push_back("--" + name);
    }
    if (option.get_items_expected_max() > 0) {
        result.form = option.get_type_name();
        result.form.erase(std::min(result.form.find(':'), result.form.size())); // a note
    }
    result.purpose = option.get_description();
    result.repeats = option.get_items_expected_max() > 1;
    return result;
}

} // namespace

template <class Value>
Option Options::added(const std::string& name, Value& value, const std::string& form,
                      const std::string& purpose) const {
    return Option(app_->add_option(name, value, purpose)->type_name(form));
}

Option Options::add(const std::string& name, std::string& value, const std::string& form,
                    const std::string& purpose) const {
    return added(name, value, form, purpose);
}

Option Options::add(const std::string& name, int& value, const std::string& form,
                    const std::string& purpose) const {
    return added(name, value, form, purpose);
}

Option Options::add(const std::string& name, double& value, const std::string& form,
                    const std::string& purpose) const {
    return added(name, value, form, purpose);
}

Option Options::add(const std::string& name, std::vector<std::string>& values,
                    const std::string& form, const std::string& purpose) const {
    return added(name, values, form, purpose);
}

Option Options::add(const std::string& name, std::vector<int>& values, const std::string& form,
                    const std::string& purpose) const {
    return added(name, values, form, purpose);
}

void Options::add_flag(const std::string& name, bool& value, const std::string& purpose) const {
    app_->add_flag(name, value, purpose);
}

Options Options::one_of(const std::string& title) const {
    CLI::Option_group* const group = app_->add_option_group(title, title + " (one of)");
    group->require_option(1);
    group->set_help_flag(); // that of the command is enough
    return Options(group);
}

Option Options::option(const std::string& name) const {
    return Option(app_->get_option(name));
}

void Options::footer(const std::string& text) const {
    app_->footer(text);
}

void Options::then(const std::function<void()>& run) const {
    app_->callback(run);
}

Option Option::required() const {
    return Option(option_->required());
}

Option Option::with_default() const {
    return Option(option_->capture_default_str());
}

Option Option::hidden() const {
    return Option(option_->group(""));
}

Option Option::from_to(int least, int most, const std::string& note) const {
    return Option(option_->check(CLI::Range(least, most).description(note)));
}

Option Option::one_of(const std::vector<std::string>& words) const {
    return Option(option_->check(CLI::IsMember(words).description("")));
}

Option Option::repeated() const {
    return Option(option_->allow_extra_args(false));
}

Option Option::excludes(Option other) const {
    return Option(option_->excludes(other.option_));
}

Option Option::needs(Option other) const {
    return Option(option_->needs(other.option_));
}

bool Option::is_given() const {
    return option_ != nullptr && option_->count() > 0;
}

} // namespace korvel::command
