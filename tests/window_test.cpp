#include "automation/text.h"
#include "window_fixture.h"

#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>

namespace window_test {

namespace {

// What is shown

TEST_F(Window_Test, Stands_Where_The_Twips_Are) {
    While_Up([&] {
        EXPECT_EQ(Dialog().size(), QSize(312, 300));
        EXPECT_EQ(Dialog().minimumSize(), Dialog().maximumSize());
        EXPECT_EQ(Dialog().windowTitle(), "A small form");
        for (const toolkit::Control* control : form->Controls()) {
            const QWidget& widget = The(*control);
            const std::string name = automation::To_UTF8(control->Name());
            const toolkit::Rectangle& place = control->Place();
            EXPECT_NEAR(widget.x(), place.Left / 15.0, 0.5) << name;
            EXPECT_NEAR(widget.y(), place.Top / 15.0, 0.5) << name;
            EXPECT_NEAR(widget.width(), place.Width / 15.0, 1) << name;
            EXPECT_NEAR(widget.height(), place.Height / 15.0, 1) << name;
            QWidget* const outer = control->Container() ? &The(*control->Container()) : &Dialog();
            EXPECT_EQ(widget.parentWidget(), outer) << name;
        }
        EXPECT_EQ(The(form->cmdOther).geometry().right() + 1, The(form->lblPosition).x()) << "a gap";
    });
}

TEST_F(Window_Test, Clips_No_Text) {
    form->lblPosition.Set_Caption(u"32766 of 32767");
    form->fraKind.Set_Caption(u"A long caption of a frame in another language, W W W W W W W W W W W");
    form->lblName.Set_Caption(u"Wwwwwwmm:");
    While_Up([&] {
        const auto width = [](const QWidget& widget, const QString& text) {
            return widget.fontMetrics().horizontalAdvance(text);
        };
        for (const auto* label : {&form->lblName, &form->lblPosition}) {
            const QLabel& shown = The<QLabel>(*label);
            EXPECT_LE(width(shown, shown.text()), shown.contentsRect().width()) << shown.text().toStdString();
            EXPECT_LE(shown.fontMetrics().height(), shown.contentsRect().height());
        }
        for (const auto* option : {&form->optOne, &form->optTwo, &form->optThree}) {
            const QRadioButton& shown = The<QRadioButton>(*option);
            EXPECT_LE(width(shown, shown.text()) + 13 + 4, shown.width()) << shown.text().toStdString();
        }
        const QGroupBox& frame = The<QGroupBox>(form->fraKind);
        EXPECT_LE(width(frame, frame.title()), frame.width());
        EXPECT_LE(Line(form->txtName).fontMetrics().height() + 6, Line(form->txtName).height());
    });
}

TEST_F(Window_Test, Shows_What_The_Program_Changes_And_Tells_It_Nothing_Back) {
    form->On["cmdOther_Click"] = [&] {
        form->txtName.Set_Text(u"written");
        form->txtName.Set_Selection_Start(3);
        form->cmbNumber.Set_Text(u"12");
        form->cmbPlace.Set_Selected_Index(2);
        form->lstThings.Set_Selected_Index(1);
        form->optTwo.Set_Value(true);
        form->lblPosition.Set_Caption(u"a & b && c");
        form->cmdCancel.Set_Enabled(false);
        form->fraKind.Set_Visible(false);
        form->cmdOK.Set_Top(3600);
        form->Set_Caption(u"Another");
        form->Move({form->Place().Left, form->Place().Top, 4770, 4185});
    };
    While_Up([&] {
        Click(form->cmdOther);
        EXPECT_EQ(Line(form->txtName).text(), "written");
        EXPECT_EQ(Line(form->txtName).cursorPosition(), 3);
        EXPECT_EQ(Line(form->cmbNumber).text(), "12");
        EXPECT_EQ(The<QComboBox>(form->cmbPlace).currentText(), "three");
        EXPECT_EQ(The<QListView>(form->lstThings).currentIndex().row(), 1);
        EXPECT_TRUE(The<QRadioButton>(form->optTwo).isChecked());
        EXPECT_EQ(The<QLabel>(form->lblPosition).text(), "a  b & c");
        EXPECT_FALSE(The(form->cmdCancel).isEnabled());
        EXPECT_FALSE(The(form->optOne).isVisible());
        EXPECT_EQ(The(form->cmdOK).y(), 240);
        EXPECT_EQ(Dialog().windowTitle(), "Another");
        EXPECT_EQ(Dialog().size(), QSize(312, 250));
        EXPECT_EQ(form->Take_Log(),
                  (Log{"txtName_LostFocus", "cmdOther_Click", "txtName_Change", "cmbNumber_Change",
                       "cmbPlace_Click", "lstThings_Click", "optTwo_Click"}));
    });
}

// What a person does

TEST_F(Window_Test, Typing_Shows_What_The_Handler_Leaves) {
    String accepted;
    for (toolkit::Text_Control* field :
         std::initializer_list<toolkit::Text_Control*>{&form->txtName, &form->cmbNumber}) {
        accepted.clear();
        const std::string handler = automation::To_UTF8(field->Name()) + "_Change";
        form->On[handler] = [&, field] { // digits; a second write nests
            if (field->Text().find_first_not_of(u"0123456789") == String::npos) {
                accepted = field->Text();
                return;
            }
            field->Set_Text(accepted);
            field->Set_Selection_Start(1);
        };
        While_Up([&] {
            toolkit::user_input::Focus(*field);
            QCoreApplication::processEvents();
            form->Take_Log();
            Type("45");
            EXPECT_EQ(form->Take_Log(), (Log{handler, handler}));
            EXPECT_EQ(field->Selection_Start(), 2U);
            Type("x");
            EXPECT_EQ(field->Text(), u"45");
            EXPECT_EQ(Line(*field).text(), "45");
            EXPECT_EQ(Line(*field).cursorPosition(), 1);
            Type("6");
            EXPECT_EQ(field->Text(), u"465");
            Press(Qt::Key_Backspace);
            EXPECT_EQ(Line(*field).text(), "45");
            EXPECT_EQ(field->Selection_Start(), 1U);
        });
    }
}

TEST_F(Window_Test, Tab_Walks_The_Stops_In_Both_Directions_And_Leaves_Texts_Alone) {
    form->optTwo.Set_Enabled(false);
    form->lstThings.Set_Visible(false);
    form->cmbNumber.Set_Text(u"12");
    const std::vector<const toolkit::Control*> stops{&form->txtName,   &form->cmbNumber, &form->cmbPlace,
                                                     &form->optOne,    &form->optThree,  &form->cmdOK,
                                                     &form->cmdCancel, &form->cmdOther};
    While_Up([&] {
        for (std::size_t step = 1; step <= stops.size(); ++step) {
            Press(Qt::Key_Tab);
            EXPECT_EQ(form->Focused(), stops[step % stops.size()]) << step;
            EXPECT_EQ(Dialog().focusWidget(), &The(*stops[step % stops.size()])) << step;
            EXPECT_FALSE(Line(form->cmbNumber).hasSelectedText());
        }
        for (std::size_t step = stops.size(); step-- > 0;) {
            Press(Qt::Key_Backtab, Qt::ShiftModifier);
            EXPECT_EQ(form->Focused(), stops[step]) << step;
        }
        const Log log = form->Take_Log();
        EXPECT_EQ(std::count(log.begin(), log.end(), "cmbNumber_LostFocus"), 2);
        EXPECT_EQ(std::count(log.begin(), log.end(), "cmbNumber_Click"), 0);
    });
}

TEST_F(Window_Test, Whoever_Moves_By_Tab_Sees_The_Focus) {
    While_Up([&] {
        Press(Qt::Key_Tab);
        for (int step = 0; step < 10; ++step) {
            const toolkit::Control& stop = *form->Focused();
            const QImage focused = The(stop).grab().toImage();
            Press(Qt::Key_Tab);
            EXPECT_NE(The(stop).grab().toImage(), focused) << automation::To_UTF8(stop.Name());
        }
    });
}

TEST_F(Window_Test, Picking_Raises_Click_Every_Time_And_Typing_An_Entry_Never) {
    While_Up([&] {
        Press(Qt::Key_Tab);
        Type("two");
        EXPECT_EQ(form->cmbNumber.Selected_Index(), -1);
        Press(Qt::Key_Tab);
        EXPECT_EQ(form->Take_Log(), (Log{"txtName_LostFocus", "cmbNumber_Change", "cmbNumber_Change",
                                         "cmbNumber_Change", "cmbNumber_LostFocus"}));
        for (toolkit::Combo_Box* combo : {&form->cmbNumber, &form->cmbPlace}) {
            const std::string click = automation::To_UTF8(combo->Name()) + "_Click";
            toolkit::user_input::Focus(*combo);
            QCoreApplication::processEvents();
            form->Take_Log();
            Press(Qt::Key_Down);
            Press(Qt::Key_Down);
            EXPECT_EQ(combo->Text(), u"two");
            QComboBox& shown = The<QComboBox>(*combo);
            EXPECT_EQ(shown.currentText(), "two");
            shown.showPopup();
            QTest::keyClick(shown.view(), Qt::Key_Enter);
            EXPECT_EQ(form->Take_Log(), (Log{click, click, click}));
        }
    });
}

TEST_F(Window_Test, Options_Follow_Clicks_And_Arrow_Keys) {
    const auto checked = [&] {
        std::vector<bool> values;
        for (const auto* option : {&form->optOne, &form->optTwo, &form->optThree}) {
            EXPECT_EQ(The<QRadioButton>(*option).isChecked(), option->Value());
            values.push_back(option->Value());
        }
        return values;
    };
    form->optTwo.Set_Enabled(false);
    While_Up([&] {
        Click(form->optOne);
        EXPECT_EQ(checked(), (std::vector{true, false, false}));
        Click(form->optOne); // raises nothing, and must not clear it
        EXPECT_EQ(checked(), (std::vector{true, false, false}));
        Press(Qt::Key_Down);
        EXPECT_EQ(checked(), (std::vector{false, false, true})) << "a disabled one is left out";
        Press(Qt::Key_Right);
        EXPECT_EQ(checked(), (std::vector{true, false, false}));
        Click(form->optTwo);
        EXPECT_EQ(form->Focused(), &form->optOne);
        EXPECT_EQ(form->Take_Log(), (Log{"txtName_LostFocus", "optOne_Click", "optOne_LostFocus",
                                         "optThree_Click", "optThree_LostFocus", "optOne_Click"}));
        form->optOne.Set_Value(false);
        QCoreApplication::processEvents();
        EXPECT_EQ(checked(), (std::vector{false, false, false}));
    });
}

TEST_F(Window_Test, Enter_And_Escape_Press_Buttons_Without_Moving_The_Focus) {
    While_Up([&] {
        for (const toolkit::Control* control : form->Controls()) {
            if (!control->Takes_Focus())
                continue;
            const std::string name = automation::To_UTF8(control->Name());
            The(*control).setFocus();
            form->Take_Log();
            Press(Qt::Key_Return);
            Press(Qt::Key_Enter, Qt::KeypadModifier);
            Press(Qt::Key_Escape);
            const bool button = control->Kind() == toolkit::Control_Kind::Command_Button;
            const std::string pressed = (button ? name : "cmdOK") + "_Click";
            EXPECT_EQ(form->Take_Log(), (Log{pressed, pressed, "cmdCancel_Click"})) << name;
            EXPECT_EQ(form->Focused(), control) << name;
        }
        EXPECT_TRUE(form->Is_Visible());
        form->cmdOK.Set_Enabled(false);
        toolkit::user_input::Focus(form->txtName);
        form->Take_Log();
        Press(Qt::Key_Return);
        EXPECT_EQ(form->Take_Log(), Log{});
    });
}

TEST_F(Window_Test, A_Button_Is_Pressed_By_Mouse_Space_And_Access_Key) {
    form->cmdCancel.Set_Caption(u"&Cancel");
    While_Up([&] {
        Click(form->cmdOther);
        Press(Qt::Key_Space);
        EXPECT_EQ(form->Take_Log(), (Log{"txtName_LostFocus", "cmdOther_Click", "cmdOther_Click"}));
        EXPECT_EQ(The<QLabel>(form->lblName).buddy(), &The(form->txtName));
        EXPECT_EQ(The<QPushButton>(form->cmdCancel).shortcut(), QKeySequence("Alt+C"));
        form->cmdOther.Set_Enabled(false);
        QCoreApplication::processEvents();
        form->Take_Log();
        Click(form->cmdOther);
        EXPECT_EQ(form->Take_Log(), Log{});
    });
}

} // namespace

} // namespace window_test
