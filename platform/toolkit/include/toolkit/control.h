// Controls: plain objects with the event semantics that the dialog relies on.
//
// - A write that changes nothing raises and notifies nothing; any other write stores, tells the Display
//   once and raises its event, nested inside the write.
// - Writing a control of a form that is not loaded loads the form.
// - Using a control of a form that has been unloaded, and returning into a write during which the form was
//   unloaded, throws Form_Gone: it unwinds the handlers that are still on the stack.
// - A refused value is run-time failure 380, an index outside a list 381.
//
// A control belongs to its form and to the form's thread; names are the form's members' names. The User_
// members are for toolkit/user_input.h only.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "automation/failure.h"
#include "toolkit/display.h"

namespace toolkit {

class Form;

// Not a failure: nothing is reported, nothing is done. Handlers let it pass.
struct Form_Gone {};

enum class Control_Kind { Label, Text_Box, Combo_Box, List_Box, Option_Button, Frame, Command_Button };

// As a transcript or an accessibility tool calls it: "combo box".
String_View Kind_Name(Control_Kind kind);

struct Rectangle {
    Twips Left = 0;
    Twips Top = 0;
    Twips Width = 0;
    Twips Height = 0;
    friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

class Control;

// What the designer of a form lays down for every kind of control.
struct Design {
    int Id; // order of creation, from 1
    String_View Name;
    Rectangle Place; // relative to the container
    int Tab_Index;
    String_View Caption = {};
    Control* Container = nullptr; // null: the form itself
    bool Visible = true;
    Font Face = {};
};

using Handler = std::function<void()>;

class Control {
public:
    Control(Form& form, Control_Kind kind, const Design& design);
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    Control_Kind Kind() const { return kind; }
    int Id() const { return id; }
    const String& Name() const { return name; }
    Form& Owner_Form() const { return form; }
    Control* Container() const { return container; }
    int Tab_Index() const { return tab_index; }
    const Font& Face() const { return face; }

    const Rectangle& Place() const;
    Twips Left() const { return Place().Left; }
    Twips Top() const { return Place().Top; }
    Twips Width() const { return Place().Width; }
    // Parts left out keep their value. 380 for a negative extent.
    void Move(Twips left, std::optional<Twips> top = {}, std::optional<Twips> width = {},
              std::optional<Twips> height = {});
    void Set_Left(Twips left) { Move(left); }
    void Set_Top(Twips top) { Move(Left(), top); }

    bool Enabled() const;
    void Set_Enabled(bool value);
    bool Visible() const;
    void Set_Visible(bool value);

    const String& Caption() const; // empty for kinds that have none
    void Set_Caption(String_View value);

    // Whether a person can reach it: enabled and visible together with everything that contains it.
    bool Is_Reachable() const;
    bool Takes_Focus() const { return kind != Control_Kind::Label && kind != Control_Kind::Frame; }
    bool Is_Tab_Stop() const { return Takes_Focus() && Is_Reachable(); }

    Handler On_Lost_Focus;

protected:
    friend class Form;
    // Every write goes through these: usable, stored, told once.
    void Begin_Write() const;
    void Notify(Property property);
    void Raise(const Handler& handler);
    virtual void Caption_Changed() {}

private:
    template <typename Value>
    bool Store(Value& member, const Value& value, Property property);
    void Reachability_Changed();

    Form& form;
    const Control_Kind kind;
    const int id;
    const String name;
    Control* const container;
    const int tab_index;
    const Font face;
    Rectangle place;
    String caption;
    bool enabled = true;
    bool visible;
};

class Label final : public Control {
public:
    enum class Border { None, Single };
    enum class Alignment { Left, Center };
    // An auto-size label takes the size of its caption, as the Display measures it, at each write of it.
    struct Style {
        bool Auto_Size = false;
        Border Line = Border::None;
        Alignment Align = Alignment::Left;
    };
    Label(Form& form, const Design& design, const Style& style)
        : Control(form, Control_Kind::Label, design), style(style) {}
    const Style& Look() const { return style; }

private:
    void Caption_Changed() override;
    const Style style;
};

class Frame final : public Control {
public:
    Frame(Form& form, const Design& design) : Control(form, Control_Kind::Frame, design) {}
};

// A control with a text: a text box, and every list, whose text is its selected entry's.
class Text_Control : public Control {
public:
    using Control::Control;

    virtual bool Is_Editable() const { return true; }
    virtual const String& Text() const;
    // Puts the caret before the first character when it changes the text. 380 when not editable.
    void Set_Text(String_View value);

    // Caret as a position between code units, 0 before the first.
    std::size_t Selection_Start() const;
    void Set_Selection_Start(std::size_t position);

    void User_Edit(String_View value, std::size_t position);

    // What a text must be, said to a person; the designer's word, nothing is checked against it.
    const String& Rule() const { return rule; }
    void Set_Rule(String value) { rule = std::move(value); }

    Handler On_Change;

protected:
    void Replace_Text(String_View value, std::size_t position); // raises nothing
    virtual void Text_Edited() {}

private:
    String text;
    String rule;
    std::size_t caret = 0;
};

class Text_Box final : public Text_Control {
public:
    Text_Box(Form& form, const Design& design) : Text_Control(form, Control_Kind::Text_Box, design) {}
};

// Entries with a text and 32-bit item data each; indices count from 0, -1 is no selection.
class List_Control : public Text_Control {
public:
    using Text_Control::Text_Control;

    // Appends, or inserts by the text when the list is sorted.
    void Add_Item(String item);
    void Add_Item(String_View item) { Add_Item(String(item)); }
    void Add_Item(const char16_t* item) { Add_Item(String(item)); }
    void Clear();
    automation::Long Count() const;
    const String& Item(automation::Long index) const;                  // 381
    automation::Long Item_Data(automation::Long index) const;          // 381
    void Set_Item_Data(automation::Long index, automation::Long data); // 381
    // Index of the entry that was added last, which in a sorted list is not the last entry; -1 at first.
    automation::Long New_Index() const;
    automation::Long Selected_Index() const;
    // 380 outside -1 .. Count - 1. Raises On_Click, also when the index is the selected one already; the
    // entry's text goes into the field without On_Change.
    void Set_Selected_Index(automation::Long index);

    bool Is_Sorted() const { return sorted; }
    void User_Pick(automation::Long index) { Set_Selected_Index(index); }

    Handler On_Click;

protected:
    void Make_Sorted() { sorted = true; }
    void Text_Edited() override;

private:
    struct Entry {
        String Text;
        automation::Long Data = 0;
    };
    const Entry& At(automation::Long index) const;

    std::deque<Entry> entries; // a long list grows without being moved
    automation::Long selected = -1;
    automation::Long newest = -1;
    bool sorted = false;
};

class Combo_Box final : public List_Control {
public:
    enum class Style { Editable, List_Only };
    Combo_Box(Form& form, const Design& design, Style style, bool sorted = false)
        : List_Control(form, Control_Kind::Combo_Box, design), style(style) {
        if (sorted)
            Make_Sorted();
    }
    bool Is_Editable() const override { return style == Style::Editable; }
    const String& Text() const override;

private:
    const Style style;
};

class List_Box final : public List_Control {
public:
    List_Box(Form& form, const Design& design) : List_Control(form, Control_Kind::List_Box, design) {}
    bool Is_Editable() const override { return false; }
    const String& Text() const override;
};

class Option_Button final : public Control {
public:
    Option_Button(Form& form, const Design& design) : Control(form, Control_Kind::Option_Button, design) {}

    bool Value() const;
    // Selecting one deselects the others in its container, which raises nothing for them. Raises On_Click in
    // every case.
    void Set_Value(bool selected);
    // Raises nothing when it is selected already.
    void User_Select();

    Handler On_Click;

private:
    void Select();
    bool value = false;
};

class Command_Button final : public Control {
public:
    // `picture`: id of the bitmap that the button shows instead of a caption; 0 for none.
    Command_Button(Form& form, const Design& design, automation::Long picture = 0)
        : Control(form, Control_Kind::Command_Button, design), picture(picture) {}

    automation::Long Picture() const { return picture; }
    // Writing True presses the button.
    void Set_Value(bool pressed);
    void User_Press();

    Handler On_Click;

private:
    const automation::Long picture;
};

} // namespace toolkit
