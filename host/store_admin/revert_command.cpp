#include "history_entries.h"
#include "process/decimal.h"
#include "process/errors.h"
#include "process/visible_text.h"
#include "run_setup/store_choice.h"
#include "store_admin/store_commands.h"

namespace host {

namespace {

// What a change would be, or why it is none.
void Print_Step(const Entry& entry, std::ostream& out) {
    if (!entry.Has(u"Record")) {
        out << "refused: " << Visible_Text(entry.Text(u"Refusal")) << '\n';
        return;
    }
    Print_Place(entry, out);
    if (entry.Has(u"Refusal")) {
        out << ": refused: " << Visible_Text(entry.Text(u"Refusal")) << '\n';
        return;
    }
    out << '\n';
    Print_Fields(entry, out);
}

class Revert_Command final : public Subcommand {
    Outline About() const override { return {"store revert", "Take recorded changes back, all or none"}; }

    void Declare(Options& options) override {
        options.Argument(
            "CHANGE", [this](const std::string& text) { Take_Range(text); },
            "The change's number in the history, or CHANGE-CHANGE");
        Declare_Store(options, store);
        Declare_Care(options, dry_run, force);
    }

    void Take_Range(const std::string& text) {
        const auto dash = text.find('-');
        first = text.substr(0, dash);
        last = dash == std::string::npos ? first : text.substr(dash + 1);
        const auto from = Decimal<std::int64_t>(first), to = Decimal<std::int64_t>(last);
        if (!from || !to || *from < 1 || *to < *from)
            throw Usage_Error(
                "write the number of a change, or the first and the last such as 12-15, instead of '" + text +
                "'");
    }

    int Run(const Streams& streams) override {
        return All_Or_Nothing([&] { return Revert(streams); }) ? status::OK : status::Refused;
    }

    // Prints refusals, in a dry run what would change, and in the end the command that takes it back.
    bool Revert(const Streams& streams) const try {
        Variant xml;
        automation::Text change;
        const auto wide = [](const std::string& text) {
            return Variant(automation::From_UTF8_Replacing(text));
        };
        automation::Call(History(), &Store_History::Revert, Store_Location(store), wide(first), wide(last),
                         force ? automation::True : automation::False,
                         dry_run ? automation::True : automation::False, xml, change);
        std::size_t refused = 0, records = 0;
        for (const Rows rows = Opened(xml); !rows->At_End(); rows->Move_Next()) {
            const Entry entry(rows);
            const bool is_refused = entry.Has(u"Refusal");
            ++(is_refused ? refused : records);
            if (is_refused || dry_run)
                Print_Step(entry, streams.Out);
        }
        const std::string number = automation::To_UTF8(change.View());
        if (!number.empty())
            streams.Out << How_To_Take_Back(store, number) << '\n';
        const auto count = [](std::size_t many, const std::string& what) {
            return std::to_string(many) + " " + what + (many == 1 ? "" : "s");
        };
        const std::string done =
            refused > 0    ? "nothing was changed: " + count(refused, "refusal")
            : records == 0 ? "nothing was changed: everything is as it was before already"
            : dry_run      ? "nothing was changed: a dry run; " + count(records, "record") + " would change"
                           : count(records, "record") + (records == 1 ? " was changed" : " were changed");
        Tell(streams, done);
        return refused == 0;
    } catch (const automation::Failure& failure) {
        Give_Up(failure);
    }

    std::optional<std::string> store;
    std::string first, last; // decimal numbers of changes
    bool dry_run = false;
    bool force = false;
};

} // namespace

std::unique_ptr<Subcommand> Make_Revert_Command() {
    return std::make_unique<Revert_Command>();
}

} // namespace host
