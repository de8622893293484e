#include "message_window.h"

#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <memory>

#include "design_font.h"
#include "geometry.h"
#include "qt_text.h"

namespace window {

namespace {

QMessageBox::Icon Icon_Of(const toolkit::Message& message) {
    if (!message.By_Product)
        return message.Style == 16 ? QMessageBox::Critical : QMessageBox::Information;
    switch (message.Kind) {
    case 1:
        return QMessageBox::Question;
    case 3:
        return QMessageBox::Critical;
    default:
        return QMessageBox::Information;
    }
}

void Set_Buttons(QMessageBox& box, bool asks) {
    box.setStandardButtons(asks ? QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel
                                : QMessageBox::StandardButtons(QMessageBox::Ok));
    box.setDefaultButton(asks ? QMessageBox::Save : QMessageBox::Ok);
}

automation::Long Answer_Of(const toolkit::Message& message, int button) {
    if (!message.Asks())
        return toolkit::answer::OK;
    switch (button) {
    case QMessageBox::Save:
        return toolkit::answer::Save;
    case QMessageBox::Discard:
        return toolkit::answer::Discard;
    default:
        return toolkit::answer::Cancel;
    }
}

std::unique_ptr<QMessageBox> Create_Box(const toolkit::Message& message, QWidget* over) {
    auto box = std::make_unique<QMessageBox>(over); // it goes with the dialog, if that goes first
    box->setFont(Stand_In({}, User_Scale()));
    box->setTextFormat(Qt::PlainText);
    box->setText(To_Qt(message.Text));
    box->setWindowTitle(To_Qt(message.Title));
    box->setIcon(Icon_Of(message));
    box->setAttribute(Qt::WA_QuitOnClose, false);
    Set_Buttons(*box, message.Asks());
    return box;
}

} // namespace

QWidget& Button_Of(const QMessageBox& box, automation::Long answer) {
    switch (answer) {
    case toolkit::answer::Save:
        return *box.button(QMessageBox::Save);
    case toolkit::answer::Discard:
        return *box.button(QMessageBox::Discard);
    case toolkit::answer::Cancel:
        return *box.button(QMessageBox::Cancel);
    default:
        return *box.button(QMessageBox::Ok);
    }
}

automation::Long Ask(const toolkit::Message& message, QWidget* over) {
    const QPointer box = Create_Box(message, over).release();
    const int button = box->exec();
    delete box;
    return Answer_Of(message, button);
}

QMessageBox& Put(const toolkit::Message& message, QWidget* over,
                 const std::function<void(automation::Long)>& answered) {
    auto box = Create_Box(message, over);
    QObject::connect(box.get(), &QDialog::finished, box.get(),
                     [message, shown = box.get(), answered](int button) {
                         shown->deleteLater();
                         answered(Answer_Of(message, button));
                     });
    box->open(); // blocks the dialog that it belongs to, and no other
    return *box.release();
}

} // namespace window
