#include "apps/command/completion.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <vector>

namespace korvel::command {
namespace {

/// What completes a value. Its form in the help decides: FILE, DIR, or words as in "cube|ball".
struct Value {
    bool is_file = false;
    bool is_directory = false;
    std::vector<std::string> words;
};

using Commands = std::vector<CommandDescription>;

CommandDescription help_command(const Commands& commands);
std::string bash_script(const Commands& commands);
std::string zsh_script(const Commands& commands);
std::string fish_script(const Commands& commands);

} // namespace

std::string completion_script(const Program& program, const std::string& shell) {
    Commands commands = program.commands();
    commands.push_back(help_command(commands));
    return shell == "bash"  ? bash_script(commands)
           : shell == "zsh" ? zsh_script(commands)
                            : fish_script(commands);
}

namespace {

// The parser takes `help COMMAND` for `COMMAND --help`.
CommandDescription help_command(const Commands& commands) {
    Description command;
    for (const CommandDescription& other : commands) {
        command.form += (command.form.empty() ? "" : "|") + other.name;
    }
    return {.name = "help",
            .purpose = "Describe a command and its options",
            .options = {},
            .operands = {command}};
}

Value value_of(const Description& option) {
    const std::string& form = option.form;
    Value value;
    value.is_file = form == "FILE";
    value.is_directory = form == "DIR";
    if (form.find('|') != std::string::npos && form.find(',') == std::string::npos) {
        std::istringstream words(form);
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

/// One word of a shell, in quotes.
std::string shell_word(const std::string& text) {
    std::string word = "'";
    for (const char c : text) {
        word += c == '\'' ? std::string("'\\''") : std::string{c};
    }
    return word + "'";
}

std::string bash_reply(const Description& option) {
    const Value value = value_of(option);
    return value.is_file        ? "compgen -f -- \"$word\""
           : value.is_directory ? "compgen -d -- \"$word\""
           : !value.words.empty()
               ? "compgen -W " + shell_word(joined(value.words)) + " -- \"$word\""
               : "true";
}

std::string bash_script(const Commands& commands) {
    std::ostringstream values;
    std::ostringstream words;
    for (const CommandDescription& command : commands) {
        std::vector<std::string> options;
        for (const Description& option : command.options) {
            options.insert(options.end(), option.names.begin(), option.names.end());
            if (option.form.empty()) {
                continue;
            }
            std::vector<std::string> patterns;
            for (const std::string& name : option.names) {
                patterns.push_back(command.name + ":" + name);
            }
            values << "    " << joined(patterns, " | ") << ") " << bash_reply(option) << " ;;\n";
        }
        words << "    " << command.name << ":-*) compgen -W " << shell_word(joined(options))
              << " -- \"$word\" ;;\n";
        if (!command.operands.empty()) {
            words << "    " << command.name << ":*) " << bash_reply(command.operands[0]) << " ;;\n";
        }
    }
    std::vector<std::string> names;
    names.reserve(commands.size());
    for (const CommandDescription& command : commands) {
        names.push_back(command.name);
    }
    return "# Completion of korvel in bash.\n"
           "_korvel_replies() {\n"
           "    local command=$1 previous=$2 word=$3\n"
           "    case $command:$previous in\n" +
           values.str() +
           "    *)\n"
           "    case $command:$word in\n" +
           words.str() + "    :*) compgen -W " + shell_word(joined(names)) +
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

std::string parenthesised(const std::vector<std::string>& words) {
    return std::string("(").append(joined(words)).append(")");
}

std::string zsh_value(const Description& option) {
    if (option.form.empty()) {
        return "";
    }
    const Value value = value_of(option);
    const std::string action = value.is_file          ? "_files"
                               : value.is_directory   ? "_files -/"
                               : !value.words.empty() ? parenthesised(value.words)
                                                      : " ";
    return std::string(":").append(option.form).append(":").append(action);
}

std::string zsh_arguments(const CommandDescription& command) {
    std::string arguments;
    for (const Description& option : command.options) {
        for (const std::string& name : option.names) {
            const std::string excluded = option.repeats ? "*" : parenthesised(option.names);
            arguments += " \\\n            " +
                         shell_word(excluded + name + "[" + escaped(option.purpose, "[]:") + "]" +
                                    zsh_value(option));
        }
    }
    for (const Description& operand : command.operands) {
        arguments += " \\\n            " + shell_word(std::string("*").append(zsh_value(operand)));
    }
    return arguments;
}

std::string zsh_script(const Commands& commands) {
    std::ostringstream names;
    std::ostringstream cases;
    for (const CommandDescription& command : commands) {
        if (!command.name.empty()) {
            names << "        " << shell_word(command.name + ":" + command.purpose) << "\n";
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

std::string fish_value(const Description& option) {
    const Value value = value_of(option);
    return option.form.empty()    ? ""
           : value.is_file        ? " -r -F"
           : value.is_directory   ? " -x -a '(__fish_complete_directories)'"
           : !value.words.empty() ? " -x -a " + shell_word(joined(value.words))
                                  : " -x";
}

std::string fish_script(const Commands& commands) {
    std::ostringstream script;
    script << "# Completion of korvel in fish.\ncomplete -c korvel -f\n";
    for (const CommandDescription& command : commands) {
        const std::string condition = command.name.empty()
                                          ? "__fish_use_subcommand"
                                          : "__fish_seen_subcommand_from " + command.name;
        const std::string begin = "complete -c korvel -n " + shell_word(condition);
        if (!command.name.empty()) {
            script << "complete -c korvel -n __fish_use_subcommand -a " << command.name << " -d "
                   << shell_word(command.purpose) << "\n";
        }
        for (const Description& option : command.options) {
            script << begin;
            for (const std::string& name : option.names) {
                const bool is_long = name.rfind("--", 0) == 0;
                script << (is_long ? " -l " + name.substr(2) : " -s " + name.substr(1));
            }
            script << fish_value(option) << " -d " << shell_word(option.purpose) << "\n";
        }
        for (const Description& option : command.operands) {
            const Value operand = value_of(option);
            if (operand.is_file) {
                script << begin << " -F\n";
            } else if (!operand.words.empty()) {
                script << begin << " -a " << shell_word(joined(operand.words)) << "\n";
            }
        }
    }
    return script.str();
}

} // namespace
} // namespace korvel::command
