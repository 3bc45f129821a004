#include "cli/docs/completion.h"

#include "cli/help.h"

namespace orv::cli {

namespace {

std::string joined(const std::vector<std::string>& words) {
    std::string out;
    for (const auto& w : words)
        out += (out.empty() ? "" : " ") + w;
    return out;
}

} // namespace

void writeBashCompletion(std::ostream& out) {
    std::vector<std::string> names, globals;
    for (const auto& [name, c] : commands())
        names.push_back(name);
    for (const auto& o : globalOptions())
        globals.push_back(o.option);

    out << "# bash completion for orvanta-tool, made from the tool's command registry.\n"
        << "_orvanta_tool() {\n"
        << "    local cur prev words cword\n"
        << "    _init_completion || return\n"
        << "    local i command=\n"
        << "    for ((i = 1; i < cword; i++)); do\n"
        << "        case ${words[i]} in\n"
        << "        --home) ((i++)) ;;\n"
        << "        -*) ;;\n"
        << "        *) command=${words[i]}; break ;;\n"
        << "        esac\n"
        << "    done\n"
        << "    case $prev in\n"
        << "    --home) _filedir -d; return ;;\n"
        << "    -o) _filedir; return ;;\n"
        << "    esac\n"
        << "    if [[ -z $command ]]; then\n"
        << "        COMPREPLY=($(compgen -W '" << joined(names) << " " << joined(globals)
        << "' -- \"$cur\"))\n"
        << "        return\n"
        << "    fi\n"
        << "    local options=\n"
        << "    case $command in\n";
    for (const auto& [name, c] : commands())
        out << "    " << name << ") options='" << joined(usageOptions(c)) << "' ;;\n";
    out << "    esac\n"
        << "    if [[ $cur == -* ]]; then\n"
        << "        COMPREPLY=($(compgen -W \"$options --home --help\" -- \"$cur\"))\n"
        << "        return\n"
        << "    fi\n"
        << "    _filedir\n"
        << "}\n"
        << "complete -F _orvanta_tool orvanta-tool\n";
}

} // namespace orv::cli
