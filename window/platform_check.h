// Whether Qt can open a window at all. It would end the process if asked in vain.
#pragma once

#include <QString>

namespace window {

// Why not, in one line that says what to do; empty when it can. Call it before there is a Qt application. It
// may settle QT_QPA_PLATFORM, when that leaves open what only one platform can do.
QString Obstacle_To_Windows();

} // namespace window
