// The Qt application, for a process that has none yet.
#pragma once

#include <QApplication>

#include <memory>
#include <string>
#include <vector>

namespace window {

// It belongs to the calling thread. `arguments` are the program's name and Qt's own options. Throws
// Cannot_Show when there is no screen to show anything on.
std::unique_ptr<QApplication> Create_Application(std::vector<std::string> arguments);

// Throws Cannot_Show when the application that there is shows no widgets.
void Require_Widgets(const QCoreApplication& present);

} // namespace window
