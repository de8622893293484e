#include "plain_dialog.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

#include <algorithm>
#include <cmath>
#include <map>

namespace benchmarks {

namespace {

using toolkit::Control;
using toolkit::Control_Kind;

QString Text(const toolkit::String& text) {
    return QString::fromStdU16String(text);
}

QRect Pixels(const toolkit::Rectangle& place) {
    const auto pixels = [](toolkit::Twips twips) { return static_cast<int>(std::lround(twips / 15.0)); };
    return {pixels(place.Left), pixels(place.Top), pixels(place.Width), pixels(place.Height)};
}

QFont Font_Of(const toolkit::Font& face) {
    QFont font("Liberation Sans");
    font.setPixelSize(static_cast<int>(std::lround(face.Points * 96 / 72)));
    font.setWeight(static_cast<QFont::Weight>(face.Weight));
    return font;
}

QPixmap Picture(const toolkit::Form& form, automation::Long id) {
    const auto bytes = form.Pictures()(id);
    QPixmap picture;
    picture.loadFromData(bytes.data(), static_cast<unsigned>(bytes.size()));
    return picture;
}

QStringList Entries(const toolkit::List_Control& list) {
    QStringList entries;
    for (automation::Long at = 0; at < list.Count(); ++at)
        entries << Text(list.Item(at));
    return entries;
}

QWidget* Make_Label(const toolkit::Label& label, QWidget* parent) {
    auto* const shown = new QLabel(Text(label.Caption()), parent);
    if (label.Look().Line == toolkit::Label::Border::Single)
        shown->setFrameStyle(int{QFrame::StyledPanel} | int{QFrame::Sunken});
    shown->setAlignment(label.Look().Align == toolkit::Label::Alignment::Center
                            ? Qt::Alignment(Qt::AlignCenter)
                            : Qt::AlignLeft | Qt::AlignTop);
    return shown;
}

QWidget* Make_Button(const toolkit::Command_Button& button, QWidget* parent) {
    auto* const shown = new QPushButton(Text(button.Caption()), parent);
    shown->setAutoDefault(false);
    shown->setDefault(button.Owner_Form().Default_Button() == &button);
    if (button.Picture() != 0)
        shown->setIcon(Picture(button.Owner_Form(), button.Picture()));
    return shown;
}

QWidget* Make_Combo(const toolkit::Combo_Box& combo, QWidget* parent) {
    auto* const shown = new QComboBox(parent);
    shown->setEditable(combo.Is_Editable());
    shown->addItems(Entries(combo));
    shown->setCurrentIndex(combo.Selected_Index());
    if (combo.Is_Editable())
        shown->setEditText(Text(combo.Text()));
    return shown;
}

QWidget* Make(const Control& control, QWidget* parent) {
    switch (control.Kind()) {
    case Control_Kind::Label:
        return Make_Label(static_cast<const toolkit::Label&>(control), parent);
    case Control_Kind::Frame:
        return new QGroupBox(Text(control.Caption()), parent);
    case Control_Kind::Option_Button: {
        auto* const option = new QRadioButton(Text(control.Caption()), parent);
        option->setChecked(static_cast<const toolkit::Option_Button&>(control).Value());
        return option;
    }
    case Control_Kind::Command_Button:
        return Make_Button(static_cast<const toolkit::Command_Button&>(control), parent);
    case Control_Kind::Text_Box:
        return new QLineEdit(Text(static_cast<const toolkit::Text_Box&>(control).Text()), parent);
    case Control_Kind::List_Box: {
        auto* const list = new QListWidget(parent);
        list->addItems(Entries(static_cast<const toolkit::List_Box&>(control)));
        return list;
    }
    case Control_Kind::Combo_Box:
        return Make_Combo(static_cast<const toolkit::Combo_Box&>(control), parent);
    }
    return nullptr;
}

using Widgets = std::map<const Control*, QWidget*>;

void Add(const Control& control, const toolkit::Form& form, Widgets& made) {
    QWidget* const widget = made[&control] = Make(control, made.at(control.Container()));
    widget->setObjectName(Text(control.Name()));
    if (control.Face() != form.Face())
        widget->setFont(Font_Of(control.Face()));
    widget->setGeometry(Pixels(control.Place()));
    widget->setEnabled(control.Enabled());
    widget->setVisible(control.Visible());
}

// A label leads to the field behind it.
void Put_In_Order(const toolkit::Form& form, Widgets& made) {
    std::vector<Control*> order = form.Controls();
    std::sort(order.begin(), order.end(),
              [](auto* left, auto* right) { return left->Tab_Index() < right->Tab_Index(); });
    for (std::size_t at = 1; at < order.size(); ++at) {
        QWidget::setTabOrder(made[order[at - 1]], made[order[at]]);
        if (auto* const label = qobject_cast<QLabel*>(made[order[at - 1]]); label && order[at]->Takes_Focus())
            label->setBuddy(made[order[at]]);
    }
}

} // namespace

std::unique_ptr<QDialog> Make_Plain_Dialog(const toolkit::Form& form) {
    auto dialog = std::make_unique<QDialog>();
    dialog->setWindowTitle(Text(form.Caption()));
    dialog->setWindowIcon(Picture(form, toolkit::Icon_Picture));
    dialog->setFont(Font_Of(form.Face()));
    Widgets made{{nullptr, dialog.get()}};
    for (const bool containers : {true, false})
        for (const Control* control : form.Controls())
            if ((control->Kind() == Control_Kind::Frame) == containers)
                Add(*control, form, made);
    Put_In_Order(form, made);
    const QRect place = Pixels(form.Place());
    dialog->setFixedSize(place.size() - QSize(6, 29));
    dialog->move(place.topLeft());
    if (form.Focused())
        made[form.Focused()]->setFocus();
    return dialog;
}

} // namespace benchmarks
