#include "control_view.h"

#include <cmath>
#include <utility>

#include "combo_view.h"
#include "design_font.h"
#include "geometry.h"
#include "qt_text.h"

namespace window {

using toolkit::Control_Kind;

Control_View::Control_View(toolkit::Control& control, QWidget* widget, Input& input)
    : control(control), widget(widget), input(input), shown_scale(input.Scale()) {
    widget->setObjectName(To_Qt(control.Name()));
    // Before it has entries to lay out; and a combo box that is told of a font makes its list for it.
    if (const QFont font = Stand_In(control.Face(), shown_scale); widget->font() != font)
        widget->setFont(font);
}

int Control_View::Scaled(int pixels) const {
    return static_cast<int>(std::lround(pixels * Scale()));
}

void Control_View::Control_Changed(toolkit::Property property) {
    changed = true;
    entries_changed = entries_changed || property == toolkit::Property::Items;
}

void Control_View::Refresh() {
    const bool scaled = std::exchange(shown_scale, Scale()) != Scale();
    if (!std::exchange(changed, false) && !scaled)
        return;
    if (scaled) {
        widget->setFont(Stand_In(control.Face(), Scale()));
        fitted_width = -1;
    }
    widget->setGeometry(Pixels(control.Place(), Scale()));
    widget->setEnabled(control.Enabled());
    widget->setVisible(control.Visible());
    if (std::exchange(entries_changed, false))
        Entries_Changed();
    Show();
}

void Control_View::Fit_Caption(int pixels) {
    const QString drawn = To_Qt(toolkit::Drawn_Caption(control.Caption()));
    if (pixels == fitted_width && drawn == fitted_caption)
        return;
    widget->setFont(Fitted(control.Face(), Scale(), drawn, pixels));
    fitted_caption = drawn;
    fitted_width = pixels;
}

std::unique_ptr<Control_View> Create_View(toolkit::Control& control, QWidget* parent, Input& input) {
    switch (control.Kind()) {
    case Control_Kind::Label:
        return std::make_unique<Label_View>(static_cast<toolkit::Label&>(control), parent, input);
    case Control_Kind::Text_Box:
        return std::make_unique<Text_View>(static_cast<toolkit::Text_Box&>(control), parent, input);
    case Control_Kind::Combo_Box:
        return std::make_unique<Combo_View>(static_cast<toolkit::Combo_Box&>(control), parent, input);
    case Control_Kind::List_Box:
        return std::make_unique<List_View>(static_cast<toolkit::List_Box&>(control), parent, input);
    case Control_Kind::Option_Button:
        return std::make_unique<Option_View>(static_cast<toolkit::Option_Button&>(control), parent, input);
    case Control_Kind::Frame:
        return std::make_unique<Frame_View>(static_cast<toolkit::Frame&>(control), parent, input);
    case Control_Kind::Command_Button:
        return std::make_unique<Button_View>(static_cast<toolkit::Command_Button&>(control), parent, input);
    }
    return {};
}

} // namespace window
