// The terminal Display in a child process behind a real pseudo-terminal: keys in, cells out, and what became
// of the form over a pipe.
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "automation/number.h"
#include "dialog/dlg_gui.h"
#include "terminal/terminal_display.h"
#include "terminal_screen.h"

namespace terminal_test {

using automation::To_UTF8;
using namespace toolkit;

class Small_Form final : public Form {
public:
    explicit Small_Form(std::string& log)
        : Form({u"Small", u"Small form", {4680, 3000}, {90, 435}}), log(log) {
        Set_Default_Button(ok);
        Set_Cancel_Button(cancel);
        for (int entry = 1; entry <= 32767; ++entry)
            node.Add_Item(u"Node " + automation::Decimal_Text(entry));
        for (String_View item : {u"50", u"100", u"150"})
            number.Add_Item(item);
        text.On_Change = [this] {
            if (text.Text() == u"throw")
                throw automation::Failure(5, u"thrown");
            ++changes;
        };
        ok.On_Click = [this] { Tell(); };
        cancel.On_Click = [this] { Ask(); };
    }

    Label name{*this, {1, u"name", {240, 135, 525, 195}, 0, u"&Name:"}, {.Auto_Size = true}};
    Text_Box text{*this, {2, u"text", {1200, 120, 3375, 285}, 1}};
    Combo_Box node{*this, {3, u"node", {1200, 480, 1455, 315}, 2}, Combo_Box::Style::List_Only};
    Combo_Box number{*this, {4, u"number", {3000, 480, 1455, 315}, 3}, Combo_Box::Style::Editable};
    Frame frame{*this, {5, u"frame", {120, 1080, 4455, 975}, 4, u"Kind"}};
    Option_Button blind{*this, {6, u"blind", {240, 240, 1335, 255}, 5, u"BLIND", &frame}};
    Option_Button full{*this, {7, u"full", {2040, 260, 1215, 195}, 6, u"&FULL", &frame}};
    Command_Button ok{*this, {8, u"ok", {700, 2480, 855, 372}, 7, u"&OK"}};
    Command_Button cancel{*this, {9, u"cancel", {1900, 2480, 855, 375}, 8, u"Cancel"}};

private:
    void Tell() {
        log += To_UTF8(text.Text() + u"|" + node.Text() + u"|" + number.Text()) +
               (blind.Value()  ? "|blind"
                : full.Value() ? "|full"
                               : "|") +
               "|" + std::to_string(changes);
        Unload();
    }
    void Ask() {
        const Message question{
            .By_Product = true, .Text = u"Do you want to save?", .Kind = 1, .Buttons = 3, .Title = {}};
        const auto answer = Show_Message(question);
        log += "answer " + std::to_string(answer) + " ";
        if (answer == answer::Discard)
            Unload();
    }
    std::string& log;
    int changes = 0;
};

std::string Failure_Of(const std::function<void()>& body) try {
    body();
    return {};
} catch (const automation::Failure& failure) {
    return "failed: " + To_UTF8(failure.Description);
} catch (const terminal::Cannot_Show& error) {
    return std::string("cannot: ") + error.what();
}

// What the process had before, a terminal that has gone apart.
std::string State() {
    termios modes{};
    std::string state = ::tcgetattr(STDIN_FILENO, &modes) == 0 ? std::to_string(modes.c_lflag) + " " : "";
    for (int signal : {SIGHUP, SIGINT, SIGQUIT, SIGABRT, SIGSEGV, SIGTERM, SIGTSTP, SIGCONT, SIGWINCH}) {
        struct sigaction action {};
        ::sigaction(signal, nullptr, &action);
        state += action.sa_handler == SIG_DFL ? "d" : "h";
    }
    return state;
}

std::string Show(const std::function<std::shared_ptr<Form>(std::string& log)>& make) {
    std::string log;
    const std::string before = State();
    log += Failure_Of([&] {
        const auto display = terminal::Create_Terminal_Display();
        Set_Display(display.get());
        std::string failure = Failure_Of([&] { make(log)->Show_Modal(); });
        Discard_All_Forms();
        Set_Display(nullptr);
        log += failure;
    });
    const std::string after = State();
    const bool kept =
        before.ends_with(after.substr(after.find(' ') + 1)) && (after.find(' ') > 9 || after == before);
    return log + (kept ? "" : " (not restored: " + before + " to " + after + ")");
}

std::string Show_Small() {
    return Show([](std::string& log) { return std::make_shared<Small_Form>(log); });
}

class Session {
public:
    using Body = std::function<std::string()>;
    explicit Session(const Body& body, const char* term = "vt100", winsize size = {24, 80, 0, 0})
        : screen(size.ws_row, size.ws_col) {
        int ends[2];
        EXPECT_EQ(::pipe(ends), 0);
        child = ::forkpty(&master, nullptr, nullptr, &size);
        if (child == 0) {
            ::setenv("TERM", term, 1);
            ::setenv("LC_ALL", "C.UTF-8", 1);
            const std::string result = body();
            ::_exit(::write(ends[1], result.data(), result.size()) < 0);
        }
        ::close(ends[1]);
        results = ends[0];
    }
    ~Session() {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        Hang_Up();
        ::close(results);
    }
    void Send(const std::string& keys) { EXPECT_GE(::write(master, keys.data(), keys.size()), 0); }
    void Signal(int signal) const { ::kill(child, signal); }
    // The signal that has ended the program; 0 for none.
    int Ended_By() {
        int status = 0;
        while (::waitpid(child, &status, WNOHANG) == 0)
            Read(20);
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }
    tcflag_t Modes() const {
        termios modes{};
        EXPECT_EQ(::tcgetattr(master, &modes), 0);
        return modes.c_lflag & static_cast<tcflag_t>(ICANON | ECHO | ISIG);
    }
    void Hang_Up() {
        if (master >= 0)
            ::close(std::exchange(master, -1));
    }
    void Resize(winsize size) {
        screen.Resize(size.ws_row, size.ws_col);
        ::ioctl(master, TIOCSWINSZ, &size);
    }
    bool Shows(const std::string& text) {
        while (screen.Text().find(text) == std::string::npos)
            if (!Read(5000))
                return false;
        while (Read(20)) { // the rest of what is painted
        }
        return true;
    }
    // What the body answered; the screen is kept up to date meanwhile.
    std::string Result() {
        pollfd watched[] = {{results, POLLIN, 0}, {master, POLLIN, 0}};
        while (::poll(watched, 2, 5000) > 0 && watched[0].revents == 0)
            if (!Read(0))
                watched[1].fd = -1;
        while (Read(0)) {
        }
        char bytes[4096];
        const auto count = watched[0].revents ? ::read(results, bytes, sizeof bytes) : -1;
        return count >= 0 ? std::string(bytes, static_cast<std::size_t>(count)) : "no result";
    }
    Tiny_Terminal screen;
    std::string Raw;

private:
    // Whether something came.
    bool Read(int milliseconds) {
        pollfd watched{master, POLLIN, 0};
        if (::poll(&watched, 1, milliseconds) <= 0)
            return false;
        char bytes[4096];
        const auto count = ::read(master, bytes, sizeof bytes);
        for (ssize_t at = 0; at < count; ++at)
            screen.Feed(bytes[at]);
        Raw.append(bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        return count > 0;
    }
    pid_t child = 0;
    int master = -1;
    int results = -1;
};

struct Step {
    std::string Keys;
    std::string Shows; // afterwards
};

void Do(Session& session, const std::vector<Step>& steps) {
    ASSERT_TRUE(session.Shows("Esc: Cancel")) << session.screen.Text();
    for (const Step& step : steps) {
        session.Send(step.Keys);
        ASSERT_TRUE(session.Shows(step.Shows)) << step.Keys << " does not show " << step.Shows << " but\n"
                                               << session.screen.Text();
    }
}

TEST(Terminal, A_Key_Is_The_Same_Event_As_In_A_Window) {
    const struct {
        std::vector<Step> Steps;
        std::string Result;
    } cases[] = {
        {{{"helo\033OD", "helo"},
          {"l\033[H>\033[F!", ">hello!"},
          {"\x7F\033[H\033[3~", "[hello"},
          {"\r", ""}},
         "hello||||9"},
        {{{"日é\U0001F600e\u0301", "日é"}, {"\033OD\033[3~\x7F\r", ""}}, "日é||||7"}, // whole characters go
        // What would turn or hide text is marked, and kept.
        {{{"\033[200~a\u202Eb\033[201~", "[a\uFFFDb"}, {"\r", ""}}, "a\u202Eb||||1"},
        {{{"\033[200~1e3\r\n\033[201~", "1e3"}, {"\r", ""}}, "1e3||||1"}, // a paste is one edit
        {{{"\t", "F4"}, {"\033[1;3B", "1/32767"}, {"node 32000", "Node 32000"}, {"\r\r", ""}},
         "|Node 32000|||0"},
        {{{"\tn", "Node 10"}, {"\033", "( ) FULL"}, {"\033[B\r", ""}}, "|Node 1|||0"},
        {{{"\t\t\033OS", "150"}, {"1", " 1 "}, {"\r\r", ""}}, "||100||0"},
        {{{"\t\t7\033OB", "[50"}, {"\033OB\r", ""}}, "||100||0"},
        {{{"abc\033[H\001", "replaces the text"}, {"x", "[x "}, {"y\001\033[H!", "[!xy"}, {"\r", ""}},
         "!xy||||6"},
        {{{"abc\001\x7F", "[  "}, {"de\001\033[200~f\033[201~", "[f "}, {"\r", ""}},
         "f||||7"}, // one edit each
        {{{"\t\t\t ", "(*) BLIND"}, {"\033[C", "(*) FULL"}, {"\r", ""}}, "|||full|0"},
        {{{"\033f", "(*) FULL"}, {"\033n!", "[!"}, {"\033o", ""}}, "!|||full|1"},
        {{{"\t\t\t\t", "Space"}, {"\033[Z\033[Z\033[Z\033[Zx", "[x"}, {"\r", ""}}, "x||||1"},
        {{{"\033", "<  Save"}, {"\033", "( ) FULL"}, {"\033", "Discard"}, {"d", ""}}, "answer 4 answer 3 "},
        {{{"\033", "<  Save"}, {"\r", "( ) FULL"}, {"\033", "Save"}, {"\t\r", ""}}, "answer 2 answer 3 "},
        {{{"\003", "Ctrl-C does nothing"}, {"\032\f\033[15~x", "[x"}, {"\r", ""}}, "x||||1"},
        {{{"throw", ""}}, "failed: thrown"},
    };
    for (const auto& test : cases) {
        Session session(Show_Small);
        Do(session, test.Steps);
        EXPECT_EQ(session.Result(), test.Result) << test.Steps.front().Keys << "\n" << session.screen.Text();
    }
}

TEST(Terminal, Shows_The_Whole_Dialog_In_80_By_24_And_Scrolls_In_Less) {
    const auto show = [] {
        return Show([](std::string&) {
            const auto form = std::make_shared<dialog::dlgGUI>();
            form->txtDescription.Set_Text(u"漢字 e\u0301");
            form->cmdApply.Set_Enabled(false);
            return form;
        });
    };
    Session session(show);
    Do(session, {});
    for (const char* seen : {"─ Node Editor ─",
                             "[ |◄ ][ ◄  ][",
                             "n/m",
                             "[ ►  ][ ►| ]",
                             "Description:  ",
                             "┌ Supervised ─",
                             "( ) Blind",
                             "( ) Full",
                             "( ) Dial Continue",
                             "Hook Flask (msec):  ",
                             "Transfer:  ",
                             "Disconnect:  ",
                             "Threshold:  ",
                             "Retrieve:  ",
                             "Busy Retry (sec):  ",
                             "Ring Off (msec):  ",
                             "<     OK     >",
                             "[   Cancel   ]",
                             "   Apply   ",
                             "[漢字 e\u0301    "})
        EXPECT_TRUE(session.Shows(seen)) << seen << "\n" << session.screen.Text();
    session.Resize({12, 40, 0, 0});
    EXPECT_TRUE(session.Shows("▼\n")) << session.screen.Text();
    EXPECT_EQ(session.screen.Text().find("[ Cancel ]"), std::string::npos);
    session.Send("\033[Z"); // to Last, in the first row
    ASSERT_TRUE(session.Shows("►| ]")) << session.screen.Text();
    session.Send("\033OD\033[Z\033[Z\033[Z\033[Z\033[Z");
    ASSERT_TRUE(session.Shows("[ Cancel ]")) << session.screen.Text();
}

TEST(Terminal, A_Resize_Loses_Nothing) {
    Session session(Show_Small);
    Do(session, {{"kept", "[kept"}, {"\t\033OS", "1/32767"}});
    session.Resize({12, 44, 0, 0});
    EXPECT_TRUE(session.Shows("1/32767"));
    session.Send("\033");
    ASSERT_TRUE(session.Shows("( ) FULL"));
    session.Resize({40, 120, 0, 0});
    ASSERT_TRUE(session.Shows("[kept")) << session.screen.Text();
    session.Send("\r");
    EXPECT_EQ(session.Result(), "kept||||4");
}

TEST(Terminal, An_End_From_Outside_Is_One_Failure_And_Neither_Saves_Nor_Discards) {
    const std::string closed = "failed: The terminal was closed while the dialog was up";
    const std::string asked = "failed: The program was asked to end while the dialog was up";
    const struct {
        const char* Keys;
        int Signal; // 0: the terminal goes
        std::string Result;
    } cases[] = {{"abc", SIGHUP, closed},
                 {"abc", 0, closed},
                 {"abc", SIGTERM, asked},
                 {"\t\033OS", SIGTERM, asked},
                 {"\033", SIGTERM, "answer 4 " + asked},
                 {"\033", 0, "answer 4 " + closed}};
    for (const auto& test : cases) {
        Session session(Show_Small);
        Do(session, {{test.Keys, *test.Keys == 'a' ? "[abc" : *test.Keys == '\t' ? "1/32767" : "Discard"}});
        test.Signal != 0 ? session.Signal(test.Signal) : session.Hang_Up();
        EXPECT_EQ(session.Result(), test.Result) << test.Keys << ", signal " << test.Signal;
    }
}

TEST(Terminal, A_Signal_That_Ends_The_Program_Finds_The_Terminal_As_It_Was) {
    for (const int signal : {SIGINT, SIGQUIT, SIGABRT, SIGSEGV, SIGBUS}) {
        Session session([signal] {
            ::signal(signal, SIG_DFL); // a sanitizer would exit instead
            return Show_Small();
        });
        const auto modes = session.Modes();
        Do(session, {{"abc", "[abc"}});
        EXPECT_NE(session.Modes(), modes);
        session.Signal(signal);
        EXPECT_EQ(session.Ended_By(), signal);
        EXPECT_EQ(session.Modes(), modes) << signal;
    }
}

TEST(Terminal, Says_In_One_Line_Why_It_Cannot_Show) {
    const auto create = [] { return Failure_Of([] { terminal::Create_Terminal_Display(); }); };
    const auto redirected = [&] {
        ::dup2(::open("/dev/null", O_RDWR), STDIN_FILENO);
        return create();
    };
    EXPECT_EQ(Session(redirected).Result().substr(0, 29), "cannot: There is no terminal:");
    EXPECT_EQ(Session(create, "no-such").Result().substr(0, 59),
              "cannot: The terminal cannot be drawn on: TERM is no-such; s");
    EXPECT_EQ(Session(create, "xterm", {11, 80, 0, 0}).Result().substr(0, 48),
              "cannot: The terminal is too small: 80 x 11 cells");
    EXPECT_EQ(Session(create).Result(), "");
}

TEST(Terminal, Colours_Are_Off_By_NO_COLOR) {
    for (const char* wish : {"", "1"}) {
        Session session(
            [&] {
                ::setenv("NO_COLOR", wish, 1);
                return Show_Small();
            },
            "xterm");
        session.Send("\r");
        EXPECT_EQ(session.Result(), "||||0");
        EXPECT_EQ(session.Raw.find("\033[46m") == std::string::npos, *wish != '\0') << wish;
    }
}

TEST(Terminal, Shows_One_Dialog_After_The_Other_And_A_Busy_Pointer) {
    Session session([] {
        const std::string first = Show_Small();
        screen::Set_Mouse_Pointer(Pointer_Hourglass);
        return first + " " + Show_Small();
    });
    Do(session, {{"one\r", "Please wait"}, {"two", "[two"}, {"\r", ""}});
    EXPECT_EQ(session.Result(), "one||||3 two||||3");
}

} // namespace terminal_test
