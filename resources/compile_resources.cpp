// Makes a C++ source of the files that translators and designers edit.
//
//     compile_resources OUTPUT ID=PICTURE... language_N.strings...
//
// Picture 0 is the icon, the others are navigation bitmaps. A
// file that is not what the editor needs is refused with one line that says where, status 1, and no OUTPUT.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <vector>

#include "resources/resources.h"
#include "shell/file_bytes.h"
#include "shell/string_table.h"

namespace {

using automation::Long;
using shell::Format_Error;
using shell::String_Table;

constexpr Long Largest_Language = 32767;

struct Sources {
    std::map<Long, std::string> Pictures; // bytes by id
    std::map<Long, automation::String> Texts;
};

// A little-endian number within a picture; 0 behind its end.
Long Number_At(const std::string& bytes, std::size_t at, std::size_t size) {
    Long value = 0;
    for (std::size_t index = 0; index < size && at + index < bytes.size(); ++index)
        value |= static_cast<unsigned char>(bytes[at + index]) << (8 * index);
    return value;
}

bool Is_Button_Bitmap(const std::string& bytes) {
    constexpr std::size_t row_size = 52; // 17 pixels of 3 bytes, rounded up to a multiple of 4
    const bool is_17_by_19 = Number_At(bytes, 18, 4) == 17 && Number_At(bytes, 22, 4) == 19;
    const bool is_24_bit = Number_At(bytes, 28, 2) == 24 && Number_At(bytes, 30, 4) == 0;
    const auto pixels = static_cast<std::size_t>(Number_At(bytes, 10, 4));
    return bytes.starts_with("BM") && is_17_by_19 && is_24_bit && bytes.size() >= pixels + 19 * row_size;
}

bool Is_Icon(const std::string& bytes) {
    const bool is_icon_file = Number_At(bytes, 0, 4) == 0x10000 && Number_At(bytes, 4, 2) >= 1;
    return is_icon_file && Number_At(bytes, 6, 1) == 32 && Number_At(bytes, 7, 1) == 32 &&
           Number_At(bytes, 12, 2) == 8;
}

std::string Read_Picture(Long id, const std::string& path) {
    std::string bytes = shell::File_Bytes(path);
    if (id == resources::Icon && !Is_Icon(bytes))
        throw Format_Error(0, "is not an icon of 32 x 32 pixels in 256 colours", path);
    if (id != resources::Icon && !Is_Button_Bitmap(bytes))
        throw Format_Error(0, "is not an uncompressed bitmap of 17 x 19 pixels of 24 bits", path);
    return bytes;
}

// N of language_N.strings.
Long Language_Of(const std::string& path) {
    const std::string name = std::filesystem::path(path).filename().string();
    int language = 0;
    int length = 0;
    const bool fits = std::sscanf(name.c_str(), "language_%5d.strings%n", &language, &length) == 1;
    if (!fits || static_cast<std::size_t>(length) != name.size() || language < 1 ||
        language > Largest_Language)
        throw Format_Error(0, "is not named language_N.strings with the number of its language", path);
    return language;
}

String_Table Read_Language(const std::string& path) {
    const Long first = (Language_Of(path) - 1) * resources::Texts_Per_Language;
    const Long end = first + resources::Texts_Per_Language;
    auto table = String_Table::Load(path);
    for (const Long id : table.Ids())
        if (id < first || id >= end)
            throw Format_Error(table.Line_Of(id),
                               "id " + std::to_string(id) +
                                   " is not one of this language, which has the ids " +
                                   std::to_string(first) + " to " + std::to_string(end - 1),
                               path);
    for (Long id = first; id < end; ++id)
        if (table.Find(id) == nullptr)
            throw Format_Error(table.Line_Of(id - 1),
                               "id " + std::to_string(id) + " is missing; its line belongs behind this one",
                               path);
    return table;
}

void Add_Language(Sources& sources, const std::string& path) {
    const auto table = Read_Language(path);
    for (const Long id : table.Ids())
        sources.Texts.emplace(id, *table.Find(id));
}

void Add_Picture(Sources& sources, const std::string& argument, std::size_t equals) {
    const auto id = static_cast<Long>(std::stol(argument.substr(0, equals)));
    sources.Pictures.emplace(id, Read_Picture(id, argument.substr(equals + 1)));
}

// A literal of its own for each character that is not plain: an escape would take the digits behind it.
std::string Literal(const automation::String& text) {
    std::ostringstream literal;
    literal << "u\"";
    for (const char16_t unit : text) {
        const bool is_plain = unit >= u' ' && unit < 0x7F && unit != u'"' && unit != u'\\' && unit != u'?';
        if (is_plain)
            literal << static_cast<char>(unit);
        else
            literal << "\" u\"\\x" << std::hex << static_cast<unsigned>(unit) << "\" u\"";
    }
    literal << '"';
    return literal.str();
}

void Write_Texts(std::ostream& out, const Sources& sources) {
    out << "constexpr Embedded_Text texts[] = {\n";
    for (const auto& [id, text] : sources.Texts)
        out << "    {" << id << ", {" << Literal(text) << ", " << text.size() << "}},\n";
    out << "};\n\n";
}

void Write_Pictures(std::ostream& out, const Sources& sources) {
    for (const auto& [id, bytes] : sources.Pictures) {
        out << "constexpr unsigned char picture_" << id << "[] = {";
        for (std::size_t at = 0; at < bytes.size(); ++at)
            out << (at % 24 == 0 ? "\n    " : "") << unsigned{static_cast<unsigned char>(bytes[at])} << ",";
        out << "\n};\n";
    }
    out << "constexpr Embedded_Picture pictures[] = {\n";
    for (const auto& entry : sources.Pictures)
        out << "    {" << entry.first << ", {picture_" << entry.first << ", sizeof picture_" << entry.first
            << "}},\n";
    out << "};\n\n";
}

std::string Source_Text(const Sources& sources) {
    std::ostringstream out;
    out << "// Made by compile_resources; change the files that it is made of.\n"
           "#include \"embedded.h\"\n\nnamespace resources {\n\nnamespace {\n\n";
    Write_Texts(out, sources);
    Write_Pictures(out, sources);
    out << "} // namespace\n\n"
           "std::span<const Embedded_Text> Embedded_Texts() {\n    return texts;\n}\n\n"
           "std::span<const Embedded_Picture> Embedded_Pictures() {\n    return pictures;\n}\n\n"
           "} // namespace resources\n";
    return out.str();
}

void Write(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (file)
        return;
    std::filesystem::remove(path);
    throw Format_Error(0, "cannot be written", path);
}

void Compile(const std::string& output, const std::vector<std::string>& arguments) {
    Sources sources;
    for (const std::string& argument : arguments) {
        const auto equals = argument.find('=');
        if (equals != argument.npos && argument.find_first_not_of("0123456789") == equals && equals > 0)
            Add_Picture(sources, argument, equals);
        else
            Add_Language(sources, argument);
    }
    Write(output, Source_Text(sources));
}

} // namespace

int main(int count, char** arguments) {
    if (count < 2) {
        std::cerr << "compile_resources: give OUTPUT ID=PICTURE... language_N.strings...\n";
        return 1;
    }
    try {
        Compile(arguments[1], std::vector<std::string>(arguments + 2, arguments + count));
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "compile_resources: " << error.what() << '\n';
        return 1;
    }
}
