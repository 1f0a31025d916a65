#include "apps/command/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <ostream>

#include "kit/kit.h"

namespace korvel::command {

namespace {

void check_argument(std::string& word, std::size_t number);
void describe(const CLI::App& app, CommandDescription& command);
Description described(const CLI::Option& option);

} // namespace

Program::Program(const std::string& name, const std::string& version, const std::string& purpose)
    : app_(std::make_unique<CLI::App>(purpose, name)) {
    app_->set_version_flag("--version", name + " " + version);
    app_->require_subcommand(0, 1);
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
    std::reverse(arguments.begin(), arguments.end()); // the parser takes them from the end
    try {
        app_->parse(arguments);
        if (app_->get_subcommands().empty()) {
            throw CLI::RequiredError("A command");
        }
    } catch (const CLI::ParseError& error) {
        // Asking for help or for the version ends the parsing too.
        return app_->exit(error, output, errors) == 0;
    }
    return true;
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

void check_argument(std::string& word, std::size_t number) {
    // An empty word would name the parser's groups of options, in which it loses its way.
    if (word.empty()) {
        throw kit::input_error("korvel: argument " + std::to_string(number) + " is empty");
    }
    // The parser takes -1,2 as a value, but -.5,2 as an option.
    const bool lacks_zero = word.size() > 2 && word[0] == '-' && word[1] == '.' &&
                            std::isdigit(static_cast<unsigned char>(word[2])) != 0;
    if (lacks_zero) {
        word.insert(1, "0");
    }
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
    CLI::Option_group* const group = app_->add_option_group(title, "One of:");
    group->require_option(1);
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
    return option_->count() > 0;
}

} // namespace korvel::command
