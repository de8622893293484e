#include "field_views.h"

#include <QButtonGroup>
#include <QPainter>
#include <QStyleOptionButton>

#include <cmath>
#include <limits>
#include <utility>

#include "form_picture.h"
#include "form_style.h"
#include "glyph.h"
#include "qt_text.h"
#include "reason_bubble.h"
#include "toolkit/edit_answer.h"
#include "toolkit/user_input.h"

namespace window {

namespace user_input = toolkit::user_input;

// Label

Label_View::Label_View(toolkit::Label& label, QWidget* parent, Input& input)
    : Control_View(label, new QLabel(parent), input), label(label), shown(static_cast<QLabel&>(Widget())) {
    shown.setTextFormat(Qt::PlainText);
    shown.setIndent(0);
    if (label.Look().Line == toolkit::Label::Border::Single)
        shown.setFrameStyle(static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Sunken));
    if (label.Look().Align == toolkit::Label::Alignment::Center)
        shown.setAlignment(Qt::AlignCenter);
    else
        shown.setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void Label_View::Set_Buddy(QWidget* field) {
    shown.setBuddy(field);
}

void Label_View::Show() {
    Fit_Caption(shown.contentsRect().width());
    // Without a field to lead to there is no access key, and Qt would draw the mark of one.
    shown.setText(To_Qt(shown.buddy() ? label.Caption() : toolkit::Drawn_Caption(label.Caption())));
}

// Text

Line_Editing::Line_Editing(toolkit::Text_Control& field, QLineEdit& line, Control_View& view, Input& input)
    : field(field), line(line), view(view), input(input) {
    line.setMaxLength(std::numeric_limits<int>::max());
    line.setToolTip(To_Qt(field.Rule()));
    line.setAccessibleDescription(To_Qt(field.Rule()));
    QObject::connect(&line, &QLineEdit::textEdited, &line, [this] { Edited(); });
    QObject::connect(&line, &QLineEdit::cursorPositionChanged, &line, [this] { Caret_Moved(); });
    QObject::connect(&line, &QLineEdit::selectionChanged, &line, [this] { Caret_Moved(); });
    marked.setSingleShot(true);
    QObject::connect(&marked, &QTimer::timeout, &line, [this] { this->line.setPalette({}); });
}

void Line_Editing::Show() {
    const QString text = To_Qt(field.Text());
    if (line.text() != text)
        line.setText(text);
    const int caret = static_cast<int>(field.Selection_Start());
    if (Caret() != caret)
        line.setCursorPosition(caret);
    if (const auto made = std::exchange(edit, {}))
        Mark(To_Qt(toolkit::Answer_To_Edit(field, From_Qt(made->Before), From_Qt(made->Wanted))));
}

void Line_Editing::Mark(const QString& reason) {
    constexpr int Brief = 600; // milliseconds
    const QString description = reason.isEmpty() ? To_Qt(field.Rule()) : reason;
    if (line.accessibleDescription() != description)
        line.setAccessibleDescription(description);
    Show_Reason(line, reason);
    if (reason.isEmpty())
        return;
    QPalette palette = line.palette();
    palette.setColor(QPalette::Base, QColor(255, 199, 206));
    palette.setColor(QPalette::Text, Qt::black);
    line.setPalette(palette);
    marked.start(Brief);
}

void Line_Editing::Edited() {
    input.Perform([this, text = From_Qt(line.text()), caret = line.cursorPosition()] {
        view.Touch();
        edit = Edit{To_Qt(field.Text()), To_Qt(text)};
        user_input::Edit(field, text, static_cast<std::size_t>(caret));
    });
}

int Line_Editing::Caret() const {
    return line.hasSelectedText() ? line.selectionStart() : line.cursorPosition();
}

void Line_Editing::Caret_Moved() {
    input.Perform([this, text = From_Qt(line.text()), caret = Caret()] {
        if (text == field.Text()) // otherwise an edit is under way and brings its own caret
            field.Set_Selection_Start(static_cast<std::size_t>(caret));
    });
}

Text_View::Text_View(toolkit::Text_Box& box, QWidget* parent, Input& input)
    : Control_View(box, new QLineEdit(parent), input),
      editing(box, static_cast<QLineEdit&>(Widget()), *this, input) {}

// Option button

Option_View::Option_View(toolkit::Option_Button& option, QWidget* parent, Input& input)
    : Control_View(option, new QRadioButton(parent), input), option(option),
      shown(static_cast<QRadioButton&>(Widget())), input(input) {
    // The controls see to it that one excludes the others, and every option is a tab stop. In a group of its
    // own Qt leaves it alone, and still calls it a radio button to those who do not see it.
    auto* const alone = new QButtonGroup(&shown);
    alone->setExclusive(false);
    alone->addButton(&shown);
    QObject::connect(&shown, &QRadioButton::clicked, &shown, [this] { Pick(this->option); });
}

void Option_View::Show() {
    QStyleOptionButton look;
    look.initFrom(&shown);
    Fit_Caption(shown.style()->subElementRect(QStyle::SE_RadioButtonContents, &look, &shown).width());
    shown.setText(To_Qt(option.Caption()));
    shown.setChecked(option.Value());
}

void Option_View::Pick(toolkit::Option_Button& picked) {
    input.Perform([this, &picked] {
        Touch();
        user_input::Press(picked);
    });
}

bool Option_View::Key_Pressed(int key) {
    const bool back = key == Qt::Key_Up || key == Qt::Key_Left;
    if (!back && key != Qt::Key_Down && key != Qt::Key_Right)
        return false;
    const toolkit::Form& form = option.Owner_Form();
    Pick(back ? form.Previous_Option(option) : form.Next_Option(option));
    return true;
}

// Frame

namespace {

// A group box whose caption interrupts the upper border line.
class Frame_Box final : public QGroupBox {
public:
    Frame_Box(QWidget* parent, const Input& input) : QGroupBox(parent), input(input) {}

    static constexpr int Caption_Left = 8;
    static constexpr int Gap = 3; // between caption and line

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRect caption = Caption_Place();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Line_Color(palette()));
        if (!title().isEmpty())
            painter.setClipRegion(QRegion(rect()).subtracted(caption.adjusted(-Gap, 0, Gap, 0)));
        const int line = caption.height() / 2;
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, line + 0.5, -0.5, -0.5), 2, 2);
        painter.setClipping(false);
        style()->drawItemText(&painter, caption, static_cast<int>(Qt::AlignCenter) | Qt::TextShowMnemonic,
                              palette(), isEnabled(), title(), QPalette::WindowText);
    }

private:
    QRect Caption_Place() const {
        const int width = fontMetrics().size(Qt::TextShowMnemonic, title()).width();
        return {static_cast<int>(Caption_Left * input.Scale()), 0, width, fontMetrics().height()};
    }
    const Input& input;
};

} // namespace

Frame_View::Frame_View(toolkit::Frame& frame, QWidget* parent, Input& input)
    : Control_View(frame, new Frame_Box(parent, input), input), shown(static_cast<QGroupBox&>(Widget())) {}

void Frame_View::Show() {
    Fit_Caption(shown.width() - 2 * Scaled(Frame_Box::Caption_Left));
    shown.setTitle(To_Qt(Shown().Caption()));
}

// Command button

namespace {

// A button with its picture in the colour of its text.
class Picture_Button final : public QPushButton {
public:
    Picture_Button(const toolkit::Command_Button& button, QWidget* parent, const Input& input)
        : QPushButton(parent), input(input) {
        if (button.Picture() == 0)
            return;
        const QImage image = Picture_Of(button.Owner_Form(), button.Picture());
        size = image.size();
        glyph = Glyph_Of(image);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        QPushButton::paintEvent(event);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(std::floor((width() - size.width() * input.Scale()) / 2),
                          std::floor((height() - size.height() * input.Scale()) / 2));
        painter.scale(input.Scale(), input.Scale());
        painter.fillPath(glyph, palette().color(QPalette::ButtonText));
    }

private:
    const Input& input;
    QSizeF size;
    QPainterPath glyph;
};

} // namespace

Button_View::Button_View(toolkit::Command_Button& button, QWidget* parent, Input& input)
    : Control_View(button, new Picture_Button(button, parent, input), input),
      shown(static_cast<QPushButton&>(Widget())) {
    shown.setAutoDefault(false);
    shown.setDefault(button.Owner_Form().Default_Button() == &button);
    QObject::connect(&shown, &QPushButton::clicked, &shown,
                     [&button, &input] { input.Perform([&button] { user_input::Press(button); }); });
}

void Button_View::Show() {
    constexpr int Margin = 4;
    Fit_Caption(shown.width() - 2 * Scaled(Margin));
    shown.setText(To_Qt(Shown().Caption()));
}

} // namespace window
