// What those need who do not see the window, or type faster than they look.
#include "window_fixture.h"

#include <QAccessible>
#include <QLabel>

namespace window_test {

namespace {

TEST_F(Window_Test, Every_Control_Has_A_Spoken_Name_And_A_Role) {
    form->fraKind.Set_Caption(u"&Kind");
    struct Case {
        const toolkit::Control& Control;
        const char* Name;
        QAccessible::Role Role;
    };
    const Case cases[] = {
        {form->lblName, "Name:", QAccessible::StaticText},
        {form->txtName, "Name:", QAccessible::EditableText},
        {form->cmbNumber, "Number", QAccessible::ComboBox},
        {form->cmbPlace, "Where", QAccessible::ComboBox},
        {form->fraKind, "Kind", QAccessible::Grouping},
        {form->optThree, "DIALCONTINUE", QAccessible::RadioButton},
        {form->lstThings, "Things", QAccessible::List},
        {form->cmdOK, "OK", QAccessible::Button},
        {form->cmdOther, "Other", QAccessible::Button},
        {form->lblPosition, "2 of 3", QAccessible::StaticText},
    };
    form->fraPlace.Set_Caption(u"&Where");
    While_Up([&] {
        for (const Case& row : cases) {
            const auto* spoken = QAccessible::queryAccessibleInterface(&The(row.Control));
            ASSERT_NE(spoken, nullptr) << row.Name;
            EXPECT_EQ(spoken->text(QAccessible::Name).toStdString(), row.Name);
            EXPECT_EQ(spoken->role(), row.Role) << row.Name;
        }
        form->lblName.Set_Caption(u"&Title:");
        QCoreApplication::processEvents();
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&The(form->txtName))->text(QAccessible::Name),
                  "Title:");
    });
}

TEST_F(Window_Test, A_Refused_Key_Leaves_A_Brief_Mark) {
    for (toolkit::Text_Control* field :
         std::initializer_list<toolkit::Text_Control*>{&form->txtName, &form->cmbNumber})
        form->On[automation::To_UTF8(field->Name()) + "_Change"] = [field] {
            if (field->Text().find(u'x') != String::npos)
                field->Set_Text(u"12");
        };
    form->txtName.Set_Text(u"12");
    form->cmbNumber.Set_Text(u"12");
    While_Up([&] {
        for (toolkit::Text_Control* field :
             std::initializer_list<toolkit::Text_Control*>{&form->txtName, &form->cmbNumber}) {
            QLineEdit& line = Line(*field);
            line.setFocus();
            const auto plain = line.palette().color(QPalette::Base);
            const auto told = [&] {
                return QAccessible::queryAccessibleInterface(&line)->text(QAccessible::Description);
            };
            QTest::keyClicks(&line, "3");
            EXPECT_EQ(line.palette().color(QPalette::Base), plain);
            EXPECT_EQ(told(), "");
            line.setText("12");
            field->Set_Text(u"12");
            field->Set_Rule(u"no letter x");
            QTest::keyClicks(&line, "x");
            EXPECT_EQ(line.text(), "12");
            EXPECT_EQ(told(), "Not accepted: no letter x");
            const auto* bubble = Dialog().findChild<QLabel*>("reason");
            EXPECT_TRUE(bubble && bubble->isVisible() && bubble->text() == told());
            EXPECT_TRUE(Dialog().rect().contains(bubble->geometry()));
            field->Set_Rule(u"");
            EXPECT_NE(line.palette().color(QPalette::Base), plain);
            EXPECT_NE(told(), "");
            EXPECT_TRUE(QTest::qWaitFor([&] { return line.palette().color(QPalette::Base) == plain; }));
            QTest::keyClicks(&line, "4");
            EXPECT_EQ(told(), "");
            EXPECT_FALSE(bubble->isVisible());
        }
    });
}

TEST_F(Window_Test, Typing_Ahead_Finds_An_Entry_Among_Many) {
    for (int at = 0; at < 32'764; ++at)
        form->cmbPlace.Add_Item(u"Node-" + QString::number(at).toStdU16String());
    While_Up([&] {
        auto& combo = The<QComboBox>(form->cmbPlace);
        combo.setFocus();
        QTest::keyClicks(&combo, "node-32763");
        EXPECT_EQ(form->cmbPlace.Text(), u"Node-32763");
        QTest::qWait(QApplication::keyboardInputInterval() + 50);
        QTest::keyClicks(&combo, "t");
        EXPECT_EQ(form->cmbPlace.Text(), u"two") << "and around the end";
        QTest::keyClicks(&combo, "q");
        EXPECT_EQ(form->cmbPlace.Text(), u"two");
    });
}

} // namespace

} // namespace window_test
