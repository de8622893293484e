// Shows the node editor for one node:
//
//     cpp-host CONFIG PARTITION NODE
//
// Ends with 0 when no error was recorded, 1 when one was, 2 for a wrong command line, 3 when there is no
// editor.
#include <array>
#include <charconv>
#include <iostream>
#include <optional>
#include <string>

#include "style_node/editor.h"

namespace {

enum Outcome { Done = 0, Error_Recorded = 1, Wrong_Usage = 2, No_Editor = 3 };

std::string To_UTF8(automation::String_View text) {
    Automation_Block* const block = Automation_New_Text(text.data(), static_cast<std::uint32_t>(text.size()));
    const automation::Text owner = automation::Text::Adopt(block);
    std::string utf8(Automation_To_UTF8(block, nullptr, 0), '\0');
    Automation_To_UTF8(block, utf8.data(), static_cast<std::uint32_t>(utf8.size() + 1));
    return utf8;
}

void Print_Error_Properties(const style_node::Editor& editor) {
    std::cerr << "ErrLocation: " << To_UTF8(editor.ErrLocation()) << "\nErrCode: " << editor.ErrCode()
              << "\nErrDescription: " << To_UTF8(editor.ErrDescription()) << '\n';
}

std::optional<automation::Integer> Parse(std::string_view text) {
    automation::Integer number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

int Run(const std::array<automation::Integer, 3>& node) {
    style_node::Editor editor;
    if (editor.Shown(node[0], node[1], node[2])) // while the dialog is up
        return Done;
    Print_Error_Properties(editor);
    if (!editor.Reason().empty()) // there are no components of the product's
        std::cerr << "Reason: " << To_UTF8(editor.Reason()) << '\n';
    return Error_Recorded;
}

} // namespace

int main(int count, char** words) {
    std::array<automation::Integer, 3> node{};
    for (int at = 0; at < 3; ++at) {
        const auto number = count == 4 ? Parse(words[at + 1]) : std::nullopt;
        if (!number) {
            std::cerr << "usage: cpp-host CONFIG PARTITION NODE\n";
            return Wrong_Usage;
        }
        node.at(static_cast<std::size_t>(at)) = *number;
    }
    try {
        return Run(node);
    } catch (const automation::Failure& failure) {
        std::cerr << "The editor cannot be used: error " << failure.Number << ": "
                  << To_UTF8(failure.Description) << "\n  reason: " << To_UTF8(failure.Reason) << '\n';
        return No_Editor;
    }
}
