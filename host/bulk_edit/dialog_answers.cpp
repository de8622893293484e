#include "bulk_edit/dialog_answers.h"

#include "automation/create.h"
#include "automation/number.h"
#include "automation/text.h"
#include "faults/component_proxies.h"
#include "interfaces/product_components.h"
#include "process/errors.h"
#include "recordset/writer.h"
#include "run_setup/installed_display.h"
#include "scripts/script_display.h"

namespace host {

namespace {

using automation::Variant;

constexpr String_View Description = u"txtDescription";
constexpr String_View Type_Frame = u"fraSupervised";
constexpr String_View Threshold_List = u"cmbThreshold";
constexpr String_View Option_Names[Supervised_Types] = {u"optBlind", u"optPartial", u"optFull",
                                                        u"optDialContinue", u"optEnhanced"};

// Puts the questions to a dialog that is up, one after the other, as long as it stays up.
class Field_Validator {
public:
    Field_Validator(const std::set<Question>& questions, Dialog_Answers& answers)
        : answers(answers), next(questions.begin()), end(questions.end()) {}

    bool Is_Over() const { return next == end && has_begun; }

    void Hold(toolkit::Form& form, toolkit::Input_Driver& driver) {
        has_begun = true;
        for (std::size_t type = 0; type < Supervised_Types; ++type)
            answers.Type_Captions[type] = form.Find(Option_Names[type])->Caption();
        Read_Thresholds(dynamic_cast<const toolkit::List_Control&>(*form.Find(Threshold_List)));
        // Fields of a blind node cannot be entered.
        (void)driver.Press(*form.Find(Option_Names[2]));
        while (next != end && form.Is_Visible()) {
            asking = &*next++;
            const String refusal = Answer(form, driver);
            if (form.Is_Visible())
                Note(refusal);
        }
        if (form.Is_Visible())
            (void)driver.Close(form);
    }

    // The dialog has closed over the last question.
    void Failed(const Job_Outcome& outcome) {
        if (!asking)
            throw Start_Error("the editor does not open: " + automation::To_UTF8(outcome.Error_Description));
        Note(u"the editor fails on it: " + outcome.Error_Description);
    }

private:
    void Note(const String& refusal) {
        if (!refusal.empty())
            answers.Refusals[*asking] = refusal;
        asking = nullptr;
    }

    String Answer(toolkit::Form& form, toolkit::Input_Driver& driver) {
        if (asking->Control == Type_Frame)
            return Type_Answer();
        if (asking->Control == Threshold_List)
            return Threshold_Answer();
        auto& field = dynamic_cast<toolkit::Text_Control&>(*form.Find(asking->Control));
        const String refusal = Field_Answer(form, driver, field);
        return refusal.empty() && asking->Control == Description ? Label_Answer() : refusal;
    }

    void Read_Thresholds(const toolkit::List_Control& list) {
        answers.Thresholds.clear();
        for (Long index = 0; index < list.Count(); ++index)
            answers.Thresholds.emplace_back(automation::Decimal_Text(list.Item_Data(index)),
                                            list.Item(index));
    }
    String Type_Answer() const {
        std::vector<std::pair<String, String>> types;
        for (std::size_t type = 0; type < Supervised_Types; ++type)
            types.emplace_back(automation::Decimal_Text(static_cast<Long>(type)),
                               answers.Type_Captions[type]);
        return Choice_Answer(u"supervised type", types);
    }
    String Threshold_Answer() const { return Choice_Answer(u"threshold", answers.Thresholds); }

    String Choice_Answer(String_View what, const std::vector<std::pair<String, String>>& choices) const {
        String named;
        for (const auto& [identifier, name] : choices) {
            if (asking->Text == identifier)
                return {};
            named.append(named.empty() ? u"" : u", ").append(identifier).append(u" ").append(name);
        }
        return u"there is no such " + String(what) + u"; there are " + named;
    }

    // As a person who pastes the text and goes on to another field.
    String Field_Answer(toolkit::Form& form, toolkit::Input_Driver& driver,
                        toolkit::Text_Control& field) const {
        const String before = field.Text();
        if (const auto refusal = driver.Replace(field, 0, String::npos, asking->Text))
            return *refusal;
        if (!form.Is_Visible())
            return {};
        const String rule = field.Rule();
        (void)driver.Focus(
            *form.Find(asking->Control == Description ? String_View(u"txtTransfer") : Description));
        if (!form.Is_Visible() || field.Text() == asking->Text)
            return {};
        return rule + (field.Text() == before ? u"" : u"; the field makes it \"" + field.Text() + u"\"");
    }

    String Label_Answer() const {
        const auto checker = automation::Bind<interfaces::Label_Checker>(
            automation::Create_Object(interfaces::Label_Checker::Class_Identity));
        Automation_Boolean allowed = AUTOMATION_FALSE;
        automation::Call(checker, &interfaces::Label_Checker::Is_Label_Allowed, Variant(asking->Text),
                         allowed);
        if (!allowed)
            return u"no double quotes and no consecutive single quotes";
        Variant prepared;
        automation::Call(checker, &interfaces::Label_Checker::Prepare_Label, Variant(asking->Text), prepared);
        answers.Labels[asking->Text] = prepared.To_Text();
        return {};
    }

    Dialog_Answers& answers;
    std::set<Question>::const_iterator next;
    const std::set<Question>::const_iterator end;
    const Question* asking = nullptr;
    bool has_begun = false;
};

// While it lives, the editor finds one blind node in every partition.
class Plain_Node {
public:
    static constexpr Integer Number = 1;

    Plain_Node() {
        const auto plan = std::make_shared<Fault_Plan>();
        recordset::Writer writer({{u"NodeNumber", recordset::Field_Type::Integer},
                                  {u"NodeDescription"},
                                  {u"SuperviseID"},
                                  {u"Hookflash"},
                                  {u"ThresholdTypeID"},
                                  {u"Transfer"},
                                  {u"Disconnection"}});
        for (const auto* number : {u"0", u"1"})
            writer.Add_Row({number, u"", u"0", u"500", {}, u"", u""});
        plan->Answer(u"Get_Style_Nodes", std::move(writer).Finish());
        Install_Proxies(plan);
    }
    ~Plain_Node() { Remove_Proxies(); }
    Plain_Node(const Plain_Node&) = delete;
    Plain_Node& operator=(const Plain_Node&) = delete;
};

} // namespace

Dialog_Answers Ask_Dialog(const Job& place, const std::set<Question>& questions) {
    Dialog_Answers answers;
    const Plain_Node plain;
    Job job = place;
    job.Node_Number = Plain_Node::Number;
    job.Silent_Error = true;
    Field_Validator interview(questions, answers);
    Script_Display display;
    display.Answer_To_Close();
    const Installed_Display installed(display);
    std::exception_ptr failure; // must not pass through the editor
    display.On_Modal = [&](toolkit::Form& form, toolkit::Input_Driver& driver) {
        try {
            interview.Hold(form, driver);
        } catch (...) {
            failure = std::current_exception();
            (void)driver.Close(form);
        }
    };
    while (!interview.Is_Over()) {
        style_node::Editor editor;
        const Job_Outcome outcome = Run_Job(editor, job);
        if (failure)
            std::rethrow_exception(failure);
        if (!outcome.Shown)
            interview.Failed(outcome);
    }
    return answers;
}

} // namespace host
