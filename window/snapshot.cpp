#include "snapshot.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>

#include "geometry.h"
#include "qt_text.h"

namespace window {

namespace {

void Look_At_Line(toolkit::Control_Snapshot& seen, const QLineEdit& line) {
    seen.Text = From_Qt(line.text());
    const int caret = line.hasSelectedText() ? line.selectionStart() : line.cursorPosition();
    seen.Caret = static_cast<std::size_t>(caret);
}

void Look_At_Combo(toolkit::Control_Snapshot& seen, const QComboBox& combo) {
    seen.Text = From_Qt(combo.currentText());
    if (combo.lineEdit())
        Look_At_Line(seen, *combo.lineEdit());
    seen.Index = combo.currentIndex();
    seen.Count = combo.count();
}

void Look_At_List(toolkit::Control_Snapshot& seen, const QListView& list) {
    seen.Text = From_Qt(list.currentIndex().data().toString());
    seen.Index = list.currentIndex().row();
    seen.Count = list.model()->rowCount();
}

toolkit::String Caption_Of(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        return From_Qt(label->text());
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return From_Qt(button->text());
    const auto* box = qobject_cast<const QGroupBox*>(&widget);
    return box ? From_Qt(box->title()) : toolkit::String();
}

} // namespace

toolkit::Control_Snapshot Snapshot_Of(const toolkit::Control& control, const QWidget& widget, double scale) {
    toolkit::Control_Snapshot seen;
    seen.Enabled = widget.isEnabledTo(widget.parentWidget());
    seen.Visible = !widget.isHidden();
    seen.Place = Twips(widget.geometry(), scale);
    seen.Caption = Caption_Of(widget);
    if (seen.Caption == toolkit::Drawn_Caption(control.Caption()))
        seen.Caption = control.Caption(); // a widget without an access key does not draw its mark
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        seen.Value = button->isChecked();
    if (const auto* line = qobject_cast<const QLineEdit*>(&widget))
        Look_At_Line(seen, *line);
    else if (const auto* combo = qobject_cast<const QComboBox*>(&widget))
        Look_At_Combo(seen, *combo);
    else if (const auto* list = qobject_cast<const QListView*>(&widget))
        Look_At_List(seen, *list);
    return seen;
}

toolkit::Form_Snapshot Snapshot_Of(const toolkit::Form& form, const QWidget& dialog, double scale) {
    toolkit::Rectangle place = Twips(QRect(dialog.pos(), dialog.size()), scale); // it begins with its frame
    place.Width += form.Border().Width;
    place.Height += form.Border().Height;
    const QWidget* const focused = dialog.focusWidget();
    return {From_Qt(dialog.windowTitle()), place,
            focused ? From_Qt(focused->objectName()) : toolkit::String()};
}

} // namespace window
