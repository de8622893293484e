#include <QApplication>
#include <QFile>
#include <QPixmap>
#include <QThread>

#include "bridged_display.h"
#include "form_window.h"
#include "window/qt_display.h"

namespace window {

namespace {

void Save(toolkit::Form& form, const std::string& path, Runner& runner) {
    Form_Window window(form, runner);
    if (!window.Dialog().grab().save(QFile::decodeName(path.c_str()), "PNG"))
        throw Cannot_Show("The picture " + path + " cannot be written; check the folder and its rights");
}

bool Is_Applications_Thread() {
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    return application && application->thread() == QThread::currentThread();
}

} // namespace

bool Can_Save_Pictures() {
    return Has_Bridged_Display() || Is_Applications_Thread();
}

void Save_Picture(toolkit::Form& form, const std::string& path) {
    if (Done_On_Qt_Thread([&](Runner& runner) { Save(form, path, runner); }))
        return;
    if (!Is_Applications_Thread())
        throw Cannot_Show("No picture can be made without a display on this thread; create one first");
    Direct_Runner runner;
    Save(form, path, runner);
}

} // namespace window
