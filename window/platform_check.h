// Whether Qt can open a window at all. It would end the process if asked in vain.
#pragma once

#include <QString>
#include <QStringList>

#include <memory>

namespace window {

// Make it before there is a Qt application, and keep it until there is one: an X server may start anew when
// its last client leaves, and refuse the next one meanwhile.
class Platform_Check {
public:
    Platform_Check();

    // Why not, in one line that says what to do; empty when it can.
    const QString& Obstacle() const { return obstacle; }
    // The platform to use, as Qt's option wants it: of QT_QPA_PLATFORM, or of this session, the first that
    // works.
    const QString& Platform() const { return platform; }

private:
    QString First_Working(const QStringList& names, const QStringList& installed);
    bool Works(const QString& name, const QStringList& installed);

    QString obstacle, platform;
    std::shared_ptr<void> connection;
};

} // namespace window
