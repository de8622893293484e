#include "manifest.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace classes {

using automation::Identity;
using shell::Format_Error;

namespace {

constexpr std::size_t Longest_Name = 255; // of a class, in UTF-16 units
constexpr std::array Threading_Models{"Apartment", "Both", "Free"};
constexpr char Blank = ' ';

struct Refused {
    std::string Reason;
};

std::string_view Without_Blanks(std::string_view text) {
    text = text.substr(0, text.find_last_not_of(Blank) + 1);
    return text.substr(std::min(text.find_first_not_of(Blank), text.size()));
}

bool Is_Control(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
}

void Check_Characters(std::string_view line) {
    const auto text = automation::From_UTF8(line);
    if (!text)
        throw Refused{"is not UTF-8"};
    if (std::any_of(text->begin(), text->end(), Is_Control))
        throw Refused{"has a control character"};
}

std::string_view Take_Word(std::string_view& rest) {
    const auto end = std::min(rest.find(Blank), rest.size());
    const std::string_view word = rest.substr(0, end);
    rest = Without_Blanks(rest.substr(end));
    return word;
}

Identity Parse_Identity(std::string_view text) {
    Identity identity{};
    auto& d = identity.D;
    int end = 0;
    const int count = std::sscanf(
        std::string(text).c_str(), "{%8x-%4hx-%4hx-%2hhx%2hhx-%2hhx%2hhx%2hhx%2hhx%2hhx%2hhx}%n", &identity.A,
        &identity.B, &identity.C, &d[0], &d[1], &d[2], &d[3], &d[4], &d[5], &d[6], &d[7], &end);
    // What differs when it is written again has signs, blanks or too few digits.
    const auto as_text = automation::From_UTF8_Replacing;
    if (count != 11 || end != 38 ||
        !automation::Equal_Ignoring_Case(as_text(text), as_text(Identity_Text(identity))))
        throw Refused{"has no class identity {8-4-4-4-12 hexadecimal digits} behind the class's name"};
    return identity;
}

Manifest_Class Parse_Class(std::string_view value) {
    Manifest_Class parsed;
    parsed.Program_Identity = automation::From_UTF8_Replacing(Take_Word(value));
    if (parsed.Program_Identity.empty() || parsed.Program_Identity.size() > Longest_Name)
        throw Refused{"has no class's name of 1 to 255 characters"};
    parsed.Class_Identity = Parse_Identity(Take_Word(value));
    parsed.Threading_Model = value;
    if (std::count(Threading_Models.begin(), Threading_Models.end(), value) == 0)
        throw Refused{"has none of the threading models Apartment, Both and Free"};
    return parsed;
}

std::uint32_t Parse_Interface(std::string_view value) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc() || end != value.data() + value.size() || number == 0)
        throw Refused{"has no number of an interface version"};
    return number;
}

std::string Parse_Module(std::string_view value) {
    if (!value.starts_with('/') && !value.starts_with("./") && !value.starts_with("../"))
        throw Refused{"names the module by no absolute path"};
    return std::string(value);
}

void Parse_Line(std::string_view line, Manifest& manifest) {
    Check_Characters(line);
    line = Without_Blanks(line);
    if (line.empty() || line.front() == '#')
        return;
    const auto equals = line.find('=');
    const std::string_view key = Without_Blanks(line.substr(0, equals));
    const std::string_view value =
        equals == line.npos ? line.substr(0, 0) : Without_Blanks(line.substr(equals + 1));
    if (key == "Class")
        manifest.Classes.push_back(Parse_Class(value));
    else if (key == "Module" && manifest.Module.empty())
        manifest.Module = Parse_Module(value);
    else if (key == "Interface" && manifest.Interface == 0)
        manifest.Interface = Parse_Interface(value);
    else
        throw Refused{"has to be Class = ..., or once each Module = ... and Interface = ..."};
}

std::string Written(const Manifest& manifest) {
    std::string text =
        "Module = " + manifest.Module + "\nInterface = " + std::to_string(manifest.Interface) + "\n";
    for (const Manifest_Class& entry : manifest.Classes)
        text += "Class = " + automation::To_UTF8(entry.Program_Identity) + " " +
                Identity_Text(entry.Class_Identity) + " " + entry.Threading_Model + "\n";
    return text;
}

} // namespace

Manifest Parse_Manifest(std::string_view bytes) {
    Manifest manifest;
    if (bytes.size() > Largest_Manifest)
        throw Format_Error(0, "is larger than 64 KiB");
    for (std::size_t number = 1; !bytes.empty(); ++number) {
        const auto end = std::min(bytes.find('\n'), bytes.size());
        try {
            Parse_Line(bytes.substr(0, end), manifest);
        } catch (const Refused& refused) {
            throw Format_Error(number, refused.Reason);
        }
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    if (manifest.Module.empty() || manifest.Interface == 0 || manifest.Classes.empty())
        throw Format_Error(0, "has to name a Module, its Interface and at least one Class");
    return manifest;
}

std::string Manifest_Text(const Manifest& manifest) {
    std::string text = Written(manifest);
    if (Written(Parse_Manifest(text)) != text)
        throw Format_Error(0, "has a line end, or blanks at its end, in a name");
    return text;
}

std::string Identity_Text(const Identity& identity) {
    std::array<char, 40> text{};
    const auto& d = identity.D;
    std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", identity.A,
                  identity.B, identity.C, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
    return text.data();
}

} // namespace classes
