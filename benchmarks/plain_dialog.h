// The dialog as plain Qt widgets: everything that a form holds, and nothing that makes it one.
#pragma once

#include <QDialog>

#include <memory>

#include "toolkit/form.h"

namespace benchmarks {

// A widget for each control, in its place, with its font, caption or text, entries, picture, label and tab
// order. Qt calls the widgets by the controls' names.
std::unique_ptr<QDialog> Make_Plain_Dialog(const toolkit::Form& form);

} // namespace benchmarks
