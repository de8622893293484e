#include "application.h"

#include "desktop_colors.h"
#include "platform_check.h"
#include "window/qt_display.h"

namespace window {

std::unique_ptr<QApplication> Create_Application(int& argc, char** argv) {
    const Platform_Check check;
    if (!check.Obstacle().isEmpty())
        throw Cannot_Show(check.Obstacle().toStdString());
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    Follow_Desktop_Colors();
    return application;
}

void Require_Widgets(const QCoreApplication& present) {
    if (!qobject_cast<const QApplication*>(&present))
        throw Cannot_Show(
            "There is no display: the host's Qt application has no widgets; make it a QApplication");
}

} // namespace window
