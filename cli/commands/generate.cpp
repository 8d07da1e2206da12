// The reference page, the manual page and the completion, all from the command line as it is
// parsed.
#include <algorithm>
#include <sstream>

#include "commands/commands.h"
#include "report.h"

namespace tessaro::cli {

namespace {

using Options = std::vector<const CLI::Option*>;

const CLI::App& Find(const CLI::App& app, const std::string& name) {
    const std::size_t blank = name.find(' ');
    const CLI::App* command = app.get_subcommand(name.substr(0, blank));
    return blank == std::string::npos ? *command : *command->get_subcommand(name.substr(blank + 1));
}

/// The arguments of a command by place, or its options; those of its groups of options come first.
Options OptionsOf(const CLI::App& command, bool positional) {
    Options options;
    for (const CLI::App* group : command.get_subcommands([](const CLI::App* below) {
             return below->get_name().empty();  // which is how the parser keeps such a group
         })) {
        const Options grouped = OptionsOf(*group, positional);
        options.insert(options.end(), grouped.begin(), grouped.end());
    }
    const auto wanted = [&](const CLI::Option* option) {
        return option->get_positional() == positional && !option->get_group().empty() &&
               !option->get_single_name().starts_with("help");
    };
    const Options own = command.get_options(wanted);
    options.insert(options.end(), own.begin(), own.end());
    return options;
}

/// "-k,--kind" and what it takes.
std::string NamesOf(const CLI::Option& option) {
    if (option.get_positional())
        return option.get_name(true);
    std::string names = option.get_name(false, true);
    if (const std::size_t comma = names.find(','); comma != std::string::npos)
        names.insert(comma + 1, " ");
    if (option.get_items_expected_max() > 0)
        names += " " + option.get_type_name();
    return names;
}

/// "tessaro map set FOLDER MAP PLANE X Y VALUE [OPTIONS]", with the options that have to be given.
std::string Synopsis(const std::string& name, const CLI::App& command) {
    std::string line = "tessaro " + name;
    for (const CLI::Option* option : OptionsOf(command, true))
        line += option->get_required() ? " " + option->get_name(true)
                                       : " [" + option->get_name(true) + "]";
    bool more = false;
    for (const CLI::Option* option : OptionsOf(command, false)) {
        if (option->get_required())
            line += " " + NamesOf(*option);
        more |= !option->get_required();
    }
    return line + (more ? " [OPTIONS]" : "");
}

/// The lines of the table below a command's synopsis: its arguments, then its options.
Options ArgumentsOf(const CLI::App& command) {
    Options all = OptionsOf(command, true);
    const Options options = OptionsOf(command, false);
    all.insert(all.end(), options.begin(), options.end());
    return all;
}

/// What every command has, told once.
bool IsCommon(const CLI::Option& option) {
    const std::string name = option.get_single_name();
    return name == "quiet" || (name == "json" && option.get_description().starts_with("Errors"));
}

std::string Reference(const CLI::App& app) {
    std::ostringstream out;
    for (const Command& row : Commands()) {
        if (!row.add)
            continue;
        const CLI::App& command = Find(app, row.name);
        out << "### " << row.name << "\n\n"
            << row.summary << ".\n\n    " << Synopsis(row.name, command) << "\n\n";
        for (const CLI::Option* option : ArgumentsOf(command))
            if (!IsCommon(*option))
                out << "- `" << NamesOf(*option) << "`: " << option->get_description() << '\n';
        if (!command.get_footer().empty())
            out << '\n' << command.get_footer() << '\n';
        out << '\n';
    }
    return out.str();
}

std::string Roff(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '\\')
            escaped += "\\e";
        else if (c == '-')
            escaped += "\\-";
        else if ((c == '.' || c == '\'') && (escaped.empty() || escaped.back() == '\n'))
            escaped += std::string("\\&") + c;
        else
            escaped += c;
    }
    return escaped;
}

std::string Manual(const CLI::App& app) {
    std::ostringstream out;
    out << ".TH TESSARO 1\n.SH NAME\ntessaro \\- " << Roff(app.get_description())
        << "\n.SH SYNOPSIS\n.B tessaro\n.I COMMAND\n[\\fIARGUMENTS\\fR]\n.SH DESCRIPTION\n"
        << "Numbers are those that\n.B list\nprints.\nEvery command tells its "
           "arguments with\n.BR \\-\\-help .\n"
        << ".SH COMMANDS\n";
    for (const Command& row : Commands()) {
        if (!row.add)
            continue;
        const CLI::App& command = Find(app, row.name);
        out << ".SS " << Roff(Synopsis(row.name, command)) << '\n' << Roff(row.summary) << ".\n";
        for (const CLI::Option* option : ArgumentsOf(command))
            if (!IsCommon(*option))
                out << ".TP\n.B " << Roff(NamesOf(*option)) << '\n'
                    << Roff(option->get_description()) << '\n';
        if (!command.get_footer().empty())
            out << ".PP\n" << Roff(command.get_footer()) << '\n';
    }
    out << ".SH OPTIONS OF EVERY COMMAND\n"
           ".TP\n.B \\-q, \\-\\-quiet\nPrint results and errors only.\n"
           ".TP\n.B \\-\\-json\nErrors and notes as one JSON object a line.\n"
           ".SH EXIT STATUS\n.TP\n.B 0\nDone.\n.TP\n.B 1\nFailed, or a part of it did.\n"
           ".TP\n.B 2\nThe arguments make no sense.\n"
           ".SH ENVIRONMENT\n.TP\n.B NO_COLOR\nNo colours on a terminal.\n"
           ".TP\n.B XDG_STATE_HOME\nWhere\n.I tessaro/Error.log\nis written, otherwise\n"
           ".IR ~/.local/state .\n";
    return out.str();
}

std::string Joined(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words)
        line += (line.empty() ? "" : " ") + word;
    return line;
}

/// A case per command with its options, and a case per option that takes a choice.
std::string Completion(const CLI::App& app) {
    std::vector<std::string> top;
    std::ostringstream cases;
    for (const Command& row : Commands()) {
        const std::string name = row.name;
        if (name.find(' ') == std::string::npos)
            top.push_back(name);
        const CLI::App& command = Find(app, name);
        std::vector<std::string> words = {"--help"};
        if (row.add) {
            for (const CLI::Option* option : OptionsOf(command, false)) {
                const std::string flag = "--" + option->get_single_name();
                words.push_back(flag);
                std::string choices = option->get_type_name();
                if (option->get_items_expected_max() < 1 || choices.find('|') == std::string::npos)
                    continue;
                std::replace(choices.begin(), choices.end(), '|', ' ');
                cases << "    '" << name << ' ' << flag << "') words='" << choices << "' ;;\n";
            }
        } else {
            for (const CLI::App* below :
                 command.get_subcommands([](const CLI::App*) { return true; }))
                words.push_back(below->get_name());
        }
        cases << "    '" << name << "') words='" << Joined(words) << "' ;;\n";
    }
    return "# Completion of tessaro for bash: commands, options and what they take; files "
           "otherwise.\n"
           "_tessaro() {\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
           "    local command='' words='' word i\n"
           "    for ((i = 1; i < COMP_CWORD; ++i)); do\n"
           "        word=${COMP_WORDS[i]}\n"
           "        [[ $word == -* ]] && continue\n"
           "        command=${command:+$command }$word\n"
           "        _tessaro_words \"$command\" || { command=${command% *}; break; }\n"
           "        [[ $words == *--quiet* ]] && break\n"
           "    done\n"
           "    words=''\n"
           "    [[ $before == --* ]] && _tessaro_words \"$command $before\" || _tessaro_words "
           "\"$command\"\n"
           "    if [[ $current == -* || $words != *--quiet* ]]; then\n"
           "        COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
           "    fi\n"
           "}\n"
           "_tessaro_words() {\n"
           "    case $1 in\n"
           "    '') words='" +
           Joined(top) + " --help --version' ;;\n" + cases.str() +
           "    *) return 1 ;;\n"
           "    esac\n"
           "}\n"
           "complete -o default -F _tessaro tessaro\n";
}

}  // namespace

std::string Generate(const CLI::App& app, Document document) {
    return document == Document::Manual       ? Manual(app)
           : document == Document::Completion ? Completion(app)
                                              : Reference(app);
}

}  // namespace tessaro::cli
