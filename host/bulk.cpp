#include "bulk.h"

#include <unistd.h>

#include <chrono>
#include <iterator>
#include <optional>
#include <sstream>

#include "automation/text.h"
#include "dialog_answers.h"
#include "host/setup.h"
#include "node_edit.h"
#include "store_choice.h"
#include "text_file.h"

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

// An edit and the line it comes from.
struct Line_Edit {
    std::size_t Line;
    Node_Edit Edit;
};

class Application {
public:
    Application(const Apply_Command& command, const Streams& streams) : command(command), streams(streams) {}

    bool Run() {
        auto lines = Parsed();
        Partition_Work work(command.Place.Config_ID, command.Place.Partition_ID,
                            Partition_Work::Access::To_Write);
        const Nodes nodes = work.Read();
        Match(lines, nodes);
        if (!command.Restore)
            Judge(nodes);
        if (Print() > 0)
            return Finished(false, "nothing was changed: " + Count(refused, "refusal"));
        if (changed == 0)
            return Finished(true, "nothing to change");
        Change(work);
        return true;
    }

private:
    static std::string Count(std::size_t count, const std::string& what) {
        return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
    }
    bool Finished(bool fine, const std::string& message) const {
        (fine ? streams.Out : streams.Errors) << (fine ? "" : "style-editor: ") << message << std::endl;
        return fine;
    }
    void Refuse(std::size_t line, const std::string& why) {
        Say(line, ": refused: " + why);
        ++refused;
    }

    void Say(std::size_t line, const std::string& what) {
        said.emplace(line, "line " + std::to_string(line) + what);
    }

    std::map<std::size_t, Wanted_Node> Parsed() {
        std::istringstream text(command.File == "-"
                                    ? std::string(std::istreambuf_iterator<char>(streams.In), {})
                                    : Read_File(command.File));
        std::map<std::size_t, Wanted_Node> lines;
        std::size_t number = 0;
        for (std::string line; std::getline(text, line);) {
            ++number;
            if (line.find_first_not_of(" \t\r") == std::string::npos)
                continue;
            try {
                lines.emplace(number, Parse_Node(line));
            } catch (const Line_Error& error) {
                Refuse(number, error.what());
            }
        }
        return lines;
    }

    void Match(const std::map<std::size_t, Wanted_Node>& lines, const Nodes& nodes) {
        std::map<Long, std::size_t> seen;
        for (const auto& [line, wanted] : lines) {
            const auto node = nodes.find(wanted.Number);
            const auto [first, is_new] = seen.emplace(wanted.Number, line);
            if (!is_new)
                Refuse(line, "node " + std::to_string(wanted.Number) + " stands in line " +
                                 std::to_string(first->second) + " already");
            else if (node == nodes.end())
                Refuse(line, "there is no node " + std::to_string(wanted.Number) +
                                 " in this partition; nodes are edited here, not made");
            else
                edits.push_back({line, Node_Edit(node->second, wanted, command.Restore)});
        }
    }

    void Judge(const Nodes& nodes) {
        std::set<Question> questions;
        for (const Line_Edit& line : edits)
            line.Edit.Ask(questions);
        if (questions.empty())
            return;
        // The first node that is listed; without one, the default node alone.
        const auto listed = nodes.upper_bound(0);
        Job job = command.Place;
        job.Node_Number = static_cast<Integer>(listed == nodes.end() ? 0 : listed->first);
        job.Silent_Error = true;
        const Dialog_Answers answers = Ask_Dialog(job, questions);
        for (Line_Edit& line : edits)
            line.Edit.Take(answers);
    }

    // Refusals always, changes in a dry run; answers how many refusals there are.
    std::size_t Print() {
        for (const Line_Edit& line : edits) {
            const std::string node = ", node " + std::to_string(line.Edit.After.Number) + ": ";
            for (const std::string& refusal : line.Edit.Refusals)
                Say(line.Line, std::string(node).append("refused: ").append(refusal));
            refused += line.Edit.Refusals.size();
            changed += line.Edit.Is_Change() ? 1U : 0U;
            for (const std::string& change :
                 command.Dry_Run ? line.Edit.Changes() : std::vector<std::string>())
                Say(line.Line, node + change);
        }
        for (const auto& [line, text] : said)
            streams.Out << text << '\n';
        streams.Out << std::flush;
        return refused;
    }

    void Change(Partition_Work& work) {
        if (!command.Dry_Run)
            Write_Undo();
        try {
            Write(work);
        } catch (...) {
            if (!command.Dry_Run)
                (void)::unlink(command.Undo.c_str());
            throw;
        }
        if (command.Dry_Run) {
            (void)Finished(true, Count(changed, "node") + " would change");
            return;
        }
        Keep(work);
        (void)Finished(true, Count(changed, "node") +
                                 " changed; to undo it: style-editor store apply --restore " + command.Undo);
    }

    void Write_Undo() const {
        std::string undo;
        for (const Line_Edit& line : edits)
            if (line.Edit.Is_Change())
                undo += JSON_Of(line.Edit.Before, Completeness::Whole) + "\n";
        Write_New_File(command.Undo, undo);
    }

    // A dry run does it too: the store may refuse what the dialog takes.
    void Write(const Partition_Work& work) const {
        Progress progress(streams.Errors, changed);
        for (const Line_Edit& line : edits) {
            if (!line.Edit.Is_Change())
                continue;
            try {
                work.Write(line.Edit.Before, line.Edit.After);
            } catch (const automation::Failure& failure) {
                throw Start_Error("nothing was changed: line " + std::to_string(line.Line) + ", node " +
                                  std::to_string(line.Edit.After.Number) + ": " +
                                  automation::To_UTF8(failure.Description));
            }
            progress.Step();
        }
    }

    // A server may have kept the changes before it went away.
    void Keep(Partition_Work& work) const try { work.Keep(); } catch (const automation::Failure& failure) {
        throw Start_Error(
            automation::To_UTF8(failure.Description) +
            "; look whether the nodes have changed, and undo it with style-editor store apply --restore " +
            command.Undo + ", or remove that file");
    }

    const Apply_Command& command;
    const Streams& streams;
    std::vector<Line_Edit> edits;
    std::multimap<std::size_t, std::string> said; // by line
    std::size_t refused = 0;
    std::size_t changed = 0;
};

// The store's failures, as what ends a program.
template <typename Body>
auto With_Store(const Common_Options& options, const Streams& streams, Body&& body) {
    Transcript unused(streams.Out);
    Setup setup(options, unused);
    setup.Start();
    try {
        return body();
    } catch (const automation::Failure& failure) {
        Give_Up(failure);
    }
}

} // namespace

void Export(const Export_Command& command, const Streams& streams) {
    With_Store(command.Common, streams, [&] {
        const Nodes nodes = Partition_Work(command.Place.Config_ID, command.Place.Partition_ID,
                                           Partition_Work::Access::To_Read)
                                .Read();
        std::string lines;
        Progress progress(streams.Errors, nodes.size());
        for (const auto& [number, node] : nodes) {
            lines += JSON_Of(node, Completeness::Plain) + "\n";
            progress.Step();
        }
        if (command.Out)
            Write_New_File(*command.Out, lines);
        else if (!(streams.Out << lines << std::flush))
            throw Start_Error("the nodes could not be written; check where standard output goes");
    });
}

bool Apply(const Apply_Command& command, const Streams& streams) {
    return With_Store(command.Common, streams, [&] { return Application(command, streams).Run(); });
}

} // namespace host
