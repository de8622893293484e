#include "editor_session.h"

#include <fstream>
#include <sstream>
#include <unistd.h>

#include <gtest/gtest.h>

#include "host/program.h"
#include "shell/registry.h"
#include "shell/replaced_strings.h"

namespace {

std::filesystem::path New_Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "editor-session-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no folder for the session");
    return pattern;
}

// Gives each line away when it is flushed.
class Line_Buffer : public std::stringbuf {
public:
    explicit Line_Buffer(std::function<void(const std::string&)> take) : take(std::move(take)) {}

protected:
    int sync() override {
        const std::string lines = str();
        str({});
        take(lines);
        return 0;
    }

private:
    const std::function<void(const std::string&)> take;
};

int Run(std::vector<std::string> arguments, std::string_view input, std::string& errors,
        const std::function<void(const std::string&)>& take) {
    std::istringstream in{std::string(input)};
    Line_Buffer out(take);
    std::ostream out_stream(&out);
    std::ostringstream error_stream;
    arguments.insert(arguments.begin(), "style-editor");
    const int status = host::Run_Program(arguments, {in, out_stream, error_stream});
    out_stream.flush();
    errors = error_stream.str();
    return status;
}

} // namespace

Editor_Session::Editor_Session() : folder(New_Folder()), store("sqlite:" + (folder / "store.db").string()) {
    status = Run({"store", "init", "--store", Store()}, "", errors, [](const std::string&) {});
    EXPECT_EQ(status, 0) << errors;
}

Editor_Session::Editor_Session(std::string store) : folder(New_Folder()), store(std::move(store)) {}

Editor_Session::~Editor_Session() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

Lines Editor_Session::Play(std::string_view script, std::vector<std::string> options) {
    std::vector<std::string> arguments{"play", "-", "--store", Store(), "--appdata", folder.string()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    shell::Restore_Strings(); // the program runs once per process, a session many times
    shell::Unload_Hive();
    Lines lines;
    status = Run(arguments, script, errors, [&](const std::string& printed) {
        if (printed.empty())
            return;
        lines.push_back(Line::parse(printed));
        if (On_Line)
            On_Line(lines.back());
    });
    return lines;
}

std::string Editor_Session::Command(std::vector<std::string> arguments, std::string_view input) {
    std::string out;
    status = Run(std::move(arguments), input, errors, [&](const std::string& printed) { out += printed; });
    return out;
}

std::string Editor_Session::File(const std::string& name, std::string_view content) const {
    const auto path = folder / name;
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
}

Lines Only(const Lines& lines, std::string_view event) {
    Lines wanted;
    for (const Line& line : lines)
        if (line.at("event") == event)
            wanted.push_back(line);
    return wanted;
}

std::vector<std::string> Calls(const Lines& lines) {
    std::vector<std::string> calls;
    for (const Line& line : lines) {
        if (line.at("event") == "box")
            calls.push_back("Show_Box");
        if (line.at("event") != "call")
            continue;
        std::string call = line.at("operation");
        char separator = '(';
        for (const Line& argument : line.at("arguments")) {
            call += separator + argument.get<std::string>();
            separator = ',';
        }
        calls.push_back(separator == '(' ? call + "()" : call + ")");
    }
    return calls;
}

Line Last_Control(const Lines& lines, std::string_view name) {
    Line last;
    for (const Line& line : lines)
        if (line.at("event") == "control" && line.at("name") == name)
            last = line;
    EXPECT_FALSE(last.is_null()) << "nothing was shown of " << name;
    return last;
}
