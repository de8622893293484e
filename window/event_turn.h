// A turn of Qt's event loop in the middle of a handler.
#pragma once

#include <QEventLoop>

namespace window {

// Delivers everything that has been posted by now, and paints. What a person does waits, unless the flags let
// it in.
void Take_Turn(QEventLoop::ProcessEventsFlags flags = QEventLoop::ExcludeUserInputEvents);

} // namespace window
