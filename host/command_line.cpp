#include "host/command_line.h"

#include <CLI/CLI.hpp>

#include "host/decimal.h"
#include "interfaces/store_keeper.h"

namespace host {

namespace {

CLI::Option* Text_Option(CLI::App& app, const std::string& name, std::optional<std::string>& target,
                         const std::string& value_name, const std::string& help) {
    return app
        .add_option_function<std::string>(
            name, [&target](const std::string& text) { target = text; }, help)
        ->type_name(value_name);
}

// Each use takes one value; what follows it is an argument of its own.
void Repeatable_Option(CLI::App& app, const std::string& name, std::vector<std::string>& target,
                       const std::string& value_name, const std::string& help) {
    app.add_option(name, target, help)->type_name(value_name)->allow_extra_args(false);
}

// Decimal digits only: the library would also read octal and hexadecimal numbers.
template <typename Value, typename Target>
CLI::Option* Number_Option(CLI::App& app, const std::string& name, Target& target, Value least, Value most,
                           const std::string& help) {
    const auto take = [=, &target](const std::string& text) {
        const auto number = Decimal<Value>(text);
        if (!number || *number < least || *number > most)
            throw CLI::ValidationError(name, "write a number from " + std::to_string(least) + " to " +
                                                 std::to_string(most) + " instead of '" + text + "'");
        target = *number;
    };
    return app.add_option_function<std::string>(name, take, help)->type_name("N");
}

template <typename Target>
void Identifier_Option(CLI::App& app, const std::string& name, Target& target, const std::string& help) {
    Number_Option<Integer>(app, name, target, INT16_MIN, INT16_MAX, help);
}

template <typename Target>
CLI::Option* Node_Option(CLI::App& app, Target& target, const std::string& help) {
    return Number_Option<Integer>(app, "--node", target, 0, INT16_MAX, help);
}

void Store_Option(CLI::App& app, std::optional<std::string>& target) {
    Text_Option(app, "--store", target, "S", "sqlite:PATH or postgresql://...; without it your own store");
}

void Common_Options_Of(CLI::App& app, Common_Options& options) {
    Store_Option(app, options.Store);
    Text_Option(app, "--strings", options.Strings, "FILE", "Read all texts from this string table");
    Text_Option(app, "--appdata", options.App_Data, "DIR",
                "The machine's common application-data folder; empty for none");
    Text_Option(app, "--registry", options.Registry, "FILE", "Read this exported registry file");
    app.add_flag("--trace", options.Trace, "Print every call on a data component");
}

void Fault_Options_Of(CLI::App& app, Common_Options& options) {
    Repeatable_Option(app, "--fail", options.Failures, "OPERATION[@K][=NUMBER:DESCRIPTION]",
                      "Make the K-th or every call of an operation fail");
    Repeatable_Option(app, "--throw", options.Exceptions, "OPERATION[@K]",
                      "Make the K-th or every call of an operation throw what no component may");
    Repeatable_Option(app, "--reply", options.Replies, "OPERATION[@K]=FILE",
                      "Let a reading operation answer this file's text");
    Repeatable_Option(app, "--missing", options.Missing, "PROGID", "Make creating this component fail");
}

struct Parser {
    CLI::App App{"Edits the STYLE nodes of a call flow.", "style-editor"};
    Edit_Command Edit;
    Play_Command Play;
    Store_Init_Command Init;
    Store_History_Command History;
    Store_Upgrade_Command Upgrade;
    CLI::App* Editing = App.add_subcommand("edit", "Open the editor in a window or a terminal");
    CLI::App* Playing = App.add_subcommand("play", "Run an editing script");
    Strings_Command Strings;
    CLI::App* Translating = App.add_subcommand("strings", "Help with a string table");
    CLI::App* Checking = Translating->add_subcommand("check", "Say what is wrong with a string table");
    CLI::App* Picturing = Translating->add_subcommand("picture", "Draw the dialog with a string table");
    Register_Command Registration;
    List_Command List;
    CLI::App* Registering = App.add_subcommand("register", "Register the classes of modules");
    CLI::App* Unregistering = App.add_subcommand("unregister", "Take the classes of modules back");
    CLI::App* Listing = App.add_subcommand("list", "List registered classes, or say why one is not found");
    CLI::App* Storing = App.add_subcommand("store", "Look after a store");
    CLI::App* Initialising = Storing->add_subcommand("init", "Create the store's tables and its sample data");
    CLI::App* Recounting = Storing->add_subcommand("history", "Print who changed what, and when");
    CLI::App* Upgrading =
        Storing->add_subcommand("upgrade", "Bring an older store up to this program's layout");

    Export_Command Export;
    Apply_Command Apply;
    CLI::App* Exporting = Storing->add_subcommand("export", "Print the nodes of a partition, to be edited");
    CLI::App* Applying =
        Storing->add_subcommand("apply", "Change nodes as an edited export says, all or none");
    Find_Command Find;
    CLI::App* Finding =
        Storing->add_subcommand("find", "List the nodes whose number, label or dial strings hold a text");
    Show_Command Show;
    CLI::App* Showing = Storing->add_subcommand("show", "Print all values of one node");
    Revert_Command Revert;
    CLI::App* Reverting = Storing->add_subcommand("revert", "Take recorded changes back, all or none");

    Parser() {
        App.set_help_flag("--help", "Print this help");
        for (CLI::App* command :
             {Editing, Playing, Storing, Initialising, Exporting, Applying, Finding, Showing, Reverting,
              Recounting, Upgrading, Registering, Unregistering, Listing, Translating, Checking, Picturing})
            command->set_help_flag("--help", "Print this help");
        App.set_version_flag("--version", "style-editor " STYLE_EDITOR_VERSION);
        App.require_subcommand(0, 1);
        Storing->require_subcommand(0, 1);
        Translating->require_subcommand(0, 1);
        Add_Edit();
        Add_Play();
        Add_Init();
        Add_History();
        Store_Option(*Upgrading, Upgrade.Store);
        Add_Bulk();
        Add_Revert();
        Add_Strings();
        Add_Registration(*Registering);
        Add_Registration(*Unregistering);
        Listing->add_option("PROGID", List.Classes, "Explain these classes instead");
    }

    void Add_Edit() {
        Common_Options_Of(*Editing, Edit.Common);
        Identifier_Option(*Editing, "--config", Edit.Wanted.Config_ID, "Configuration (1)");
        Identifier_Option(*Editing, "--partition", Edit.Wanted.Partition_ID, "Partition (1)");
        Node_Option(*Editing, Edit.Wanted.Node_Number, "Node (1); 0 for the default node");
        Identifier_Option(*Editing, "--language", Edit.Wanted.Language_ID, "Language (1, English)");
        Editing->add_flag("--terminal", Edit.Terminal, "In this terminal instead of a window");
        Editing->add_flag("--silent", Edit.Wanted.Silent_Error, "Show no box for internal errors");
    }

    void Add_Play() {
        Playing->add_option("SCRIPT", Play.Script, "The script; - is standard input")->required();
        Common_Options_Of(*Playing, Play.Common);
        Fault_Options_Of(*Playing, Play.Common);
        Text_Option(*Playing, "--picture", Play.Picture, "FILE",
                    "Draw the dialog as the script last left it into this PNG file");
        Playing->add_flag("--window", Play.Window,
                          "On the real window, by synthesised key strokes and mouse clicks");
        Playing
            ->add_flag("--terminal", Play.Terminal,
                       "On the dialog of a text terminal, by the keys that it sends")
            ->excludes("--window");
    }

    void Add_Strings() {
        for (CLI::App* command : {Checking, Picturing})
            command->add_option("FILE", Strings.File, "The string table")->required();
        Picturing->add_option("PNG", Strings.Picture, "The picture's file")->required();
        Number_Option<Integer>(*Picturing, "--language", Strings.Language, 1, INT16_MAX,
                               "Language; without it the table's first");
    }

    void Add_Registration(CLI::App& app) {
        app.add_option("MODULE", Registration.Modules, "The module's file, by its absolute path")->required();
        app.add_flag("--machine", Registration.Machine, "For every user of the machine; without it for you");
    }

    void Add_Init() {
        Store_Option(*Initialising, Init.Store);
        Number_Option<int>(*Initialising, "--nodes", Init.Nodes, 0, interfaces::Most_Nodes,
                           "Make the default node and nodes 1 to N instead of the sample's");
    }

    void Add_History() {
        Store_Option(*Recounting, History.Store);
        Identifier_Option(*Recounting, "--config", History.Config_ID, "Of this configuration alone");
        Identifier_Option(*Recounting, "--partition", History.Partition_ID, "Of this partition alone");
        Node_Option(*Recounting, History.Node_Number,
                    "Of this node alone; of configuration and partition 1 unless given");
        Recounting->add_flag("--json", History.As_JSON, "One JSON object a line");
    }

    void Add_Bulk() {
        const auto add_place = [](CLI::App& app, Common_Options& common, Job& place) {
            Store_Option(app, common.Store);
            Identifier_Option(app, "--config", place.Config_ID, "Configuration (1)");
            Identifier_Option(app, "--partition", place.Partition_ID, "Partition (1)");
        };
        add_place(*Exporting, Export.Common, Export.Place);
        Exporting->add_flag("--csv", Export.As_Spreadsheet, "As a spreadsheet instead of JSON Lines");
        add_place(*Finding, Find.Common, Find.Place);
        Finding->add_option("TEXT", Find.Text, "What the node holds; large and small letters alike")
            ->required();
        add_place(*Showing, Show.Common, Show.Place);
        Node_Option(*Showing, Show.Place.Node_Number, "Node; 0 for the default node")->required();
        Text_Option(*Exporting, "--out", Export.Out, "FILE", "A new file instead of standard output");
        Applying->add_option("FILE", Apply.File, "The edited export, JSON Lines or CSV; - is standard input")
            ->required();
        add_place(*Applying, Apply.Common, Apply.Place);
        Add_Care(*Applying, Apply.Dry_Run, Apply.Force);
    }

    static void Add_Care(CLI::App& app, bool& dry_run, bool& force) {
        app.add_flag("--dry-run", dry_run, "Print every change and refusal, change nothing");
        app.add_flag("--force", force, "Also over what others have changed since");
    }

    // CHANGE or CHANGE-CHANGE
    void Take_Range(const std::string& text) {
        const auto dash = text.find('-');
        Revert.First = text.substr(0, dash);
        Revert.Last = dash == std::string::npos ? Revert.First : text.substr(dash + 1);
        const auto first = Decimal<std::int64_t>(Revert.First), last = Decimal<std::int64_t>(Revert.Last);
        if (!first || !last || *first < 1 || *last < *first)
            throw CLI::ValidationError(
                "CHANGE", "write the number of a change, or the first and the last such as 12-15, "
                          "instead of '" +
                              text + "'");
    }

    void Add_Revert() {
        Reverting
            ->add_option_function<std::string>(
                "CHANGE", [this](const std::string& text) { Take_Range(text); },
                "The change's number in the history, or CHANGE-CHANGE")
            ->required();
        Store_Option(*Reverting, Revert.Store);
        Add_Care(*Reverting, Revert.Dry_Run, Revert.Force);
    }

    Store_History_Command Parsed_History() {
        if (History.Node_Number || History.Config_ID || History.Partition_ID) {
            History.Config_ID = History.Config_ID.value_or(1);
            History.Partition_ID = History.Partition_ID.value_or(1);
        }
        return History;
    }

    Command_Line Parsed() {
        if (*Editing)
            return Edit;
        if (*Playing)
            return Play;
        if (*Initialising)
            return Init;
        if (*Recounting)
            return Parsed_History();
        if (*Upgrading)
            return Upgrade;
        if (*Exporting)
            return Export;
        if (*Applying)
            return Apply;
        if (*Finding)
            return Find;
        if (*Showing)
            return Show;
        if (*Reverting)
            return Revert;
        Registration.Removes = static_cast<bool>(*Unregistering);
        if (*Registering || *Unregistering)
            return Registration;
        if (*Listing)
            return List;
        if (*Checking || *Picturing)
            return Strings;
        throw Usage_Error("say what to do: edit, play SCRIPT, store init, store export, store apply, store "
                          "revert, strings, register, "
                          "unregister or list; see "
                          "style-editor --help");
    }
};

// The library takes the value of `--name=` from the next argument. It wants the arguments backwards.
std::vector<std::string> Prepared(const std::vector<std::string>& arguments) {
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

} // namespace

Command_Line Parse_Command_Line(const std::vector<std::string>& arguments) {
    Parser parser;
    try {
        parser.App.parse(Prepared(arguments));
        return parser.Parsed();
    } catch (const CLI::CallForHelp&) {
        return Information{parser.App.help()};
    } catch (const CLI::CallForVersion& version) {
        return Information{std::string(version.what()) + "\n"};
    } catch (const CLI::Error& error) {
        throw Usage_Error(std::string(error.what()) + "; see style-editor --help");
    }
}

} // namespace host
