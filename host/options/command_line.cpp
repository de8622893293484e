#include "options/subcommand.h"

#include <algorithm>
#include <map>

#include "parser.h"

namespace host {

namespace {

class Command_Line {
public:
    Command_Line(const Subcommands& commands, const std::vector<Group>& groups) {
        app.set_help_flag("--help", "Print this help");
        app.set_version_flag("--version", "style-editor " STYLE_EDITOR_VERSION);
        app.require_subcommand(0, 1);
        for (const Group& group : groups) {
            parser_of.emplace(group.Name, &Add(app, group.Name, group.Help));
            parser_of.at(group.Name)->require_subcommand(0, 1);
            names.push_back(group.Name);
        }
        for (const auto& command : commands)
            Add(*command);
    }

    Choice Read(const std::vector<std::string>& arguments) {
        try {
            app.parse(Prepared(arguments));
        } catch (const CLI::CallForHelp&) {
            return {nullptr, app.help()};
        } catch (const CLI::CallForVersion& version) {
            return {nullptr, std::string(version.what()) + "\n"};
        } catch (const CLI::Error& error) {
            throw Usage_Error(std::string(error.what()) + Suggestion(arguments) +
                              "; see style-editor --help");
        }
        for (const auto& [parser, command] : command_of)
            if (*parser)
                return {command, {}};
        throw Usage_Error("say what to do: " + All_Names() + "; see style-editor --help" +
                          Suggestion(arguments));
    }

private:
    static CLI::App& Add(CLI::App& to, const std::string& name, const std::string& help) {
        CLI::App& added = *to.add_subcommand(name, help);
        added.set_help_flag("--help", "Print this help");
        return added;
    }

    void Add(Subcommand& command) {
        const auto [name, help] = command.About();
        const auto blank = name.find(' ');
        CLI::App& group = blank == std::string::npos ? app : *app.get_subcommand(name.substr(0, blank));
        CLI::App& parser = Add(group, name.substr(blank + 1), help);
        names.push_back(name);
        parser_of.emplace(name, &parser);
        command_of.emplace_back(&parser, &command);
        Options::Parser behind{parser};
        Options options(behind);
        command.Declare(options);
    }

    // The library takes the value of `--name=` from the next argument. It wants the arguments backwards.
    static std::vector<std::string> Prepared(const std::vector<std::string>& arguments) {
        std::vector<std::string> prepared;
        for (const std::string& argument : arguments) {
            const bool empty_value = argument.starts_with("--") && argument.find('=') == argument.size() - 1;
            prepared.push_back(empty_value ? argument.substr(0, argument.size() - 1) : argument);
            if (empty_value)
                prepared.emplace_back();
        }
        std::reverse(prepared.begin(), prepared.end());
        return prepared;
    }

    std::string All_Names() const {
        std::string all;
        for (const auto& [parser, command] : command_of)
            all += (all.empty() ? "" : ", ") + command->About().Name;
        return all;
    }

    // "; did you mean store export?" when the beginning of the line is nearly a command, or one of its
    // options nearly one that there is.
    std::string Suggestion(const std::vector<std::string>& arguments) const {
        Nearest nearest;
        for (const std::string& name : names) {
            const bool has_group = name.find(' ') != std::string::npos;
            if (arguments.size() < (has_group ? 2U : 1U))
                continue;
            const std::string written = arguments[0] + (has_group ? " " + arguments[1] : "");
            nearest.Try(written, name, "style-editor " + name);
            for (const std::string& argument : arguments)
                if (written == name && argument.starts_with("--"))
                    for (const CLI::Option* option : parser_of.at(name)->get_options())
                        nearest.Try(argument.substr(0, argument.find('=')), option->get_name(),
                                    option->get_name());
        }
        return nearest.Found.empty() ? "" : "; did you mean " + nearest.Found + "?";
    }

    struct Nearest {
        std::string Found;
        std::size_t Least = 2; // changes of a letter; more of them are another word
        void Try(const std::string& written, const std::string& meant, const std::string& told) {
            const auto changes = Distance(written, meant);
            if (changes == 0 || changes > Least || (changes == Least && told.size() <= Found.size()))
                return;
            Least = changes;
            Found = told;
        }
    };

    // How many letters are to be changed, added or taken away.
    static std::size_t Distance(const std::string& from, const std::string& to) {
        std::vector<std::size_t> row(to.size() + 1);
        for (std::size_t at = 0; at < row.size(); ++at)
            row[at] = at;
        for (std::size_t left = 1; left <= from.size(); ++left) {
            std::size_t diagonal = std::exchange(row[0], left);
            for (std::size_t right = 1; right < row.size(); ++right) {
                const std::size_t changed = diagonal + (from[left - 1] == to[right - 1] ? 0 : 1);
                diagonal = row[right];
                row[right] = std::min({changed, row[right] + 1, row[right - 1] + 1});
            }
        }
        return row.back();
    }

    CLI::App app{"Edits the STYLE nodes of a call flow.", "style-editor"};
    std::vector<std::string> names; // of the groups, and of the commands
    std::map<std::string, CLI::App*> parser_of;
    std::vector<std::pair<CLI::App*, Subcommand*>> command_of;
};

} // namespace

Choice Read_Command_Line(const std::vector<std::string>& arguments, const Subcommands& commands,
                         const std::vector<Group>& groups) {
    return Command_Line(commands, groups).Read(arguments);
}

} // namespace host
