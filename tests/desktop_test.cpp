// The built editor on a desktop that tells by its settings portal whether it wants dark colours.
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QImage>

#include "x_server.h"

namespace {

using program_run::Program;

// A session bus of the test's own.
class Session_Bus {
public:
    const std::string& Address() const { return place; }

private:
    const Temporary_Folder home;
    const Program daemon{
        "/usr/bin/env", {"dbus-daemon", "--session", "--nofork", "--print-address"}, home, home.String()};
    const std::string place = Announcement(daemon, home);
};

class Portal final : public QDBusVirtualObject {
public:
    explicit Portal(const QVariant& scheme) : scheme(scheme) {}
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& question, const QDBusConnection& connection) override {
        const QVariantList wanted{"org.freedesktop.appearance", "color-scheme"};
        if (question.interface() != "org.freedesktop.portal.Settings" || question.member() != "Read" ||
            question.arguments() != wanted)
            return false;
        const QDBusVariant inner(scheme);
        return connection.send(
            question.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
    }

private:
    const QVariant scheme;
};

// Of the window behind everything.
QColor Shown_Color(const X_Server& x, const std::string& bus) {
    const Temporary_Folder home;
    const std::string picture = home / "picture.png";
    Program editor("/usr/bin/env",
                   {x.Display(), "QT_QPA_PLATFORM=xcb", "XDG_RUNTIME_DIR=" + home.String(),
                    "DBUS_SESSION_BUS_ADDRESS=" + bus, STYLE_EDITOR, "play", "-", "--appdata", home.String(),
                    "--picture", picture},
                   home, home.String(), "shown 1 1 12\nshow form\nclick cmdCancel\n");
    EXPECT_TRUE(Comes([&] {
        QCoreApplication::processEvents(); // the portal answers
        return editor.Has_Ended();
    }));
    EXPECT_EQ(editor.End().Status, 0);
    const QImage image(QString::fromStdString(picture));
    return image.isNull() ? QColor() : image.pixelColor(3, 3);
}

TEST(Desktop, Is_Dark_When_Its_Portal_Says_So) {
    int count = 1;
    char name[] = "desktop_test";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    const X_Server x;
    const Session_Bus bus;
    const QColor light = Shown_Color(x, bus.Address()); // nobody answers
    ASSERT_TRUE(light.isValid());
    EXPECT_GT(light.lightness(), 200);
    auto connection = QDBusConnection::connectToBus(QString::fromStdString(bus.Address()), "portal");
    ASSERT_TRUE(connection.registerService("org.freedesktop.portal.Desktop"));
    for (const uint scheme : {0U, 1U, 2U}) {
        Portal portal(scheme);
        ASSERT_TRUE(connection.registerVirtualObject("/org/freedesktop/portal/desktop", &portal));
        const QColor color = Shown_Color(x, bus.Address());
        if (scheme == 1)
            EXPECT_LT(color.lightness(), 80);
        else
            EXPECT_EQ(color, light) << scheme;
        connection.unregisterObject("/org/freedesktop/portal/desktop");
    }
}

} // namespace
