// The Qt application, for a process that has none yet.
#pragma once

#include <QApplication>

#include <memory>

namespace window {

// It belongs to the calling thread; `argc` and `argv` must live as long. Throws Cannot_Show when there is no
// screen to show anything on.
std::unique_ptr<QApplication> Create_Application(int& argc, char** argv);

// Throws Cannot_Show when the application that there is shows no widgets.
void Require_Widgets(const QCoreApplication& present);

} // namespace window
