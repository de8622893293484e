#include "apply_job.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <optional>

#include "automation/number.h"
#include "automation/text.h"
#include "bulk_edit/dialog_answers.h"
#include "node_edit.h"
#include "process/errors.h"
#include "process/text_file.h"
#include "process/visible_text.h"
#include "run_setup/setup.h"
#include "run_setup/store_choice.h"
#include "run_setup/store_session.h"
#include "spreadsheet.h"

namespace host {

namespace {

// Tells now and then how far long work has come.
class Progress {
public:
    Progress(std::ostream& out, std::size_t all) : out(out), all(all) {}
    void Step() {
        ++done;
        const auto now = Clock::now();
        if (now - told < std::chrono::seconds(1))
            return;
        told = now;
        out << "style-editor: " << done << " of " << all << " nodes" << std::endl;
    }

private:
    using Clock = std::chrono::steady_clock;
    std::ostream& out;
    const std::size_t all;
    std::size_t done = 0;
    Clock::time_point told = Clock::now();
};

// A line, and the edit that it asks for.
struct Line_Edit {
    std::size_t Line;
    Wanted_Node Wanted;
    std::optional<Node_Edit> Edit; // nothing for a refused line
};

std::string Count(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

bool Is_Number(const String& text) {
    return text.find_first_not_of(u"-0123456789") == String::npos;
}

// The identifier in the place of a name.
void Identify(Stored& value, const std::vector<std::pair<String, String>>& choices) {
    if (!value || Is_Number(*value))
        return;
    for (const auto& [identifier, name] : choices)
        if (automation::Equal_Ignoring_Case(*value, name))
            value = identifier;
}

class Apply_Job {
public:
    Apply_Job(const Apply_Options& command, const Streams& streams) : command(command), streams(streams) {}

    bool Run() {
        Parse(Read_Input(command.File, streams.In));
        Partition_Work work(command.Place.Config_ID, command.Place.Partition_ID,
                            Partition_Work::Access::To_Write);
        const Nodes nodes = work.Read();
        Name_Identifiers();
        Match(work, nodes);
        Check();
        Print();
        if (!refusals.empty())
            return Finished(false, "nothing was changed: " + Count(refusals.size(), "refusal"));
        if (Changed() == 0)
            return Finished(true, "nothing was changed: there is nothing to change");
        Change(work);
        return true;
    }

private:
    bool Finished(bool fine, const std::string& message) const {
        Tell(streams, message);
        return fine;
    }
    void Refuse(std::size_t line, const std::string& where, const std::string& why) {
        refusals.emplace(line, "line " + std::to_string(line) + where + ": refused: " + why);
    }
    void Refuse(const Line_Edit& line, const std::string& why) {
        Refuse(line.Line, ", node " + std::to_string(line.Wanted.Number), why);
    }
    std::size_t Changed() const {
        return static_cast<std::size_t>(
            std::count_if(lines.begin(), lines.end(), [](const Line_Edit& line) { return Is_Change(line); }));
    }
    static bool Is_Change(const Line_Edit& line) {
        return line.Edit && line.Edit->After != *line.Edit->Before;
    }

    void Parse(std::string_view text) {
        if (text.starts_with("\xEF\xBB\xBF"))
            text.remove_prefix(3);
        if (!Is_Spreadsheet(command.File, text))
            return Parse_Lines(text);
        for (auto& row : Parse_Spreadsheet(text))
            if (row.Node)
                lines.push_back({row.Line, std::move(*row.Node), {}});
            else
                Refuse(row.Line, "", Visible_Text(row.Problem));
    }
    void Parse_Lines(std::string_view text) {
        for (std::size_t number = 1; !text.empty(); ++number) {
            const auto end = std::min(text.find('\n'), text.size());
            std::string_view line = text.substr(0, end);
            text.remove_prefix(std::min(end + 1, text.size()));
            if (line.find_first_not_of(" \t\r") != std::string_view::npos)
                Parse(number, line);
        }
    }
    void Parse(std::size_t number, std::string_view line) {
        if (line.size() > Longest_Line)
            return Refuse(number, "", "it is longer than " + std::to_string(Longest_Line) + " bytes");
        try {
            lines.push_back({number, Parse_Node(std::string(line)), {}});
        } catch (const Line_Error& error) {
            Refuse(number, error.Column > 0 ? ", column " + std::to_string(error.Column) : "",
                   Visible_Text(error.what()));
        }
    }

    // Names may stand where identifiers are.
    void Name_Identifiers() {
        const auto is_named = [](const Line_Edit& line) {
            const auto own = line.Wanted.Records.find(interfaces::Node_Record);
            if (own == line.Wanted.Records.end())
                return false;
            const auto threshold = own->second.Given.find(node_value::Threshold);
            return threshold != own->second.Given.end() && threshold->second &&
                   !Is_Number(*threshold->second);
        };
        std::vector<std::pair<String, String>> types, thresholds;
        for (std::size_t type = 0; type < Supervised_Types; ++type)
            types.emplace_back(automation::Decimal_Text(static_cast<Long>(type)),
                               automation::From_UTF8_Replacing(Type_Name(type)));
        if (std::any_of(lines.begin(), lines.end(), is_named))
            thresholds = Ask_Dialog(command.Place, {}).Thresholds;
        for (Line_Edit& line : lines)
            if (const auto own = line.Wanted.Records.find(interfaces::Node_Record);
                own != line.Wanted.Records.end())
                for (auto& [index, value] : own->second.Given)
                    if (index == node_value::Type || index == node_value::Threshold)
                        Identify(value, index == node_value::Type ? types : thresholds);
    }

    void Match(const Partition_Work& work, const Nodes& nodes) {
        std::map<Long, std::size_t> seen;
        for (Line_Edit& line : lines) {
            const auto node = nodes.find(line.Wanted.Number);
            const auto [first, is_new] = seen.emplace(line.Wanted.Number, line.Line);
            if (!is_new)
                Refuse(line.Line, "",
                       "node " + std::to_string(line.Wanted.Number) + " was given in line " +
                           std::to_string(first->second) + " already");
            else if (node == nodes.end())
                Refuse(line.Line, "",
                       "node " + std::to_string(line.Wanted.Number) +
                           " does not exist in this partition; apply edits nodes and makes none");
            else if (!command.Force && line.Wanted.Change && *line.Wanted.Change != node->second.Change)
                Refuse(line, "it " + Since(work, node->second.Change) +
                                 ", after the line was exported; export it again, or apply it with --force");
            else {
                Settle_Empty_Cells(line.Wanted, node->second);
                line.Edit = Merge(node->second, line.Wanted);
            }
        }
    }
    static std::string Since(const Partition_Work& work, const String& change) {
        return change == u"0" ? "was never changed in this store"
                              : "was changed by " + work.Author_Of(change);
    }

    void Check() {
        std::set<Question> questions;
        for (const Line_Edit& line : lines)
            if (line.Edit)
                Ask(*line.Edit, questions);
        const Dialog_Answers answers =
            questions.empty() ? Dialog_Answers() : Ask_Dialog(command.Place, questions);
        for (Line_Edit& line : lines) {
            if (!line.Edit)
                continue;
            const auto refused = Refusals_Of(*line.Edit, line.Wanted, answers);
            for (const std::string& why : refused)
                Refuse(line, why);
            line.Edit = refused.empty() ? std::optional(Complete(std::move(*line.Edit), line.Wanted, answers))
                                        : std::nullopt;
        }
    }

    // Refusals always, changes in a dry run.
    void Print() const {
        std::multimap<std::size_t, std::string> said = refusals; // by line
        for (const Line_Edit& line : lines)
            if (command.Dry_Run && line.Edit)
                for (const std::string& change : Changes_Of(*line.Edit))
                    said.emplace(line.Line, "line " + std::to_string(line.Line) + ", node " +
                                                std::to_string(line.Wanted.Number) + ": " + change);
        for (const auto& [line, text] : said)
            streams.Out << text << '\n';
        streams.Out << std::flush;
    }

    // A dry run writes too: the store may refuse what the dialog takes.
    void Change(Partition_Work& work) const {
        const std::size_t changed = Changed();
        Write(work, changed);
        if (command.Dry_Run) {
            (void)Finished(true,
                           "nothing was changed: a dry run; " + Count(changed, "node") + " would change");
            return;
        }
        const std::string change = work.Keep();
        streams.Out << How_To_Take_Back(command.Common.Store, change) << '\n';
        (void)Finished(true, Count(changed, "node") + (changed == 1 ? " was changed" : " were changed"));
    }

    void Write(const Partition_Work& work, std::size_t changed) const {
        Progress progress(streams.Errors, changed);
        for (const Line_Edit& line : lines) {
            if (!Is_Change(line))
                continue;
            try {
                work.Write(*line.Edit->Before, line.Edit->After);
            } catch (const automation::Failure& failure) {
                throw Start_Error("line " + std::to_string(line.Line) + ", node " +
                                  std::to_string(line.Wanted.Number) + ": " +
                                  automation::To_UTF8(failure.Description));
            }
            progress.Step();
        }
    }

    static constexpr std::size_t Longest_Line = 1'000'000; // a node's texts are a thousandth of it

    const Apply_Options& command;
    const Streams& streams;
    std::vector<Line_Edit> lines;
    std::multimap<std::size_t, std::string> refusals; // by line
};

} // namespace

bool Apply(const Apply_Options& command, const Streams& streams) {
    return All_Or_Nothing([&] {
        return With_Store(command.Common, streams, [&] { return Apply_Job(command, streams).Run(); });
    });
}

} // namespace host
