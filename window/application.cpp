#include "application.h"

#include <cerrno>
#include <utility>

#include "desktop_colors.h"
#include "platform_check.h"
#include "window/qt_display.h"

namespace window {

namespace {

// What Qt wants to live as long as its application.
struct Arguments {
    explicit Arguments(std::vector<std::string> given) : words(std::move(given)) {
        for (std::string& word : words)
            pointers.push_back(word.data());
        count = static_cast<int>(pointers.size());
        pointers.push_back(nullptr);
    }
    std::vector<std::string> words;
    std::vector<char*> pointers;
    int count = 0;
};

class Own_Application final : private Arguments, public QApplication {
public:
    explicit Own_Application(std::vector<std::string> arguments)
        : Arguments(std::move(arguments)), QApplication(count, pointers.data()) {}

    // What a handler of ours throws, without memory for instance, must not pass through Qt: it ends the
    // application, and with it every dialog, whose host is told.
    bool notify(QObject* receiver, QEvent* event) override {
        try {
            return QApplication::notify(receiver, event);
        } catch (...) {
            exit();
            return false;
        }
    }
};

} // namespace

std::unique_ptr<QApplication> Create_Application(std::vector<std::string> arguments) {
    const Platform_Check check;
    if (!check.Obstacle().isEmpty())
        throw Cannot_Show(check.Obstacle().toStdString());
    // An option: the environment is the host's, and its threads may be reading it.
    if (arguments.empty())
        arguments.emplace_back(program_invocation_name);
    arguments.insert(arguments.begin() + 1, {"-platform", check.Platform().toStdString()});
    auto application = std::make_unique<Own_Application>(std::move(arguments));
    QApplication::setStyle(QStringLiteral("Fusion"));
    Follow_Desktop_Colors();
    return application;
}

void Require_Widgets(const QCoreApplication& present) {
    if (!qobject_cast<const QApplication*>(&present))
        throw Cannot_Show(
            "There is no display: the host's Qt application has no widgets; make it a QApplication");
}

} // namespace window
