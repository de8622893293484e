// Words below a field of a dialog, until they are taken away or another field gets the focus.
#pragma once

#include <QWidget>

namespace window {

// Takes no input and no focus. An empty text takes it away.
void Show_Reason(QWidget& field, const QString& text);
void Hide_Reason(QWidget& dialog);

} // namespace window
