#include "desktop_colors.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QPalette>

#include "form_style.h"

namespace window {

namespace {

// Offscreen there is no desktop, and without an address Qt would start a bus of its own.
bool May_Have_Portal() {
    const QString platform = QGuiApplication::platformName();
    return (platform == "xcb" || platform.startsWith("wayland")) &&
           qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS");
}

// The portal answers with a variant in a variant.
QVariant Unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

bool Is_Dark_Wanted() {
    constexpr int Patience = 500; // milliseconds
    constexpr uint Prefers_Dark = 1;
    auto question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    question << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme");
    question.setAutoStartService(false); // a desktop that has one runs it; starting one takes long
    const QDBusMessage answer = QDBusConnection::sessionBus().call(question, QDBus::Block, Patience);
    return answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty() &&
           Unwrapped(answer.arguments().constFirst()).toUInt() == Prefers_Dark;
}

QPalette Dark_Palette() {
    QPalette palette(QColor(54, 54, 58)); // what is not named here follows from it
    palette.setColor(QPalette::Base, QColor(36, 36, 40));
    palette.setColor(QPalette::Highlight, QColor(53, 132, 228));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

} // namespace

void Follow_Desktop_Colors() {
    if (May_Have_Portal() && !Is_Dark(QApplication::palette()) && Is_Dark_Wanted())
        QApplication::setPalette(Dark_Palette());
}

} // namespace window
