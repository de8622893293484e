#include "reason_bubble.h"

#include <QLabel>

#include <algorithm>

namespace window {

namespace {

QLabel* Bubble_Of(const QWidget& dialog) {
    return dialog.findChild<QLabel*>(QStringLiteral("reason"), Qt::FindDirectChildrenOnly);
}

QLabel& Made_Bubble(QWidget& dialog) {
    auto* const bubble = new QLabel(&dialog);
    bubble->setObjectName(QStringLiteral("reason"));
    bubble->setTextFormat(Qt::PlainText);
    bubble->setAttribute(Qt::WA_TransparentForMouseEvents);
    bubble->setAutoFillBackground(true);
    bubble->setBackgroundRole(QPalette::ToolTipBase);
    bubble->setForegroundRole(QPalette::ToolTipText);
    bubble->setFrameStyle(static_cast<int>(QFrame::Box) | static_cast<int>(QFrame::Plain));
    bubble->setMargin(3);
    return *bubble;
}

} // namespace

void Show_Reason(QWidget& field, const QString& text) {
    QWidget& dialog = *field.window();
    if (text.isEmpty())
        return Hide_Reason(dialog);
    constexpr int Gap = 2; // pixels, to the field and to the dialog's border
    QLabel* const known = Bubble_Of(dialog);
    QLabel& bubble = known ? *known : Made_Bubble(dialog);
    const int most = dialog.width() - 2 * Gap;
    bubble.setText(text);
    bubble.setWordWrap(bubble.fontMetrics().horizontalAdvance(text) + 4 * bubble.margin() > most);
    bubble.resize(bubble.wordWrap() ? QSize(most, bubble.heightForWidth(most)) : bubble.sizeHint());
    const QPoint below = field.mapTo(&dialog, QPoint(0, field.height() + Gap));
    bubble.move(std::clamp(below.x(), Gap, dialog.width() - Gap - bubble.width()), below.y());
    bubble.raise();
    bubble.show();
}

void Hide_Reason(QWidget& dialog) {
    if (QLabel* const bubble = Bubble_Of(dialog))
        bubble->hide();
}

} // namespace window
