#include <QApplication>
#include <QFile>
#include <QPixmap>
#include <QThread>

#include "form_window.h"
#include "window/qt_display.h"

namespace window {

void Save_Picture(toolkit::Form& form, const std::string& path) {
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application || application->thread() != QThread::currentThread())
        throw Cannot_Show("No picture can be made without a display on this thread; create one first");
    Form_Window window(form);
    if (!window.Dialog().grab().save(QFile::decodeName(path.c_str()), "PNG"))
        throw Cannot_Show("The picture " + path + " cannot be written; check the folder and its rights");
}

} // namespace window
