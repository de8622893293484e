#include "event_turn.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>

namespace window {

void Take_Turn(QEventLoop::ProcessEventsFlags flags) {
    constexpr int Longest = 50; // milliseconds
    // Otherwise a nested turn passes over what stood in the queue when the handler was called.
    if (QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance())
        dispatcher->wakeUp();
    QCoreApplication::processEvents(flags, Longest);
}

} // namespace window
