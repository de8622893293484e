// What a person does to a form: focus, keys, edits, picks and presses, and forms that go meanwhile.
#include <algorithm>
#include <tuple>

#include "automation/text.h"
#include "toolkit/user_input.h"
#include "toolkit_test_tools.h"

namespace {

using namespace toolkit_test;
namespace input = toolkit::user_input;
using input::Key;
using input::Refusal;

class Toolkit_Input : public Toolkit {
protected:
    std::string Focused() const { return form->Focused() ? To_UTF8(form->Focused()->Name()) : "nowhere"; }

    // What the journal says of a verb, or why it was refused.
    std::string Done(const std::function<Refusal()>& verb) {
        Refusal refusal;
        const std::string said = Journal_Of([&] { refusal = verb(); });
        return refusal ? said + "refused: " + To_UTF8(*refusal) : said;
    }
    std::string Press(Control& control) {
        return Done([&] { return input::Press(control); });
    }
    std::string Press(Key key) {
        return Done([&] { return input::Press_Key(*form, key); });
    }
    std::string Pick(Control& list, Long index) {
        return Done([&] { return input::Pick(list, index); });
    }
};

TEST_F(Toolkit_Input, Refuses_What_A_Person_Cannot_Reach) {
    Load_New_Form();
    EXPECT_EQ(Pick(form->combo, 0), "refused: no dialog is up");
    EXPECT_EQ(Press(Key::Enter), "refused: no dialog is up");
    form->frame.Set_Enabled(false);
    form->list.Set_Visible(false);
    Shown([&] {
        const std::pair<Refusal, String_View> cases[] = {
            {input::Focus(form->label), u"label takes no focus"},
            {input::Focus(form->first), u"first is disabled"},
            {input::Enter_Text(form->choice), u"choice takes no text"},
            {input::Type(form->ok, u"a"), u"ok takes no text"},
            {input::Replace(form->label, 0, 0, u"a"), u"label takes no text"},
            {input::Pick(form->text, 0), u"text has no list"},
            {input::Pick(form->list, 0), u"list is invisible"},
            {input::Pick(form->combo, 3), u"combo has no entry 3"}};
        for (const auto& [refusal, reason] : cases)
            EXPECT_EQ(refusal, reason);
        EXPECT_EQ(Focused(), "text");
    });
}

TEST_F(Toolkit_Input, Tab_Visits_Every_Stop_And_Wraps) {
    Load_New_Form();
    const auto walk = [&] {
        std::string visited = Focused();
        for (int steps = 0; steps < 10; ++steps, visited += " " + Focused())
            input::Press_Key(*form, Key::Tab);
        return visited;
    };
    Shown([&] {
        EXPECT_EQ(walk(), "text first second outside combo choice list ok cancel text first");
        EXPECT_EQ(Press(Key::Tab), "focus second, first_LostFocus");
        form->frame.Set_Visible(false);
        form->choice.Set_Enabled(false);
        EXPECT_EQ(walk(), "outside combo list ok cancel text outside combo list ok cancel");
    });
}

TEST_F(Toolkit_Input, Focus_Leaves_What_Cannot_Keep_It) {
    Load_New_Form();
    struct {
        Control& Focused;
        Control& Changed;
        void (Control::*Write)(bool);
        const char* Journal;
    } const cases[] = {
        {form->combo, form->combo, &Control::Set_Enabled, "combo Enabled, focus choice, combo_LostFocus"},
        {form->cancel, form->cancel, &Control::Set_Enabled, "cancel Enabled, focus text, cancel_LostFocus"},
        {form->first, form->frame, &Control::Set_Enabled, "frame Enabled, focus outside, first_LostFocus"},
        {form->combo, form->frame, &Control::Set_Visible, "frame Visible"}};
    Shown([&] {
        for (const auto& one : cases) {
            input::Focus(one.Focused);
            EXPECT_EQ(Journal_Of([&] { (one.Changed.*one.Write)(false); }), one.Journal);
            (one.Changed.*one.Write)(true);
        }
        // A control that is reached by such a move and switched off by the handler passes the focus on.
        form->combo.On_Lost_Focus = [&] { form->choice.Set_Enabled(false); };
        EXPECT_EQ(Journal_Of([&] { form->combo.Set_Enabled(false); }),
                  "combo Enabled, focus choice, choice Enabled, focus list, choice_LostFocus");
        for (Control* control : form->Controls())
            control->Set_Enabled(false);
        EXPECT_EQ(Focused(), "nowhere");
        EXPECT_EQ(Press(Key::Tab), "refused: nothing takes the focus");
    });
}

TEST_F(Toolkit_Input, Enter_And_Escape_Press_Without_Moving_The_Focus) {
    Load_New_Form();
    Shown([&] {
        for (Control* control : std::initializer_list<Control*>{&form->combo, &form->first, &form->cancel}) {
            input::Focus(*control);
            EXPECT_EQ(Press(Key::Enter), control == &form->cancel ? "cancel_Click" : "ok_Click");
            EXPECT_EQ(Press(Key::Escape), "cancel_Click");
            EXPECT_EQ(form->Focused(), control);
        }
    });
}

TEST_F(Toolkit_Input, Edits) {
    Load_New_Form();
    const auto replace = [](std::size_t start, std::size_t length, String_View text) {
        return [=](auto& field) { return input::Replace(field, start, length, text); };
    };
    const auto backspace = [](auto& field) { return input::Backspace(field); };
    const char* const changed = "text Text, text_Change";
    // Text, caret and edit, then text, caret and journal.
    using Edit = std::function<Refusal(Text_Box&)>;
    const std::tuple<String, std::size_t, Edit, String, std::size_t, const char*> cases[] = {
        {u"ac", 1, [](auto& field) { return input::Type(field, u"b"); }, u"abc", 2, changed},
        {u"a", 1, [](auto& field) { return input::Type(field, u"\U0001F600"); }, u"a\U0001F600", 3, changed},
        {u"abc", 2, backspace, u"ac", 1, changed},
        {u"abc", 0, backspace, u"abc", 0, ""},
        {u"a\U0001F600", 3, backspace, u"a", 1, changed},
        {{0xDE00, 0xDE00}, 2, backspace, {0xDE00}, 1, changed}, // halves without a partner
        {u"old", 1, replace(0, 99, u"new text"), u"new text", 8, changed},
        {u"ab", 0, replace(1, static_cast<std::size_t>(-1), u"c"), u"ac", 2, changed},
        {u"same", 1, replace(0, 4, u"same"), u"same", 4, "text Caret"},
        {u"abc", 0, [](auto& field) { return input::Edit(field, u"xy", 1); }, u"xy", 1, changed}};
    Shown([&] {
        for (const auto& [before, start, edit, after, caret, said] : cases) {
            SCOPED_TRACE(To_UTF8(before) + " to " + To_UTF8(after));
            form->text.Set_Text(before);
            form->text.Set_Selection_Start(start);
            EXPECT_EQ(Done(std::bind(edit, std::ref(form->text))), said);
            EXPECT_EQ(form->text.Text(), after);
            EXPECT_EQ(form->text.Selection_Start(), caret);
        }
    });
}

TEST_F(Toolkit_Input, Picks_Presses_And_Typing_Take_The_Focus_First) {
    Load_New_Form();
    Shown([&] {
        EXPECT_EQ(Pick(form->combo, 1), "focus combo, text_LostFocus, combo Text, combo Index, combo_Click");
        EXPECT_EQ(Pick(form->combo, 1), "combo_Click");
        EXPECT_EQ(Done([&] { return input::Backspace(form->combo); }),
                  "combo Index, combo Text, combo_Change");
        EXPECT_EQ(Done([&] { return input::Type(form->combo, u"0"); }), "combo Text, combo_Change");
        EXPECT_EQ(form->combo.Selected_Index(), -1) << "typed, though it equals an entry";
        EXPECT_EQ(Press(form->ok), "focus ok, combo_LostFocus, ok_Click");
        EXPECT_EQ(Press(form->first), "focus first, ok_LostFocus, first Value, first_Click");
        EXPECT_EQ(Press(form->first), "") << "selected already";
        EXPECT_EQ(Done([&] { return input::Enter_Text(form->combo); }), "focus combo, first_LostFocus");
        form->combo.Set_Selection_Start(1);
        EXPECT_EQ(Done([&] { return input::Enter_Text(form->combo); }), "") << "entered already";
    });
}

TEST_F(Toolkit_Input, Ends_When_The_Loss_Of_The_Focus_Switches_The_Control_Off) {
    Load_New_Form();
    Shown([&] {
        form->text.On_Lost_Focus = [&] { form->ok.Set_Enabled(false); };
        EXPECT_EQ(Press(form->ok), "focus ok, ok Enabled, focus cancel, ok_LostFocus");
        input::Focus(form->text);
        form->text.On_Lost_Focus = [&] { form->combo.Clear(); };
        EXPECT_EQ(Pick(form->combo, 0), "focus combo, combo Items") << "nothing left to pick";
    });
}

// A handler, or that of a list to which it writes, unloads the form and drops the last reference to it.
TEST_F(Toolkit_Input, A_Form_That_Goes_Ends_The_Handlers_On_The_Stack) {
    for (std::size_t at = 0, count = 1; at < count; ++at) {
        SCOPED_TRACE(at);
        Load_New_Form();
        Sample& sample = *form;
        const std::weak_ptr<Form> life = form;
        const std::pair<Handler&, std::function<void()>> ways[] = {
            {sample.text.On_Change, [&] { input::Type(sample.text, u"a"); }},
            {sample.text.On_Lost_Focus, [&] { input::Press(sample.ok); }},
            {sample.ok.On_Click, [&] { input::Press(sample.ok); }},
            {sample.list.On_Click, [&] { input::Pick(sample.list, 1); }},
            {sample.cancel.On_Click, [&] { input::Press_Key(sample, Key::Escape); }},
            // The outermost write is told that the form has gone, a verb's caller is not.
            {sample.text.On_Change, [&] { sample.text.Set_Text(u"a"); }},
            {sample.first.On_Click, [&] { sample.first.Set_Value(true); }},
            {sample.ok.On_Click, [&] { sample.ok.Set_Value(true); }}};
        count = std::size(ways);
        const bool by_code = at >= 5;
        const Handler unload = [&] {
            form.reset();
            sample.Unload();
            EXPECT_FALSE(life.expired());
            if (by_code)
                return; // as if nothing had happened
            (void)sample.text.Text();
            ADD_FAILURE() << "the inner handler goes on";
        };
        const Handler write = [&] {
            sample.combo.Set_Text(u"nested");
            ADD_FAILURE() << "the outer handler goes on";
        };
        sample.combo.On_Change = unload;
        ways[at].first = by_code ? unload : write;
        display.While_Shown = [&](Form&) { ways[at].second(); };
        if (by_code)
            EXPECT_THROW(ways[at].second(), Form_Gone);
        else
            sample.Show_Modal();
        const std::string said = journal.Take(), end = "unload?, unloaded, discarded, destroyed";
        EXPECT_EQ(said.substr(said.size() - std::min(said.size(), end.size())), end);
        EXPECT_TRUE(life.expired());
        form = std::make_shared<Sample>(journal);
    }
}

TEST_F(Toolkit_Input, A_Form_That_Is_Kept_Open_Goes_On) {
    Load_New_Form();
    form->Asked = [](bool& cancel) { cancel = true; };
    form->ok.On_Click = [&] { form->Unload(), form->text.Set_Text(u"still here"); };
    Shown([&] {
        EXPECT_EQ(Press(Key::Enter), "unload?, text Text, text_Change");
        form->Asked = nullptr;
        EXPECT_EQ(Done([&] { return input::Close(*form); }), "unload?, unloaded, discarded");
    });
}

} // namespace
