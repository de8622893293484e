#include "translation.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <sstream>
#include <tuple>

#include "automation/number.h"
#include "automation/text.h"
#include "layout_check.h"
#include "process/temporary_folder.h"
#include "resources/resources.h"
#include "run_setup/installed_display.h"
#include "run_setup/setup.h"
#include "run_setup/store_choice.h"
#include "scripts/screenshot.h"
#include "scripts/script_display.h"
#include "shell/string_table.h"
#include "toolkit/user_input.h"

namespace host {

namespace {

using resources::Texts_Per_Language;
using shell::String_Table;

struct Finding {
    std::size_t Line; // 0: the file as a whole
    std::string Text;
    bool operator<(const Finding& other) const {
        return std::tie(Line, Text) < std::tie(other.Line, other.Text);
    }
};
using Findings = std::set<Finding>;

String_Table Load_Table(const std::string& path) try {
    return String_Table::Load(path);
} catch (const shell::Format_Error& error) {
    throw Start_Error(error.what());
}

Integer Language_Of(Long id) {
    return static_cast<Integer>(id / Texts_Per_Language + 1);
}

std::set<Integer> Languages_In(const String_Table& table) {
    std::set<Integer> languages;
    for (const Long id : table.Ids())
        languages.insert(Language_Of(id));
    return languages;
}

// What the English text of a slot asks of its translation.
std::optional<std::string> Fault_Of(const String& text, const String& english) {
    if (text.empty())
        return "is empty: the dialog's set-up would end here";
    if (english.find(u'~') != String::npos && text.find(u'~') == String::npos)
        return "has no ~, the place holder";
    if (!automation::Is_Numeric(english))
        return std::nullopt;
    if (!std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit >= u'0' && unit <= u'9'; }))
        return "is no position or width: write a number of twips, digits only";
    if (text.size() > 5 || automation::To_Double(text) > INT16_MAX)
        return "is larger than " + std::to_string(INT16_MAX);
    return std::nullopt;
}

void Check_Slots(const String_Table& table, Integer language, Findings& findings) {
    const Long first = Long{language - 1} * Texts_Per_Language;
    for (Long slot = 0; slot < Texts_Per_Language; ++slot) {
        const Long id = first + slot;
        const String* text = table.Find(id);
        if (!text) {
            findings.insert({0, "text " + std::to_string(id) + " is missing (in English: \"" +
                                    automation::To_UTF8(resources::Load_String(slot)) + "\")"});
        } else if (const auto fault = Fault_Of(*text, resources::Load_String(slot))) {
            findings.insert({table.Line_Of(id), "text " + std::to_string(id) + " " + *fault});
        }
    }
}

// An editing job on the sample data, with the texts of a file and nobody in front of it.
class Rehearsal {
public:
    explicit Rehearsal(const std::string& strings) : transcript(unseen), setup(options, transcript) {
        options.Store = Create_Store("sqlite:" + folder / "store.db", std::nullopt);
        options.Strings = strings;
        setup.Start();
    }

    // `act` gets the dialog before it is closed; without a dialog, the failure of the job.
    template <typename Act>
    std::optional<String> Show(Integer language, Act&& act) {
        display.On_Modal = [&](toolkit::Form& form, toolkit::Input_Driver&) {
            act(form);
            display.Answer_To_Close();
            static_cast<void>(toolkit::user_input::Close(form));
        };
        const Installed_Display installed(display);
        style_node::Editor editor;
        const auto outcome = Run_Job(editor, {.Language_ID = language, .Silent_Error = true});
        return outcome.Shown ? std::nullopt : std::optional(outcome.Error_Description);
    }

private:
    const Temporary_Folder folder;
    Common_Options options;
    std::ostringstream unseen;
    Transcript transcript;
    Setup setup;
    Script_Display display;
};

// The captions differ with the supervised type.
void Check_Every_Type(toolkit::Form& form, const std::function<void(const Form_Problem&)>& found) {
    for (toolkit::Control* control : form.Controls()) {
        if (control->Kind() != toolkit::Control_Kind::Option_Button)
            continue;
        static_cast<void>(toolkit::user_input::Press(*control));
        for (const Form_Problem& problem : Problems_Of(form))
            found(problem);
    }
}

std::size_t Line_Of_Text(const String_Table& table, const String& text) {
    for (const Long id : table.Ids())
        if (*table.Find(id) == text)
            return table.Line_Of(id);
    return 0;
}

void Check_Dialog(const std::string& file, const String_Table& table, Integer language, Findings& findings) {
    Rehearsal rehearsal(file);
    const auto failure = rehearsal.Show(language, [&](toolkit::Form& form) {
        Check_Every_Type(form, [&](const Form_Problem& problem) {
            const std::string caption =
                problem.Caption.empty() ? "" : "\"" + automation::To_UTF8(problem.Caption) + "\" ";
            findings.insert({problem.Caption.empty() ? 0 : Line_Of_Text(table, problem.Caption),
                             caption + problem.Reason});
        });
    });
    if (failure)
        findings.insert({0, "the dialog cannot be shown: " + automation::To_UTF8(*failure)});
}

} // namespace

bool Check_Strings(const std::string& file, std::ostream& out) {
    const String_Table table = Load_Table(file);
    Findings findings;
    if (table.Ids().empty())
        findings.insert({0, "holds no text"});
    for (const Integer language : Languages_In(table)) {
        Findings of_language;
        Check_Slots(table, language, of_language);
        if (of_language.empty()) // else the dialog would not come up, or not with all of its texts
            Check_Dialog(file, table, language, of_language);
        findings.merge(of_language);
    }
    for (const Finding& finding : findings)
        out << file << ':' << (finding.Line ? std::to_string(finding.Line) + ":" : "") << ' ' << finding.Text
            << '\n';
    return findings.empty();
}

void Picture_Strings(const std::string& file, const std::string& picture, std::optional<Integer> wanted,
                     std::ostream& out) {
    // A picture needs no screen, and no window of this run is to be seen.
    setenv("QT_QPA_PLATFORM", "offscreen", 0); // NOLINT(concurrency-mt-unsafe): there is one thread yet
    const auto languages = Languages_In(Load_Table(file));
    const Integer language = wanted.value_or(languages.empty() ? 1 : *languages.begin());
    Screenshot screenshot(picture);
    Rehearsal rehearsal(file);
    const auto failure = rehearsal.Show(language, [&](toolkit::Form& form) { screenshot.Take(form); });
    screenshot.Check();
    if (failure)
        throw Start_Error("there is no picture of language " + std::to_string(language) + ": " +
                          automation::To_UTF8(*failure));
    out << "wrote " << picture << '\n';
}

} // namespace host
