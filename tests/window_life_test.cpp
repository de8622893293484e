#include "window_fixture.h"

#include <QDir>
#include <QImage>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>

#include <filesystem>

namespace window_test {

namespace {

// A form's life

TEST_F(Window_Test, The_Close_Box_Asks_The_Form) {
    form->Refuses_To_Close = true;
    While_Up([&] {
        Dialog().close();
        EXPECT_TRUE(form->Is_Visible());
        EXPECT_TRUE(Dialog().isVisible());
        Dialog().reject();
        EXPECT_TRUE(Dialog().isVisible());
        EXPECT_EQ(form->Take_Log(), (Log{"Unload", "Unload"}));
        form->Refuses_To_Close = false;
        Dialog().close();
        EXPECT_TRUE(form->Is_Gone());
    });
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty()) << "the widgets go with the form";
}

// Every way into a handler, and the handler that ends the form there.
TEST_F(Window_Test, A_Handler_May_Unload_The_Form) {
    struct Case {
        const char* Handler;
        std::function<void()> Hand;
    };
    const std::vector<Case> cases{
        {"txtName_Change", [&] { Type("x"); }},
        {"txtName_LostFocus", [&] { Press(Qt::Key_Tab); }},
        {"txtName_LostFocus", [&] { Click(form->cmdOther); }},
        {"txtName_LostFocus", [&] { QTest::mouseClick(&Line(form->cmbNumber), Qt::LeftButton); }},
        {"cmbNumber_Change", [&] { The(form->cmbNumber).setFocus(), Type("x"); }},
        {"cmbNumber_Click", [&] { QTest::keyClick(&The(form->cmbNumber), Qt::Key_Down); }},
        {"cmbPlace_Click",
         [&] {
             QComboBox& combo = The<QComboBox>(form->cmbPlace);
             combo.showPopup();
             QTest::keyClick(combo.view(), Qt::Key_Down);
             QTest::keyClick(combo.view(), Qt::Key_Enter);
         }},
        {"lstThings_Click", [&] { QTest::keyClick(&The(form->lstThings), Qt::Key_Down); }},
        {"optOne_Click", [&] { Click(form->optOne); }},
        {"optTwo_Click", [&] { QTest::keyClick(&The(form->optOne), Qt::Key_Down); }},
        {"cmdOK_Click", [&] { Press(Qt::Key_Enter); }},
        {"cmdCancel_Click", [&] { Press(Qt::Key_Escape); }},
        {"cmdOther_Click", [&] { Click(form->cmdOther); }},
        {"cmdOther_Click", [&] { QTest::keyClick(&The(form->cmdOther), Qt::Key_Space); }},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.Handler);
        form = std::make_shared<Small_Form>();
        form->On[row.Handler] = [&] {
            form->cmbNumber.Set_Text(u"not shown any more");
            form->Unload();
        };
        While_Up([&] {
            row.Hand();
            EXPECT_TRUE(form->Is_Gone());
            EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        });
        EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
    }
}

TEST_F(Window_Test, What_A_Handler_Throws_Comes_Out_Of_Show_Modal) {
    form->On["cmdOK_Click"] = [] { automation::Raise(automation::run_time::Overflow); };
    form->On["cmdOther_Click"] = [] { FAIL() << "nothing runs after a failure"; };
    QTimer::singleShot(0, [&] {
        QPushButton& other = The<QPushButton>(form->cmdOther);
        Click(form->cmdOK);
        other.click();
    });
    try {
        form->Show_Modal();
        FAIL() << "the failure is lost";
    } catch (const automation::Failure& failure) {
        EXPECT_EQ(failure.Number, automation::run_time::Overflow);
    }
    EXPECT_FALSE(form->Is_Visible());
    form->On.clear();
    While_Up([&] { Click(form->cmdOther); }); // and it can be shown again
}

TEST_F(Window_Test, Pending_Messages_Are_Processed_In_The_Middle_Of_A_Handler) {
    bool came = false;
    form->On["cmdOther_Click"] = [&] {
        QTimer::singleShot(0, [&] { came = true; });
        form->txtName.Set_Text(u"in between");
        display->Process_Pending_Messages();
        EXPECT_TRUE(came);
        EXPECT_EQ(Line(form->txtName).text(), "in between");
    };
    While_Up([&] { Click(form->cmdOther); });
    EXPECT_TRUE(came);
}

// Both stand in the queue when the first of them is delivered.
TEST_F(Window_Test, What_Was_Posted_Before_A_Handler_Is_Processed_In_It) {
    bool came = false;
    While_Up([&] {
        const auto later = [](const std::function<void()>& what) {
            QMetaObject::invokeMethod(qApp, what, Qt::QueuedConnection);
        };
        later([&] {
            display->Process_Pending_Messages();
            EXPECT_TRUE(came);
        });
        later([&] { came = true; });
        QTest::qWait(1);
    });
    EXPECT_TRUE(came);
}

// Message boxes

TEST_F(Window_Test, A_Click_Goes_On_After_The_Question_That_Leaving_A_Field_Asks) {
    const toolkit::Message question{true, 1, u"Save?", 1, 3, 0, u"Question"};
    form->On["txtName_LostFocus"] = [&] { toolkit::Show_Message(question); };
    const std::pair<toolkit::Control*, const char*> cases[] = {{&form->optTwo, "optTwo_Click"},
                                                               {&form->cmdOther, "cmdOther_Click"}};
    While_Up([&] {
        for (const auto& [control, event] : cases) {
            Dialog().activateWindow(); // as a window manager would
            EXPECT_TRUE(QTest::qWaitForWindowActive(&Dialog()));
            QTest::mouseClick(&The(form->txtName), Qt::LeftButton);
            form->Take_Log();
            Answer_With([](QDialog& box) { box.reject(); });
            Click(*control);
            EXPECT_EQ(form->Take_Log(), (Log{"txtName_LostFocus", event}));
            EXPECT_EQ(form->Focused(), control);
            EXPECT_FALSE(qobject_cast<QAbstractButton*>(&The(*control))->isDown()) << event;
        }
    });
}

TEST_F(Window_Test, A_Press_That_Ends_Elsewhere_Moves_The_Focus_Only) {
    While_Up([&] {
        QTest::mousePress(&The(form->cmdOther), Qt::LeftButton, {}, {8, 8});
        EXPECT_EQ(form->Focused(), &form->txtName);
        QTest::mouseMove(&The(form->cmdOther), {200, 200});
        QTest::mouseRelease(&The(form->cmdOther), Qt::LeftButton, {}, {200, 200});
        EXPECT_EQ(form->Take_Log(), (Log{"txtName_LostFocus"}));
        EXPECT_EQ(form->Focused(), &form->cmdOther);
    });
}

TEST_F(Window_Test, Message_Boxes_Look_And_Answer_As_Asked) {
    struct Case {
        const char* Name;
        toolkit::Message Shown;
        QMessageBox::Icon Icon;
        QMessageBox::StandardButtons Buttons;
        QMessageBox::StandardButton Pressed; // NoButton: the close box
        automation::Long Answer;
    };
    using Box = QMessageBox;
    const auto product = [](automation::Long kind, automation::Long buttons) {
        return toolkit::Message{true, 1, u"<b>1 & 2</b>\nsecond line", kind, buttons, 0, u"Title"};
    };
    const auto platform = [](automation::Long style) {
        return toolkit::Message{.Text = u"<b>1 & 2</b>\nsecond line", .Style = style, .Title = u"Title"};
    };
    const auto question = Box::Save | Box::Discard | Box::Cancel;
    const Case cases[] = {
        {"save", product(1, 3), Box::Question, question, Box::Save, 2},
        {"discard", product(1, 3), Box::Question, question, Box::Discard, 3},
        {"cancel", product(1, 3), Box::Question, question, Box::Cancel, 4},
        {"question closed", product(1, 3), Box::Question, question, Box::NoButton, 4},
        {"information", product(2, 1), Box::Information, Box::Ok, Box::Ok, 1},
        {"error", product(3, 1), Box::Critical, Box::Ok, Box::Ok, 1},
        {"error closed", product(3, 1), Box::Critical, Box::Ok, Box::NoButton, 1},
        {"stop", platform(16), Box::Critical, Box::Ok, Box::Ok, 1},
        {"platform information", platform(64), Box::Information, Box::Ok, Box::NoButton, 1},
    };
    const auto ask = [&](const Case& row) {
        SCOPED_TRACE(row.Name);
        Answer_With([&](QDialog& dialog) {
            auto& box = dynamic_cast<QMessageBox&>(dialog);
            EXPECT_EQ(box.icon(), row.Icon);
            EXPECT_EQ(box.standardButtons(), row.Buttons);
            EXPECT_EQ(box.text(), "<b>1 & 2</b>\nsecond line");
            EXPECT_EQ(box.textFormat(), Qt::PlainText);
            EXPECT_EQ(box.windowTitle(), "Title");
            if (row.Pressed == Box::NoButton)
                box.close();
            else
                box.button(row.Pressed)->click();
        });
        EXPECT_EQ(toolkit::Show_Message(row.Shown), row.Answer);
    };
    for (const Case& row : cases)
        ask(row);
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
    While_Up([&] {
        for (const Case& row : cases)
            ask(row);
    });
}

// Pictures

TEST_F(Window_Test, Saves_A_Picture_Of_A_Form_On_Any_Display) {
    const auto path = std::filesystem::temp_directory_path() /
                      ("window-test-" + std::to_string(QCoreApplication::applicationPid()) + ".png");
    toolkit::Set_Display(nullptr);
    form = std::make_shared<Small_Form>();
    form->txtName.Set_Text(u"first");
    const auto picture = [&] {
        window::Save_Picture(*form, path.string());
        return QImage(QString::fromStdString(path.string()));
    };
    const QImage first = picture();
    EXPECT_EQ(first.size(), QSize(312, 300));
    EXPECT_EQ(picture(), first) << "the same again";
    form->txtName.Set_Text(u"second");
    const QImage second = picture();
    const QRect field(80, 8, 225, 19);
    EXPECT_NE(second.copy(field), first.copy(field));
    EXPECT_EQ(second.copy(0, 60, 312, 240), first.copy(0, 60, 312, 240));
    std::filesystem::remove(path);
    EXPECT_THROW(window::Save_Picture(*form, "/no/such/folder/picture.png"), window::Cannot_Show);
}

// The Qt application

TEST(Window_Start, Uses_The_Application_Of_The_Host) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 1;
    char name[] = "host";
    char* arguments[] = {name, nullptr};
    QApplication host(count, arguments);
    window::Create_Qt_Display({"style-node"}).reset();
    EXPECT_EQ(QCoreApplication::instance(), &host);
}

TEST(Window_Start, Says_In_One_Line_What_Is_Missing) {
    struct Case {
        const char* Platform; // null: not set
        const char* X_Display;
        const char* Message;
        const char* Wayland_Display = nullptr;
    };
    std::vector<Case> cases{
        {nullptr, nullptr,
         "^There is no display: DISPLAY is not set and WAYLAND_DISPLAY is not set, .*--terminal.*$"},
        {nullptr, ":29931", "^There is no display: DISPLAY is :29931 and .*$"},
        {"xcb", nullptr, "^There is no display: QT_QPA_PLATFORM is xcb, .*unset it.*$"},
        {"no-such-thing", ":0", "^There is no display: QT_QPA_PLATFORM is no-such-thing, .*$"},
        {"wayland;xcb", ":29931", "^There is no display: QT_QPA_PLATFORM is wayland;xcb, .*$"},
    };
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms");
    if (plugins.entryList({"*wayland*"}).isEmpty()) {
        const char* const missing =
            "^There is no display: Qt's plug-in .* wayland .*the package qt6-wayland$";
        cases.push_back({"wayland", nullptr, missing});
        cases.push_back({nullptr, ":29931", missing, "wayland-0"});
    }
    const auto set = [](const char* variable, const char* value) {
        value ? setenv(variable, value, 1) : unsetenv(variable);
    };
    const auto start = [&](const Case& row) {
        set("QT_QPA_PLATFORM", row.Platform);
        set("DISPLAY", row.X_Display);
        set("WAYLAND_DISPLAY", row.Wayland_Display);
        try {
            window::Create_Qt_Display({"style-node"});
        } catch (const window::Cannot_Show& error) {
            std::fprintf(stderr, "%s", error.what());
            std::_Exit(3);
        }
        std::_Exit(0);
    };
    for (const Case& row : cases)
        EXPECT_EXIT(start(row), testing::ExitedWithCode(3), row.Message) << row.Message;
}

} // namespace

} // namespace window_test
