#include "platform_check.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>

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
// sockets, hosts and rights. Both answer an open connection, or null.

std::shared_ptr<void> Reach_X_Server() {
    QLibrary library(QStringLiteral("xcb"), 1);
    const auto open = reinterpret_cast<void* (*)(const char*, int*)>(library.resolve("xcb_connect"));
    const auto failed = reinterpret_cast<int (*)(void*)>(library.resolve("xcb_connection_has_error"));
    const auto close = reinterpret_cast<void (*)(void*)>(library.resolve("xcb_disconnect"));
    if (!open || !failed || !close)
        return {};
    std::shared_ptr<void> connection(open(nullptr, nullptr), close);
    return failed(connection.get()) == 0 ? connection : nullptr;
}

std::shared_ptr<void> Reach_Wayland_Compositor() {
    QLibrary library(QStringLiteral("wayland-client"), 0);
    const auto open = reinterpret_cast<void* (*)(const char*)>(library.resolve("wl_display_connect"));
    const auto close = reinterpret_cast<void (*)(void*)>(library.resolve("wl_display_disconnect"));
    void* const connection = open && close ? open(nullptr) : nullptr;
    return connection ? std::shared_ptr<void>(connection, close) : nullptr;
}

QString Value_Of(const char* variable) {
    return QStringLiteral("%1 is %2")
        .arg(QLatin1String(variable), qEnvironmentVariableIsEmpty(variable) ? QStringLiteral("not set")
                                                                            : qEnvironmentVariable(variable));
}

QString No_Server() {
    return QStringLiteral(
               "There is no display: %1 and %2, and neither is reached; start it in a desktop session, "
               "or edit in a text terminal (style-editor edit --terminal)")
        .arg(Value_Of("DISPLAY"), Value_Of("WAYLAND_DISPLAY"));
}

// For a session, or a wish, that Qt has no plug-in for: which package brings it. Empty when it is something
// else.
QString Missing_Plug_In(const QString& wanted, const QStringList& installed) {
    struct Known {
        QString Platform, Package;
        const char* Session;
    };
    const Known known[] = {{QStringLiteral("wayland"), QStringLiteral("qt6-wayland"), "WAYLAND_DISPLAY"},
                           {QStringLiteral("xcb"), QStringLiteral("libqt6gui6"), "DISPLAY"}};
    for (const Known& one : known) {
        const bool asked = wanted.isEmpty()
                               ? !qEnvironmentVariableIsEmpty(one.Session)
                               : wanted.section(QLatin1Char(':'), 0, 0).toLower() == one.Platform;
        if (asked && !installed.contains(one.Platform))
            return QStringLiteral("There is no display: Qt's plug-in for the platform %1 is missing; "
                                  "install the package %2")
                .arg(one.Platform, one.Package);
    }
    return {};
}

QString Not_Working(const QString& platform) {
    return QStringLiteral("There is no display: QT_QPA_PLATFORM is %1, which does not work here; unset it")
        .arg(platform);
}

} // namespace

// `name` may carry parameters: "offscreen:enable_fonts".
bool Platform_Check::Works(const QString& name, const QStringList& installed) {
    const QString kind = name.section(QLatin1Char(':'), 0, 0).toLower();
    if (!installed.contains(kind))
        return false;
    if (kind == QStringLiteral("xcb"))
        connection = Reach_X_Server();
    else if (kind.startsWith(QStringLiteral("wayland")))
        connection = Reach_Wayland_Compositor();
    else
        return true; // needs no server
    return connection != nullptr;
}

QString Platform_Check::First_Working(const QStringList& names, const QStringList& installed) {
    for (const QString& name : names)
        if (Works(name, installed))
            return name;
    return {};
}

Platform_Check::Platform_Check() {
    const QString wanted = qEnvironmentVariable("QT_QPA_PLATFORM");
    const QStringList installed = Installed_Platforms();
    platform = First_Working(wanted.isEmpty() ? QStringList{QStringLiteral("xcb"), QStringLiteral("wayland")}
                                              : wanted.split(QLatin1Char(';')),
                             installed);
    if (!platform.isEmpty())
        return;
    obstacle = Missing_Plug_In(wanted, installed);
    if (obstacle.isEmpty())
        obstacle = wanted.isEmpty() ? No_Server() : Not_Working(wanted);
}

} // namespace window
