// The window against the bare toolkit, on the editor's real dialog, with few nodes and with as many as there
// can be: the first paint, a navigation step, a key and the list of the nodes. What is compared runs in
// turns; prints minima in milliseconds and ends with 1 when a bound is missed.
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "plain_dialog.h"
#include "run_setup/setup.h"
#include "run_setup/store_choice.h"
#include "toolkit/user_input.h"
#include "transcript/box_reporter.h"
#include "transcript/job.h"
#include "window/qt_display.h"

namespace {

using Clock = std::chrono::steady_clock;
using Work = std::function<void()>;

double Since(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// The least time so far.
struct Least {
    double Time = 1e9;
    void Take(double time) { Time = std::min(Time, time); }
    void Take(const Work& work) {
        const auto start = Clock::now();
        work();
        Take(Since(start));
    }
};

// Runs something as soon as a window has been painted for the first time.
class First_Paint final : public QObject {
public:
    explicit First_Paint(Work then) : then(std::move(then)) {
        QCoreApplication::instance()->installEventFilter(this);
        Look_Soon();
    }
    bool eventFilter(QObject* object, QEvent* event) override {
        painted = painted || (event->type() == QEvent::Paint && static_cast<QWidget*>(object)->isWindow());
        return false;
    }

private:
    void Look_Soon() {
        QTimer::singleShot(0, this, [this] { painted ? then() : Look_Soon(); });
    }
    const Work then;
    bool painted = false;
};

// Has no person: the dialog that the editor opens is measured, and closed again.
class Stage final : public host::Box_Reporter {
public:
    using Box_Reporter::Box_Reporter;
    std::function<void(toolkit::Form&)> Measure;

    void Run_Modal(toolkit::Form& form) override {
        Measure(form);
        static_cast<void>(toolkit::user_input::Close(form));
    }
    automation::Long Show_Message(const toolkit::Message& message) override {
        return message.Asks() ? toolkit::answer::Discard : toolkit::answer::OK;
    }
    // Shows the form in a window of Qt, and takes only that away at the end.
    void Show(toolkit::Form& form, const std::function<void(QWidget& dialog)>& act) {
        const First_Paint watch([&] {
            act(*QApplication::activeModalWidget());
            Form_Unloaded(form);
        });
        Box_Reporter::Run_Modal(form);
    }
};

bool Report(const char* what, double ours, double other, double bound, double value) {
    std::printf("  %-16s window %8.4f, other %8.4f: %.4f (at most %.1f)\n", what, ours, other, value, bound);
    return value <= bound;
}

bool First_Paint_Of(Stage& stage, toolkit::Form& form) {
    Least ours, plain;
    for (int round = 0; round < 40; ++round) {
        auto start = Clock::now();
        stage.Show(form, [&](QWidget&) { ours.Take(Since(start)); });
        start = Clock::now();
        const auto dialog = benchmarks::Make_Plain_Dialog(form);
        const First_Paint watch([&] {
            plain.Take(Since(start));
            dialog->reject();
        });
        dialog->exec();
    }
    return Report("first paint", ours.Time, plain.Time, 1.3, ours.Time / plain.Time);
}

// To the next node and back; in the window with everything that it has painted then.
bool Navigation(Stage& stage, toolkit::Form& form) {
    const toolkit::String_View buttons[] = {u"cmdNext", u"cmdPrevious", u"cmdNext", u"cmdPrevious"};
    Least ours, bare;
    for (int round = 0; round < 40; ++round) {
        for (const auto name : buttons)
            bare.Take([&] { static_cast<void>(toolkit::user_input::Press(*form.Find(name))); });
        stage.Show(form, [&](QWidget& dialog) {
            for (const auto name : buttons) {
                auto& button = *dialog.findChild<QPushButton*>(QString::fromUtf16(name.data()));
                ours.Take([&] { button.click(), QApplication::processEvents(); });
            }
        });
    }
    return Report("navigation", ours.Time, bare.Time, 1, ours.Time - bare.Time);
}

bool Key(Stage& stage, toolkit::Form& form) {
    auto& field = static_cast<toolkit::Text_Box&>(*form.Find(u"txtDescription"));
    Least ours, bare;
    const auto empty = [&] { static_cast<void>(toolkit::user_input::Edit(field, u"", 0)); };
    for (int round = 0; round < 20; ++round) {
        empty();
        for (int key = 0; key < 10; ++key)
            bare.Take([&] { static_cast<void>(toolkit::user_input::Type(field, u"a")); });
        empty();
        stage.Show(form, [&](QWidget& dialog) {
            auto& line = *dialog.findChild<QLineEdit*>("txtDescription");
            for (int key = 0; key < 10; ++key) {
                QKeyEvent pressed(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
                ours.Take([&] { QApplication::sendEvent(&line, &pressed); });
            }
        });
        if (field.Text() != u"aaaaaaaaaa")
            throw std::logic_error("the keys did not arrive");
    }
    return Report("key", ours.Time, bare.Time, 0.1, ours.Time - bare.Time);
}

// Against a list without entries.
bool Opening(Stage& stage, toolkit::Form& form) {
    Least full, empty;
    stage.Show(form, [&](QWidget& dialog) {
        QComboBox none(&dialog);
        none.show();
        for (int round = 0; round < 10; ++round)
            for (QComboBox* combo : {dialog.findChild<QComboBox*>("cmbNode"), &none}) {
                Least& least = combo == &none ? empty : full;
                least.Take([&] { combo->showPopup(), QApplication::processEvents(); });
                combo->hidePopup();
            }
    });
    return Report("list of nodes", full.Time, empty.Time, 5, full.Time - empty.Time);
}

bool With_Nodes(Stage& stage, int nodes) {
    std::string folder = (std::filesystem::temp_directory_path() / "benchmark-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    host::Common_Options options;
    options.Store = host::Create_Store("sqlite:" + folder + "/store.db", nodes);
    options.App_Data = folder;
    std::ostringstream unseen;
    host::Transcript transcript(unseen);
    host::Setup setup(options, transcript);
    setup.Start();
    bool kept = true;
    stage.Measure = [&](toolkit::Form& form) {
        std::printf("%d nodes\n", nodes);
        for (const auto measure : {First_Paint_Of, Navigation, Opening, Key})
            kept = measure(stage, form) && kept;
    };
    style_node::Editor editor;
    const bool shown = host::Run_Job(editor, {.Node_Number = 2}).Shown;
    std::filesystem::remove_all(folder);
    return shown && kept;
}

} // namespace

int main() {
    const auto display = window::Create_Qt_Display({"style-node"});
    std::ostringstream unseen;
    host::Transcript transcript(unseen);
    Stage stage(*display, transcript);
    toolkit::Set_Display(&stage);
    bool kept = true;
    for (const int nodes : {12, 100, 32'766})
        kept = With_Nodes(stage, nodes) && kept;
    toolkit::Discard_All_Forms();
    toolkit::Set_Display(nullptr);
    return kept ? 0 : 1;
}
