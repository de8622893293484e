// The window against the bare toolkit: the first paint of the dialog and of an equal plain one in turns, a
// key, and the list of the nodes. Prints minima in milliseconds and ends with 1 when a bound is missed.
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <functional>
#include <map>
#include <stdexcept>

#include "dialog/dlg_gui.h"
#include "window/qt_display.h"

namespace {

using toolkit::Control_Kind;

double Milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

std::shared_ptr<dialog::dlgGUI> Form_With(int nodes) {
    const auto form = std::make_shared<dialog::dlgGUI>();
    for (int node = 0; node < nodes; ++node)
        form->cmbNode.Add_Item(u"STYLE " + QString::number(node).toStdU16String());
    return form;
}

void Show_Form(toolkit::Form& form, const std::function<void(QDialog&)>& act) {
    QTimer::singleShot(0, [&] {
        act(*qobject_cast<QDialog*>(QApplication::activeModalWidget()));
        form.Hide();
    });
    form.Show_Modal();
}

QWidget* Plain(const toolkit::Control& control, QWidget* parent, const QStringList& nodes) {
    const QString caption = QString::fromStdU16String(control.Caption());
    switch (control.Kind()) {
    case Control_Kind::Label:
        return new QLabel(caption, parent);
    case Control_Kind::Frame:
        return new QGroupBox(caption, parent);
    case Control_Kind::Option_Button:
        return new QRadioButton(caption, parent);
    case Control_Kind::Command_Button:
        return new QPushButton(caption, parent);
    case Control_Kind::Text_Box:
        return new QLineEdit(parent);
    default:
        auto* const combo = new QComboBox(parent);
        combo->setEditable(control.Name() != u"cmbNode");
        if (control.Name() == u"cmbNode")
            combo->addItems(nodes);
        return combo;
    }
}

void Show_Plain(const toolkit::Form& form, const QStringList& nodes) {
    QDialog dialog;
    QFont font("Liberation Sans");
    font.setPixelSize(11);
    dialog.setFont(font);
    std::map<const toolkit::Control*, QWidget*> made{{nullptr, &dialog}};
    for (const bool frames : {true, false}) // containers first
        for (const toolkit::Control* control : form.Controls())
            if ((control->Kind() == Control_Kind::Frame) == frames && control->Visible()) {
                QWidget* const widget = Plain(*control, made[control->Container()], nodes);
                const toolkit::Rectangle& place = control->Place();
                widget->setGeometry(place.Left / 15, place.Top / 15, place.Width / 15, place.Height / 15);
                made[control] = widget;
            }
    dialog.setFixedSize(312, 507);
    QTimer::singleShot(0, [&] { dialog.repaint(), dialog.reject(); });
    dialog.exec();
}

bool First_Paint(int nodes) {
    QStringList texts;
    for (int node = 0; node < nodes; ++node)
        texts << "STYLE " + QString::number(node);
    double ours = 1e9, plain = 1e9;
    for (int round = 0; round < 30; ++round) {
        const auto fresh = Form_With(nodes);
        ours =
            std::min(ours, Milliseconds([&] { Show_Form(*fresh, [](auto& dialog) { dialog.repaint(); }); }));
        plain = std::min(plain, Milliseconds([&] { Show_Plain(*fresh, texts); }));
        toolkit::Discard_All_Forms();
    }
    std::printf("first paint, %d nodes: %.2f, plain %.2f, ratio %.2f\n", nodes, ours, plain, ours / plain);
    return ours <= 1.3 * plain;
}

double Opening(int nodes) {
    double least = 1e9;
    const auto form = Form_With(nodes);
    Show_Form(*form, [&](QDialog& dialog) {
        auto& combo = *dialog.findChild<QComboBox*>("cmbNode");
        for (int round = 0; round < 10; ++round) {
            least = std::min(least, Milliseconds([&] { combo.showPopup(), QApplication::processEvents(); }));
            combo.hidePopup();
        }
    });
    return least;
}

// Without a handler behind the field: what is left is the window's share.
class One_Field final : public toolkit::Form {
public:
    One_Field() : Form({u"One", u"One", {4680, 1000}, {90, 435}}) {}
    toolkit::Text_Box txtText{*this, {1, u"txtText", {120, 120, 3375, 285}, 0}};
};

double Key() {
    double least = 1e9;
    const auto form = std::make_shared<One_Field>();
    Show_Form(*form, [&](QDialog& dialog) {
        auto& line = *dialog.findChild<QLineEdit*>("txtText");
        for (int round = 0; round < 200; ++round) {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
            least = std::min(least, Milliseconds([&] { QApplication::sendEvent(&line, &key); }));
        }
        if (form->txtText.Text().size() != 200)
            throw std::logic_error("the keys did not arrive");
    });
    return least;
}

} // namespace

int main(int argc, char** argv) {
    const auto display = window::Create_Qt_Display(argc, argv);
    toolkit::Set_Display(display.get());
    bool kept = First_Paint(12);
    kept = First_Paint(32'767) && kept;
    const double empty = Opening(1), full = Opening(32'767), key = Key();
    std::printf("opening the list: %.2f with one node, %.2f with 32767 nodes\nkey: %.4f\n", empty, full, key);
    toolkit::Discard_All_Forms();
    toolkit::Set_Display(nullptr);
    return kept && full - empty <= 5 && key <= 0.1 ? 0 : 1;
}
