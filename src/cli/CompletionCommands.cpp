// completion: the shell completion scripts of bash, zsh and fish, made from
// the command tree itself so that they know every group, verb and option.
#include "cli/CliCore.h"

#include <algorithm>
#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace cli {

namespace completion_verbs {

// The words that may come next, by "GROUP/VERB" as far as they are typed
// ("/" before the group; "GROUP/*" for a command without verbs).
using CWordTable = std::map<std::string, std::string>;

std::string OptionWords(const CLI::App& command) {
    std::string words;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames())
            words += " --" + name;
        for (const std::string& name : option->get_snames())
            words += " -" + name;
    }
    return words;
}

CWordTable Words(const CLI::App& root) {
    const std::string global = OptionWords(root);
    CWordTable table;
    std::string top;
    for (const CLI::App* group : root.get_subcommands({})) {
        top += " " + group->get_name();
        const auto verbs = group->get_subcommands({});
        if (verbs.empty()) {
            table[group->get_name() + "/*"] = OptionWords(*group) + global;
            continue;
        }
        std::string names;
        for (const CLI::App* verb : verbs) {
            names += " " + verb->get_name();
            table[group->get_name() + "/" + verb->get_name()] = OptionWords(*verb) + global;
        }
        table[group->get_name() + "/"] = names + OptionWords(*group) + global;
    }
    table["/"] = top + global;
    // Each word once, in its first place (every verb has its own --help).
    for (auto& [state, words] : table) {
        std::istringstream in(words);
        std::vector<std::string> seen;
        std::string word;
        words.clear();
        while (in >> word) {
            if (std::find(seen.begin(), seen.end(), word) != seen.end())
                continue;
            seen.push_back(word);
            words += (words.empty() ? "" : " ") + word;
        }
    }
    return table;
}

// Options before the group that take a value: the word after them is no group.
constexpr const char* kValueOption = "--datafiles";

// bash and zsh alike: GROUP and VERB are the first two words typed that are
// no options (nor the value of one), from `first` up to `current`.
void ScanTypedWords(std::ostream& out, const char* words, const char* first, const char* current) {
    out << "    local group= verb= i word\n"
        << "    for ((i = " << first << "; i < " << current << "; i++)); do\n"
        << "        word=${" << words << "[i]}\n"
        << "        case $word in\n"
        << "        " << kValueOption << ") ((i++)) ;;\n"
        << "        -*) ;;\n"
           "        *) if [[ -z $group ]]; then group=$word; elif [[ -z $verb ]]; then "
           "verb=$word; fi ;;\n"
           "        esac\n"
           "    done\n";
}

void Bash(std::ostream& out, const CWordTable& table) {
    out << "# bash completion for standards-desk-cli (standards-desk-cli completion bash)\n"
           "_standards_desk_cli() {\n"
           "    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}\n";
    ScanTypedWords(out, "COMP_WORDS", "1", "COMP_CWORD");
    out << "    if [[ $prev == " << kValueOption << " ]]; then\n"
        << "        COMPREPLY=($(compgen -d -- \"$cur\"))\n"
           "        return\n"
           "    fi\n"
           "    local words=\n"
           "    case \"$group/$verb\" in\n";
    for (const auto& [state, words] : table)
        out << "    " << state << ") words='" << words << "' ;;\n";
    out << "    esac\n"
           "    COMPREPLY=($(compgen -W \"$words\" -- \"$cur\"))\n"
           "}\n"
           "complete -o default -F _standards_desk_cli standards-desk-cli\n";
}

void Zsh(std::ostream& out, const CWordTable& table) {
    out << "#compdef standards-desk-cli\n"
           "# zsh completion for standards-desk-cli (standards-desk-cli completion zsh)\n"
           "_standards_desk_cli() {\n";
    ScanTypedWords(out, "words", "2", "CURRENT");
    out << "    if [[ ${words[CURRENT-1]} == " << kValueOption << " ]]; then\n"
        << "        _files -/\n"
           "        return\n"
           "    fi\n"
           "    local -a candidates\n"
           "    case \"$group/$verb\" in\n";
    for (const auto& [state, words] : table)
        out << "    " << state << ") candidates=(" << words << ") ;;\n";
    out << "    esac\n"
           "    compadd -a candidates && return\n"
           "    _files\n"
           "}\n"
           "_standards_desk_cli \"$@\"\n";
}

void Fish(std::ostream& out, const CWordTable& table) {
    out << "# fish completion for standards-desk-cli (standards-desk-cli completion fish)\n"
           "function __standards_desk_cli_next\n"
           "    set -l group ''\n"
           "    set -l verb ''\n"
           "    set -l skip 0\n"
           "    for word in (commandline -opc)[2..-1]\n"
           "        if test $skip = 1\n"
           "            set skip 0\n"
           "            continue\n"
           "        end\n"
           "        switch $word\n"
        << "            case " << kValueOption << "\n"
        << "                set skip 1\n"
           "            case '-*'\n"
           "            case '*'\n"
           "                if test -z \"$group\"\n"
           "                    set group $word\n"
           "                else if test -z \"$verb\"\n"
           "                    set verb $word\n"
           "                end\n"
           "        end\n"
           "    end\n"
           "    switch \"$group/$verb\"\n";
    for (const auto& [state, words] : table)
        out << "        case '" << state << "'\n"
            << "            string split ' ' -- '" << words << "'\n";
    out << "    end\n"
           "end\n"
        << "complete -c standards-desk-cli -n 'string match -q -- " << kValueOption
        << " (commandline -opc)[-1]' -x -a '(__fish_complete_directories)'\n"
        << "complete -c standards-desk-cli -a '(__standards_desk_cli_next)'\n";
}

} // namespace completion_verbs

void AddCompletionCommands(CLI::App& app, SCliContext& context) {
    using namespace completion_verbs;
    auto* completion = app.add_subcommand(
        "completion", "Print the completion script of a shell (bash, zsh or "
                      "fish), e.g. 'source <(standards-desk-cli completion bash)'");
    auto shell = std::make_shared<std::string>();
    completion->add_option("SHELL", *shell, "bash, zsh or fish")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}));
    completion->callback([&app, &context, shell] {
        context.action = [&app, shell](std::ostream& out) {
            const CWordTable table = Words(app);
            if (*shell == "bash")
                Bash(out, table);
            else if (*shell == "zsh")
                Zsh(out, table);
            else
                Fish(out, table);
        };
    });
}

} // namespace cli
