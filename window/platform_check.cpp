#include "platform_check.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QStringList>

namespace window {

namespace {

// The platforms that Qt has plugins for, by the names they answer to.
QStringList Installed_Platforms() {
    QStringList names;
    for (const QString& folder : QCoreApplication::libraryPaths()) {
        const QDir plugins(folder + QStringLiteral("/platforms"));
        for (const QString& file : plugins.entryList(QDir::Files)) {
            const QJsonObject about = QPluginLoader(plugins.filePath(file)).metaData();
            for (const auto& key :
                 about[QStringLiteral("MetaData")].toObject()[QStringLiteral("Keys")].toArray())
                names.append(key.toString().toLower());
        }
    }
    return names;
}

// The client libraries come with Qt's plugins, so they are looked for when the program runs. They know about
// sockets, hosts and rights.
bool Reaches_X_Server() {
    QLibrary library(QStringLiteral("xcb"), 1);
    using Connection = void;
    const auto open = reinterpret_cast<Connection* (*)(const char*, int*)>(library.resolve("xcb_connect"));
    const auto failed = reinterpret_cast<int (*)(Connection*)>(library.resolve("xcb_connection_has_error"));
    const auto close = reinterpret_cast<void (*)(Connection*)>(library.resolve("xcb_disconnect"));
    if (!open || !failed || !close)
        return false;
    Connection* const connection = open(nullptr, nullptr);
    const bool reached = failed(connection) == 0;
    close(connection);
    return reached;
}

bool Reaches_Wayland_Compositor() {
    QLibrary library(QStringLiteral("wayland-client"), 0);
    using Connection = void;
    const auto open = reinterpret_cast<Connection* (*)(const char*)>(library.resolve("wl_display_connect"));
    const auto close = reinterpret_cast<void (*)(Connection*)>(library.resolve("wl_display_disconnect"));
    Connection* const connection = open && close ? open(nullptr) : nullptr;
    if (connection)
        close(connection);
    return connection != nullptr;
}

// `name` may carry parameters: "offscreen:enable_fonts".
bool Works(const QString& name, const QStringList& installed) {
    const QString platform = name.section(QLatin1Char(':'), 0, 0).toLower();
    if (!installed.contains(platform))
        return false;
    if (platform == QStringLiteral("xcb"))
        return Reaches_X_Server();
    return !platform.startsWith(QStringLiteral("wayland")) || Reaches_Wayland_Compositor();
}

QString First_Working(const QStringList& names) {
    const QStringList installed = Installed_Platforms();
    for (const QString& name : names)
        if (Works(name, installed))
            return name;
    return {};
}

QString Value_Of(const char* variable) {
    return QStringLiteral("%1 is %2")
        .arg(QLatin1String(variable), qEnvironmentVariableIsEmpty(variable) ? QStringLiteral("not set")
                                                                            : qEnvironmentVariable(variable));
}

} // namespace

QString Obstacle_To_Windows() {
    const QString wanted = qEnvironmentVariable("QT_QPA_PLATFORM");
    if (!wanted.isEmpty()) {
        if (!First_Working(wanted.split(QLatin1Char(';'))).isEmpty())
            return {};
        return QStringLiteral(
                   "There is no display: QT_QPA_PLATFORM is %1, which does not work here; unset it, "
                   "or set it to offscreen to run without a screen")
            .arg(wanted);
    }
    const QString first = First_Working({QStringLiteral("xcb"), QStringLiteral("wayland")});
    if (first.isEmpty())
        return QStringLiteral("There is no display: %1 and %2, and neither is reached; start it in a desktop "
                              "session, or set QT_QPA_PLATFORM to offscreen to run without a screen")
            .arg(Value_Of("DISPLAY"), Value_Of("WAYLAND_DISPLAY"));
    if (first != QStringLiteral("xcb")) // which is what Qt falls back to
        qputenv("QT_QPA_PLATFORM", first.toLocal8Bit());
    return {};
}

} // namespace window
