// The views of every kind but the lists.
#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

#include <optional>

#include "control_view.h"

namespace window {

class Label_View final : public Control_View {
public:
    Label_View(toolkit::Label& label, QWidget* parent, Input& input);
    void Set_Buddy(QWidget* field) override;

private:
    void Show() override;
    toolkit::Label& label;
    QLabel& shown;
};

// The part of a view that shows an editable text in a line edit and sends edits and moves of the caret. An
// edit that the form's handlers have taken back or changed leaves a brief mark at the field, and the reason
// below it. Undo and redo are edits,
// too; they reach back to the last text that the field was given by anything but an edit.
class Line_Editing {
public:
    Line_Editing(toolkit::Text_Control& field, QLineEdit& line, Control_View& view, Input& input);
    void Show();

private:
    void Edited();
    int Caret() const;
    void Caret_Moved();
    void Mark(const QString& reason);

    toolkit::Text_Control& field;
    QLineEdit& line;
    Control_View& view;
    Input& input;
    struct Edit {
        QString Before;
        QString Wanted;
    };
    std::optional<Edit> edit; // which the field has not answered yet
    QTimer marked;
};

class Text_View final : public Control_View {
public:
    Text_View(toolkit::Text_Box& box, QWidget* parent, Input& input);

private:
    void Show() override { editing.Show(); }
    Line_Editing editing;
};

class Option_View final : public Control_View {
public:
    Option_View(toolkit::Option_Button& option, QWidget* parent, Input& input);
    // The arrow keys pick the option before or after this one.
    bool Key_Pressed(int key) override;

private:
    void Show() override;
    void Pick(toolkit::Option_Button& picked);
    toolkit::Option_Button& option;
    QRadioButton& shown;
    Input& input;
};

class Frame_View final : public Control_View {
public:
    Frame_View(toolkit::Frame& frame, QWidget* parent, Input& input);

private:
    void Show() override;
    QGroupBox& shown;
};

class Button_View final : public Control_View {
public:
    Button_View(toolkit::Command_Button& button, QWidget* parent, Input& input);

private:
    void Show() override;
    QPushButton& shown;
};

} // namespace window
