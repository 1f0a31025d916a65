#include "apps/command/completion.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <vector>

namespace korvel::command {
namespace {

/// What completes a value. The name of its type decides: FILE, DIR, or words as in "cube|ball".
struct Value {
    std::string type; ///< empty: there is no value
    bool is_file = false;
    bool is_directory = false;
    std::vector<std::string> words;
};

struct Option {
    std::vector<std::string> names; ///< with their hyphens, the short ones first
    std::string purpose;
    Value value;
    bool repeats = false;
};

struct Command {
    std::string name; ///< empty: the program itself
    std::string purpose;
    std::vector<Option> options;
    std::vector<Value> operands;
};

std::vector<Command> commands_of(const CLI::App& program);
std::string bash_script(const std::vector<Command>& commands);
std::string zsh_script(const std::vector<Command>& commands);
std::string fish_script(const std::vector<Command>& commands);

} // namespace

void add_completion_option(CLI::App& program) {
    program
        .add_option_function<std::string>(
            "--completion",
            [&program](const std::string& shell) {
                std::fputs(completion_script(program, shell).c_str(), stdout);
                throw CLI::Success();
            },
            "Print the completion script of a shell")
        ->check(CLI::IsMember({"bash", "zsh", "fish"}))
        ->group(""); // not in the help
}

std::string completion_script(const CLI::App& program, const std::string& shell) {
    const std::vector<Command> commands = commands_of(program);
    return shell == "bash"  ? bash_script(commands)
           : shell == "zsh" ? zsh_script(commands)
                            : fish_script(commands);
}

namespace {

void add_options(const CLI::App& app, Command& command);
Value value_of(const CLI::Option& option);

/// The program itself, then its commands.
std::vector<Command> commands_of(const CLI::App& program) {
    std::vector<Command> commands(1);
    add_options(program, commands[0]);
    for (const CLI::App* const app : program.get_subcommands(nullptr)) {
        Command& command = commands.emplace_back();
        command.name = app->get_name();
        command.purpose = app->get_description();
        add_options(*app, command);
    }
    return commands;
}

void add_options(const CLI::App& app, Command& command) {
    for (const CLI::Option* const option : app.get_options()) {
        if (option->get_group().empty()) {
            continue;
        }
        if (option->get_positional()) {
            command.operands.push_back(value_of(*option));
            continue;
        }
        Option& added = command.options.emplace_back();
        for (const std::string& name : option->get_snames()) {
            added.names.push_back("-" + name);
        }
        for (const std::string& name : option->get_lnames()) {
            added.names.push_back("--" + name);
        }
        added.purpose = option->get_description();
        added.value = value_of(*option);
        added.repeats = option->get_items_expected_max() > 1;
    }
    const auto is_group = [](const CLI::App* group) { return group->get_name().empty(); };
    for (const CLI::App* const group : app.get_subcommands(is_group)) {
        add_options(*group, command);
    }
}

Value value_of(const CLI::Option& option) {
    Value value;
    if (option.get_items_expected_max() == 0) {
        return value;
    }
    value.type = option.get_type_name();
    value.type.erase(std::min(value.type.find(':'), value.type.size())); // the range of a number
    value.is_file = value.type == "FILE";
    value.is_directory = value.type == "DIR";
    if (value.type.find('|') != std::string::npos && value.type.find(',') == std::string::npos) {
        std::istringstream words(value.type);
        for (std::string word; std::getline(words, word, '|');) {
            value.words.push_back(word);
        }
    }
    return value;
}

std::string joined(const std::vector<std::string>& words, const char* separator = " ") {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

std::string escaped(const std::string& text, const std::string& special) {
    std::string result;
    for (const char c : text) {
        result += special.find(c) != std::string::npos ? std::string{'\\', c} : std::string{c};
    }
    return result;
}

/// One word of a shell.
std::string quoted(const std::string& text) {
    std::string word = "'";
    for (const char c : text) {
        word += c == '\'' ? std::string("'\\''") : std::string{c};
    }
    return word + "'";
}

std::string bash_reply(const Value& value) {
    return value.is_file          ? "compgen -f -- \"$word\""
           : value.is_directory   ? "compgen -d -- \"$word\""
           : !value.words.empty() ? "compgen -W " + quoted(joined(value.words)) + " -- \"$word\""
                                  : "true";
}

std::string bash_script(const std::vector<Command>& commands) {
    std::ostringstream values;
    std::ostringstream words;
    for (const Command& command : commands) {
        std::vector<std::string> options;
        for (const Option& option : command.options) {
            options.insert(options.end(), option.names.begin(), option.names.end());
            if (option.value.type.empty()) {
                continue;
            }
            std::vector<std::string> patterns;
            for (const std::string& name : option.names) {
                patterns.push_back(command.name + ":" + name);
            }
            values << "    " << joined(patterns, " | ") << ") " << bash_reply(option.value)
                   << " ;;\n";
        }
        words << "    " << command.name << ":-*) compgen -W " << quoted(joined(options))
              << " -- \"$word\" ;;\n";
        if (!command.operands.empty()) {
            words << "    " << command.name << ":*) " << bash_reply(command.operands[0]) << " ;;\n";
        }
    }
    std::vector<std::string> names;
    names.reserve(commands.size());
    for (const Command& command : commands) {
        names.push_back(command.name);
    }
    return "# Completion of korvel in bash.\n"
           "_korvel_replies() {\n"
           "    local command=$1 previous=$2 word=$3\n"
           "    case $command:$previous in\n" +
           values.str() +
           "    *)\n"
           "    case $command:$word in\n" +
           words.str() + "    :*) compgen -W " + quoted(joined(names)) +
           " -- \"$word\" ;;\n"
           "    esac ;;\n"
           "    esac\n"
           "}\n"
           "_korvel() {\n"
           "    local command='' word=${COMP_WORDS[COMP_CWORD]} at=$((COMP_CWORD - 1)) i\n"
           "    for ((i = 1; i < COMP_CWORD; ++i)); do\n"
           "        [[ ${COMP_WORDS[i]} == -* ]] || { command=${COMP_WORDS[i]}; break; }\n"
           "    done\n"
           "    # bash splits --option=value at the sign.\n"
           "    [[ $word == '=' ]] && word=''\n"
           "    [[ ${COMP_WORDS[at]} == '=' ]] && ((--at))\n"
           "    mapfile -t COMPREPLY < "
           "<(_korvel_replies \"$command\" \"${COMP_WORDS[at]}\" \"$word\")\n"
           "}\n"
           "complete -o filenames -F _korvel korvel\n";
}

std::string zsh_value(const Value& value) {
    if (value.type.empty()) {
        return "";
    }
    return ":" + value.type + ":" +
           (value.is_file          ? "_files"
            : value.is_directory   ? "_files -/"
            : !value.words.empty() ? "(" + joined(value.words) + ")"
                                   : " ");
}

std::string zsh_arguments(const Command& command) {
    std::string arguments;
    for (const Option& option : command.options) {
        for (const std::string& name : option.names) {
            const std::string excluded = option.repeats ? "*" : "(" + joined(option.names) + ")";
            arguments += " \\\n            " +
                         quoted(excluded + name + "[" + escaped(option.purpose, "[]:") + "]" +
                                zsh_value(option.value));
        }
    }
    for (const Value& operand : command.operands) {
        arguments += " \\\n            " + quoted("*" + zsh_value(operand));
    }
    return arguments;
}

std::string zsh_script(const std::vector<Command>& commands) {
    std::ostringstream names;
    std::ostringstream cases;
    for (const Command& command : commands) {
        if (!command.name.empty()) {
            names << "        " << quoted(command.name + ":" + command.purpose) << "\n";
            cases << "        " << command.name << ") _arguments" << zsh_arguments(command)
                  << " ;;\n";
        }
    }
    return "#compdef korvel\n"
           "_korvel() {\n"
           "    local state line\n"
           "    local -a commands=(\n" +
           names.str() +
           "    )\n"
           "    _arguments -C '1:command:->command' '*::argument:->argument'" +
           zsh_arguments(commands[0]) +
           "\n"
           "    case $state in\n"
           "    command) _describe command commands ;;\n"
           "    argument)\n"
           "        case $line[1] in\n" +
           cases.str() +
           "        esac ;;\n"
           "    esac\n"
           "}\n"
           "# Called by the completion system, or sourced.\n"
           "if [[ $funcstack[1] == _korvel ]]; then _korvel \"$@\"; else compdef _korvel korvel; "
           "fi\n";
}

std::string fish_value(const Value& value) {
    return value.type.empty()     ? ""
           : value.is_file        ? " -r -F"
           : value.is_directory   ? " -x -a '(__fish_complete_directories)'"
           : !value.words.empty() ? " -x -a " + quoted(joined(value.words))
                                  : " -x";
}

std::string fish_script(const std::vector<Command>& commands) {
    std::ostringstream script;
    script << "# Completion of korvel in fish.\ncomplete -c korvel -f\n";
    for (const Command& command : commands) {
        const std::string condition = command.name.empty()
                                          ? "__fish_use_subcommand"
                                          : "__fish_seen_subcommand_from " + command.name;
        const std::string begin = "complete -c korvel -n " + quoted(condition);
        if (!command.name.empty()) {
            script << "complete -c korvel -n __fish_use_subcommand -a " << command.name << " -d "
                   << quoted(command.purpose) << "\n";
        }
        for (const Option& option : command.options) {
            script << begin;
            for (const std::string& name : option.names) {
                const bool is_long = name.rfind("--", 0) == 0;
                script << (is_long ? " -l " + name.substr(2) : " -s " + name.substr(1));
            }
            script << fish_value(option.value) << " -d " << quoted(option.purpose) << "\n";
        }
        for (const Value& operand : command.operands) {
            if (operand.is_file) {
                script << begin << " -F\n";
            } else if (!operand.words.empty()) {
                script << begin << " -a " << quoted(joined(operand.words)) << "\n";
            }
        }
    }
    return script.str();
}

} // namespace
} // namespace korvel::command
