// Dialogs on other threads than Qt's, used by somebody on Qt's thread.
#include "window_hands.h"

#include <QThread>

#include <atomic>
#include <filesystem>

namespace window_test {

namespace {

using automation::Failure;

const toolkit::Message Question{true, 1, u"Save?", 1, 3, 0, u"Question"};

class Window_Threads_Test : public testing::Test {
protected:
    Window_Threads_Test() {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
    }
};

// The process has no Qt application; this thread keeps Qt's up in between.
class Own_Qt_Thread_Test : public Window_Threads_Test {
protected:
    ~Own_Qt_Thread_Test() override {
        On_Qt([] { EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty()) << "widgets are left"; });
    }
    const std::unique_ptr<toolkit::Display> keeping_qt_up = window::Open_Display();
};

TEST_F(Own_Qt_Thread_Test, A_Message_Box_Holds_Up_Its_Own_Thread_Only) {
    const auto body = [](Small_Form& form) {
        form.On["txtName_Change"] = [&, mine = std::this_thread::get_id()] {
            EXPECT_EQ(std::this_thread::get_id(), mine);
            form.cmbNumber.Set_Text(form.txtName.Text());
        };
        form.On["cmdOther_Click"] = [&] {
            auto question = Question;
            question.Title = form.Caption() + u" asks";
            EXPECT_EQ(toolkit::Show_Message(question), toolkit::answer::Save);
            EXPECT_EQ(form.cmbNumber.Text(), String(20, u'x'));
            form.Unload();
        };
        form.Show_Modal();
        EXPECT_EQ(toolkit::Show_Message(Question), toolkit::answer::Cancel); // no form is up
    };
    Form_Thread first(u"First", body);
    Form_Thread second(u"Second", body);
    for (int at = 0; at < 20; ++at)
        for (const char* title : {"First", "Second"})
            Type(title, "txtName", "x");
    for (const char* title : {"First", "Second"})
        Click(title, "cmdOther");
    With("First asks", [](QDialog& box) { EXPECT_EQ(box.parentWidget()->windowTitle(), "First"); });
    With("Second asks", [](QDialog&) {});
    Answer("First asks", QMessageBox::Save); // the one that would lie below on a stack
    Answer("Question", QMessageBox::Cancel);
    first.Ends();
    Answer("Second asks", QMessageBox::Save);
    Answer("Question", QMessageBox::Cancel);
    second.Ends();
}

TEST_F(Own_Qt_Thread_Test, Handlers_May_Do_Anything) {
    using Handler = std::function<void(Small_Form&)>;
    const auto inner = [](const Handler& within) { // a second form, whose button does it
        return [within](Small_Form& form) {
            const auto second = std::make_shared<Small_Form>();
            second->Set_Caption(u"Inner");
            second->On["cmdOther_Click"] = [&] { within(form), second->Unload(); };
            second->Show_Modal();
        };
    };
    const Handler unload = [](Small_Form& form) { form.Unload(); };
    const Handler fail = [](Small_Form&) { automation::Raise(automation::run_time::Overflow); };
    const Handler use_display = [](Small_Form& form) {
        form.txtName.Set_Text(u"in between");
        toolkit::Current_Display().Process_Pending_Messages();
        const auto path = std::filesystem::temp_directory_path() / "window-threads-test.png";
        window::Save_Picture(form, path.string());
        EXPECT_EQ(QImage(QString::fromStdString(path.string())).size(), QSize(312, 300));
        std::filesystem::remove(path);
        EXPECT_THROW(window::Save_Picture(form, "/no/such/folder/x.png"), window::Cannot_Show);
        form.Hide();
    };
    const std::vector<std::pair<std::string, Handler>> cases{
        {"unload", unload},           {"unload, inner", inner(unload)}, {"fail", fail},
        {"fail, inner", inner(fail)}, {"use display", use_display},
    };
    for (const auto& [name, does] : cases) {
        SCOPED_TRACE(name);
        const auto is = [name = name](const char* what) { return name.find(what) != std::string::npos; };
        Form_Thread thread(u"Form", [&, does = does](Small_Form& form) {
            form.On["cmdOther_Click"] = [&] { does(form); };
            if (is("fail"))
                EXPECT_THROW(form.Show_Modal(), Failure);
            else
                form.Show_Modal();
            EXPECT_EQ(form.Is_Gone(), is("unload"));
            form.Show_Modal(); // again, unless it is gone
        });
        Click("Form", "cmdOther");
        if (is("inner"))
            Click("Inner", "cmdOther");
        if (!is("unload"))
            Click("Form", "cmdOK");
        thread.Ends();
    }
}

TEST_F(Own_Qt_Thread_Test, A_Click_Goes_On_After_The_Question_That_Leaving_A_Field_Asks) {
    Form_Thread thread(u"Form", [](Small_Form& form) {
        form.On["txtName_LostFocus"] = [] { toolkit::Show_Message(Question); };
        form.On["cmdOther_Click"] = [&] { form.Hide(); };
        form.Show_Modal();
        EXPECT_EQ(form.Take_Log(), (std::vector<std::string>{"txtName_LostFocus", "cmdOther_Click"}));
    });
    With("Form", [](QDialog& dialog) { // the mouse is released under the box
        auto& button = *dialog.findChild<QPushButton*>("cmdOther");
        QTest::mousePress(&button, Qt::LeftButton, {}, {8, 8});
        QTest::mouseRelease(&button, Qt::LeftButton, {}, {8, 8});
        EXPECT_FALSE(button.isDown());
    });
    Answer("Question", QMessageBox::Cancel);
    thread.Ends();
}

TEST_F(Own_Qt_Thread_Test, A_Handler_That_Takes_Long_Holds_Up_Its_Own_Window_Only) {
    std::promise<void> at_work, done;
    Form_Thread slow(u"Slow", [&](Small_Form& form) {
        form.On["cmdOther_Click"] = [&] {
            at_work.set_value();
            EXPECT_EQ(done.get_future().wait_for(5s), std::future_status::ready);
            form.Hide();
        };
        form.Show_Modal();
    });
    Form_Thread quick(u"Quick", [&](Small_Form&) {
        at_work.get_future().wait();
        const auto began = std::chrono::steady_clock::now();
        for (int at = 0; at < 300; ++at)
            EXPECT_GT(toolkit::Current_Display().Screen_Size().Width, 0);
        EXPECT_LT(std::chrono::steady_clock::now() - began, 2s);
        done.set_value();
    });
    With("Slow", [](QDialog& dialog) {
        QTimer::singleShot(0, &dialog, [&dialog] { dialog.findChild<QPushButton*>("cmdOther")->click(); });
    });
    slow.Ends();
    quick.Ends();
}

TEST_F(Own_Qt_Thread_Test, The_Window_Is_Painted_While_A_Handler_Takes_Long) {
    std::atomic<bool> painted = false;
    Form_Thread thread(u"Form", [&](Small_Form& form) {
        form.cmbPlace.Set_Selected_Index(1);
        form.On["cmdOther_Click"] = [&] {
            toolkit::screen::Set_Mouse_Pointer(toolkit::Pointer_Hourglass);
            for (int at = 0; !painted && at < 1000; ++at, std::this_thread::sleep_for(5ms))
                form.cmbPlace.Add_Item(u"another");
            toolkit::screen::Set_Mouse_Pointer(toolkit::Pointer_Default);
            form.Hide();
        };
        form.Show_Modal();
    });
    QImage before;
    With("Form", [&](QDialog& dialog) {
        before = dialog.findChild<QWidget*>("cmbPlace")->grab().toImage();
        QTimer::singleShot(0, &dialog, [&dialog] { dialog.findChild<QPushButton*>("cmdOther")->click(); });
    });
    With("Form", [&](QDialog& dialog) {
        EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
        EXPECT_EQ(dialog.findChild<QWidget*>("cmbPlace")->grab().toImage(), before);
        painted = true;
    });
    thread.Ends();
    On_Qt([] { EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr); });
}

void Loses_Its_Window(Small_Form& form) {
    form.On["cmdOther_Click"] = [] {
        EXPECT_EQ(toolkit::Show_Message(Question), toolkit::answer::Not_Shown);
    };
    EXPECT_THROW(form.Show_Modal(), Failure);
    EXPECT_THROW(form.Show_Modal(), Failure) << "later, too";
    EXPECT_EQ(toolkit::Show_Message(Question), toolkit::answer::Not_Shown);
    form.txtName.Set_Text(u"the form lives on");
}

TEST_F(Window_Threads_Test, The_Application_Ends_While_A_Dialog_Is_Up) {
    for (const bool asked : {false, true}) {
        SCOPED_TRACE(asked);
        const auto keeping_qt_up = window::Open_Display();
        Form_Thread thread(u"Form", Loses_Its_Window);
        if (asked)
            Click("Form", "cmdOther");
        With(asked ? "Question" : "Form", [](QDialog&) { QCoreApplication::exit(); });
        thread.Ends();
    }
    EXPECT_EQ(QCoreApplication::instance(), nullptr) << "it goes with the last display";
}

// Qt would end the process. What it says before that stands in for the loss of a real display.
TEST_F(Window_Threads_Test, The_Display_Goes_Away_While_A_Dialog_Is_Up) {
    const auto lose_it = [] {
        const auto keeping_qt_up = window::Open_Display();
        Form_Thread thread(u"Form", Loses_Its_Window);
        With("Form", [](QDialog& dialog) {
            QTimer::singleShot(0, &dialog, [] { qWarning("The X11 connection broke (error 1)."); });
        });
        thread.Ends();
        EXPECT_THROW(window::Open_Display(), window::Cannot_Show);
        std::_Exit(testing::Test::HasFailure() ? 1 : 0);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a forked child would miss the threads of earlier tests
    EXPECT_EXIT(lose_it(), testing::ExitedWithCode(0), "");
}

// The host has an application, on this thread, whose event loop runs until the hands are done.
TEST_F(Window_Threads_Test, The_Application_Is_The_Hosts) {
    int count = 1;
    char name[] = "host";
    char* arguments[] = {name, nullptr};
    std::optional<QApplication> host(std::in_place, count, arguments);
    EXPECT_GT(window::Open_Display()->Screen_Size().Width, 0) << "its own thread needs no event loop for it";
    const auto run = [](const std::function<void()>& hands) {
        const auto done =
            std::async(std::launch::async, [&] { hands(), On_Qt([] { QApplication::exit(); }); });
        QApplication::exec();
    };
    Form_Thread used(u"Form", [](Small_Form& form) {
        form.Show_Modal();
        EXPECT_EQ(form.txtName.Text(), u"abc");
    });
    run([&] { Type("Form", "txtName", "abc"), Click("Form", "cmdOK"), used.Ends(); });
    Form_Thread left(u"Form", Loses_Its_Window);
    run([] { Click("Form", "cmdOther"); });
    left.Ends();
    Form_Thread with_a_dialog(u"Form", Loses_Its_Window);
    while (!QApplication::activeModalWidget())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    host.reset();
    with_a_dialog.Ends();
}

TEST_F(Window_Threads_Test, Starts_Quietly_Or_Says_What_Is_Missing) {
    static QStringList warnings;
    (void)QThread::currentThread(); // for Qt this is the main thread from now on
    const auto former = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { warnings += text; });
    window::Open_Display().reset();
    qWarning("heard");
    qInstallMessageHandler(former);
    EXPECT_TRUE(warnings.contains("heard"));
    EXPECT_TRUE(warnings.filter("main() thread").isEmpty()) << warnings.join('\n').toStdString();

    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    qputenv("QT_QPA_PLATFORM", "no-such-thing");
    EXPECT_THROW(window::Open_Display(), window::Cannot_Show);
    qputenv("QT_QPA_PLATFORM", platform);
    EXPECT_EQ(QCoreApplication::instance(), nullptr);
    int count = 1;
    char name[] = "host";
    char* arguments[] = {name, nullptr};
    const QCoreApplication without_widgets(count, arguments);
    EXPECT_THROW(window::Open_Display(), window::Cannot_Show);
    EXPECT_THROW(std::async(std::launch::async, window::Open_Display).get(), window::Cannot_Show);
}

} // namespace

} // namespace window_test
