// Plays editing scripts in the test's own process, on a store and files of its own, and gives back the
// transcript's lines. The session's folder goes with it.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

using Line = nlohmann::json;
using Lines = std::vector<Line>;

class Editor_Session {
public:
    Editor_Session();
    // On a store that is there already.
    explicit Editor_Session(std::string store);
    ~Editor_Session();
    Editor_Session(const Editor_Session&) = delete;
    Editor_Session& operator=(const Editor_Session&) = delete;

    // The lines that `style-editor play` prints for the script; the exit status and standard error are kept.
    // Every Play starts with fresh classes, on the store as earlier ones left it.
    Lines Play(std::string_view script, std::vector<std::string> options = {});
    // What another command of the program prints; its status and standard error are kept.
    std::string Command(std::vector<std::string> arguments, std::string_view input = "");
    int Status() const { return status; }
    const std::string& Errors() const { return errors; }

    // Called with every line as soon as it is printed, while the editor waits.
    std::function<void(const Line&)> On_Line;

    // Puts a file into the session's folder and answers its path.
    std::string File(const std::string& name, std::string_view content) const;
    const std::filesystem::path& Folder() const { return folder; }
    const std::string& Store() const { return store; }

private:
    std::filesystem::path folder;
    std::string store;
    int status = 0;
    std::string errors;
};

// The lines of one event ("control", "call", "box", "result", ...), in order.
Lines Only(const Lines& lines, std::string_view event);
// Component operations in the order of their calls, as "Get_Style_Nodes(1,1)"; boxes as "Show_Box".
std::vector<std::string> Calls(const Lines& lines);
// The last line about a control; fails the test when there is none.
Line Last_Control(const Lines& lines, std::string_view name);
