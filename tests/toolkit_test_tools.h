// What the tests of the toolkit share: a small form with every kind of control, a Display that writes down
// what it is told, and one journal for both, so that the order of notices and handlers shows.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "automation/number.h"
#include "automation/text.h"
#include "failure_number.h"
#include "toolkit/form.h"

namespace toolkit_test {

using namespace toolkit;
using automation::Long;
using automation::To_UTF8;

class Journal {
public:
    void Add(const std::string& line) { lines += lines.empty() ? line : ", " + line; }
    std::string Take() { return std::exchange(lines, {}); }

private:
    std::string lines;
};

class Recording_Display final : public Display {
public:
    explicit Recording_Display(Journal& journal) : journal(journal) { Set_Display(this); }
    ~Recording_Display() override {
        Discard_All_Forms();
        Set_Display(nullptr);
    }

    Size Screen_Size() const override { return {300, 200}; }
    void Form_Loaded(Form&) override { journal.Add("loaded"); }
    void Form_Unloaded(Form&) override { journal.Add("unloaded"); }
    void Form_Changed(Form&, Property property) override { Note("form", property); }
    void Control_Changed(Control& control, Property property) override {
        Note(To_UTF8(control.Name()), property);
    }
    void Focus_Changed(Form& form) override {
        journal.Add("focus " + (form.Focused() ? To_UTF8(form.Focused()->Name()) : "nowhere"));
    }
    void Pointer_Changed() override { journal.Add("pointer"); }
    void Run_Modal(Form& form) override { std::exchange(While_Shown, nullptr)(form); }
    void Process_Pending_Messages() override {}
    Long Show_Message(const Message& message) override { return message.Buttons; }

    std::function<void(Form&)> While_Shown;

private:
    void Note(const std::string& changed, Property property) {
        constexpr const char* names[] = {"Caption",  "Text",  "Caret", "Enabled", "Visible",
                                         "Geometry", "Items", "Index", "Value",   "Picture"};
        journal.Add(changed + " " + names[static_cast<std::size_t>(property)]);
    }

    Journal& journal;
};

class Sample final : public Form {
public:
    explicit Sample(Journal& journal)
        : Form({.Name = u"Sample", .Caption = u"design", .Client = {1000, 800}, .Border = {90, 435}}),
          journal(journal) {
        Set_Default_Button(ok);
        Set_Cancel_Button(cancel);
        for (Control* control : Controls())
            Note(control->On_Lost_Focus, *control, "_LostFocus");
        Note(text.On_Change, text, "_Change");
        Note(combo.On_Change, combo, "_Change");
        const auto note_clicks = [this](auto&... all) { (Note(all.On_Click, all, "_Click"), ...); };
        note_clicks(first, second, outside, choice, combo, list, ok, cancel);
    }
    ~Sample() override { journal.Add("destroyed"); }

    std::function<void(bool& cancel)> Asked;

    // In the order of creation; the tab order is text, first, second, outside, combo, choice, list, ok,
    // cancel.
    Frame frame{*this, Laid_Out(1, u"frame", 2)};
    Option_Button second{*this, Laid_Out(2, u"second", 4, &frame)};
    Option_Button first{*this, Laid_Out(3, u"first", 3, &frame)};
    Option_Button outside{*this, Laid_Out(4, u"outside", 5)};
    Label label{*this, Laid_Out(5, u"label", 0), {}};
    Label sized{*this, Laid_Out(6, u"sized", 11), {.Auto_Size = true}};
    Text_Box text{*this, Laid_Out(7, u"text", 1)};
    Combo_Box choice{*this, Laid_Out(8, u"choice", 7), Combo_Box::Style::List_Only, true};
    Combo_Box combo{*this, Laid_Out(9, u"combo", 6), Combo_Box::Style::Editable};
    List_Box list{*this, Laid_Out(10, u"list", 8)};
    Command_Button cancel{*this, Laid_Out(11, u"cancel", 10)};
    Command_Button ok{*this, Laid_Out(12, u"ok", 9)};

private:
    static Design Laid_Out(int id, String_View name, int tab, Control* container = nullptr) {
        return {.Id = id, .Name = name, .Place = {10, 20, 30, 40}, .Tab_Index = tab, .Container = container};
    }
    void On_Unload(bool& cancel_it) override {
        journal.Add("unload?");
        if (Asked)
            Asked(cancel_it);
    }
    void On_Discarded() override { journal.Add("discarded"); }
    void Note(Handler& handler, const Control& control, const char* event) {
        handler = [this, line = To_UTF8(control.Name()) + event] { journal.Add(line); };
    }

    Journal& journal;
};

class Toolkit : public testing::Test {
protected:
    Journal journal;
    Recording_Display display{journal};
    std::shared_ptr<Sample> form = std::make_shared<Sample>(journal);

    // Replaces the form by a loaded one with three entries in the editable combo box and the list.
    void Load_New_Form() {
        form = std::make_shared<Sample>(journal);
        form->Load();
        for (const String_View item : {u"50", u"100", u"200"}) {
            form->combo.Add_Item(item);
            form->list.Add_Item(item);
        }
        (void)journal.Take();
    }

    // Shows the loaded form; the body acts while it is up.
    void Shown(const std::function<void()>& body) {
        display.While_Shown = [&](Form& shown) {
            (void)journal.Take();
            body();
            if (shown.Is_Visible())
                shown.Hide();
        };
        form->Show_Modal();
    }

    template <typename Body>
    std::string Journal_Of(Body&& body) {
        (void)journal.Take();
        body();
        return journal.Take();
    }
};

} // namespace toolkit_test
