#include "transcript/transcript.h"

#include "automation/text.h"

#include <nlohmann/json.hpp>

namespace host {

namespace {

using nlohmann::ordered_json;

std::string UTF8(String_View text) {
    return automation::To_UTF8(text);
}

void Print(std::ostream& out, const ordered_json& line) {
    out << line.dump() << std::endl;
}

void Add_Place(ordered_json& line, const toolkit::Rectangle& place) {
    line["left"] = place.Left;
    line["top"] = place.Top;
    line["width"] = place.Width;
    line["height"] = place.Height;
}

// What the kind has besides name, state and place, in front of these.
void Add_Contents(ordered_json& line, const toolkit::Control& control,
                  const toolkit::Control_Snapshot& seen) {
    if (const auto* text = dynamic_cast<const toolkit::Text_Control*>(&control)) {
        if (control.Kind() == toolkit::Control_Kind::List_Box)
            return;
        line["text"] = UTF8(seen.Text);
        if (text->Is_Editable())
            line["caret"] = seen.Caret;
        return;
    }
    line["caption"] = UTF8(seen.Caption);
    if (control.Kind() == toolkit::Control_Kind::Option_Button)
        line["value"] = seen.Value;
}

} // namespace

void Transcript::Call(String_View component, String_View operation, const std::vector<String>& arguments) {
    auto texts = ordered_json::array();
    for (const String& argument : arguments)
        texts.push_back(UTF8(argument));
    Print(*out, {{"event", "call"},
                 {"component", UTF8(component)},
                 {"operation", UTF8(operation)},
                 {"arguments", texts}});
}

void Transcript::Box(const toolkit::Message& message, Long answer) {
    ordered_json line{{"event", "box"}};
    line["by"] = message.By_Product ? "product" : "platform";
    if (message.By_Product)
        line["language"] = message.Language;
    line["text"] = UTF8(message.Text);
    if (message.By_Product) {
        line["kind"] = message.Kind;
        line["buttons"] = message.Buttons;
    } else
        line["style"] = message.Style;
    line["title"] = UTF8(message.Title);
    line["answer"] = answer;
    Print(*out, line);
}

void Transcript::No_Form() {
    Print(*out, {{"event", "form"}, {"loaded", false}});
}

void Transcript::Form(const toolkit::Form& form, const toolkit::Form_Snapshot& seen) {
    ordered_json line{{"event", "form"}, {"loaded", true}};
    line["visible"] = form.Is_Visible();
    line["caption"] = UTF8(seen.Caption);
    Add_Place(line, seen.Place);
    line["mouse_pointer"] = form.Mouse_Pointer();
    line["screen_pointer"] = toolkit::screen::Mouse_Pointer();
    line["focus"] = UTF8(seen.Focus);
    Print(*out, line);
}

void Transcript::Control(const toolkit::Control& control, const toolkit::Control_Snapshot& seen) {
    ordered_json line{{"event", "control"}};
    line["name"] = UTF8(control.Name());
    line["kind"] = UTF8(toolkit::Kind_Name(control.Kind()));
    Add_Contents(line, control, seen);
    line["enabled"] = seen.Enabled;
    line["visible"] = seen.Visible;
    Add_Place(line, seen.Place);
    if (dynamic_cast<const toolkit::List_Control*>(&control)) {
        line["index"] = seen.Index;
        line["count"] = seen.Count;
    }
    Print(*out, line);
}

void Transcript::Items(const toolkit::List_Control& list) {
    auto items = ordered_json::array();
    auto data = ordered_json::array();
    for (Long index = 0; index < list.Count(); ++index) {
        items.push_back(UTF8(list.Item(index)));
        data.push_back(list.Item_Data(index));
    }
    Print(*out, {{"event", "items"}, {"name", UTF8(list.Name())}, {"items", items}, {"data", data}});
}

void Transcript::Refused(int line, String_View command, String_View reason) {
    Print(*out, {{"event", "refused"}, {"line", line}, {"command", UTF8(command)}, {"reason", UTF8(reason)}});
}

void Transcript::Result(const Job_Outcome& outcome) {
    Print(*out, {{"event", "result"},
                 {"shown", outcome.Shown},
                 {"ErrLocation", UTF8(outcome.Error_Location)},
                 {"ErrCode", outcome.Error_Code},
                 {"ErrDescription", UTF8(outcome.Error_Description)},
                 {"Editing_Default_Node", outcome.Editing_Default_Node},
                 {"SupervisedType_Blind", outcome.SupervisedType_Blind}});
}

} // namespace host
