#include <algorithm>

#include "automation/text.h"
#include "hive.h"
#include "predefined_keys.h"
#include "text_file.h"

namespace shell {

using automation::String;
using automation::String_View;

namespace {

struct Refused {
    std::string Reason;
};

bool Is_Comment_Or_Empty(String_View text) {
    text = Without_Leading_Blanks(text);
    return text.empty() || text.front() == u';';
}

bool Take(String_View& rest, String_View expected) {
    if (!automation::Equal_Ignoring_Case(rest.substr(0, expected.size()), expected))
        return false;
    rest.remove_prefix(expected.size());
    return true;
}

std::optional<std::uint32_t> Take_Hexadecimal(String_View& rest, std::size_t most_digits) {
    const auto count = std::min(rest.find_first_not_of(u"0123456789abcdefABCDEF"), rest.size());
    if (count == 0 || count > most_digits)
        return std::nullopt;
    const auto value = std::stoul(automation::To_UTF8(rest.substr(0, count)), nullptr, 16);
    rest.remove_prefix(count);
    return static_cast<std::uint32_t>(value);
}

// A text in double quotes, where a backslash stands before a backslash or a quote only.
String Take_Text(String_View& rest) {
    String text;
    for (rest.remove_prefix(1); !rest.empty(); rest.remove_prefix(1)) {
        if (rest.front() == u'"') {
            rest.remove_prefix(1);
            return text;
        }
        if (rest.front() == u'\\') {
            rest.remove_prefix(1);
            if (!rest.starts_with(u'\\') && !rest.starts_with(u'"'))
                throw Refused{"a backslash in a text is written \\\\ and a quote \\\""};
        }
        text += rest.front();
    }
    throw Refused{"the closing quote is missing"};
}

std::string Number_Bytes(std::uint32_t value) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(value >> shift & 0xFFU);
    return bytes;
}

// Pairs of hexadecimal digits, separated by commas; none are an empty value.
std::string Take_Bytes(String_View& rest) {
    std::string bytes;
    do {
        rest = Without_Leading_Blanks(rest);
        if (bytes.empty() && Is_Comment_Or_Empty(rest))
            return bytes;
        const auto byte = Take_Hexadecimal(rest, 2);
        if (!byte)
            throw Refused{"bytes are written as one or two hexadecimal digits each, with commas between"};
        bytes += static_cast<char>(*byte);
        rest = Without_Leading_Blanks(rest);
    } while (Take(rest, u","));
    return bytes;
}

std::string UTF8_Of_UTF16(std::string_view bytes) {
    if (bytes.size() % 2 != 0)
        throw Refused{"a text in bytes has two of them for each character"};
    String text;
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
        const auto low = static_cast<unsigned char>(bytes[at]);
        const auto high = static_cast<unsigned char>(bytes[at + 1]);
        text += static_cast<char16_t>(low | high << 8);
    }
    return automation::To_UTF8(text);
}

// Whether it leads from a predefined key downwards.
bool Is_Key_Path(String_View path) {
    if (path.ends_with(u'\\') || path.find(u"\\\\") != path.npos)
        return false;
    return std::any_of(Predefined_Keys.begin(), Predefined_Keys.end(), [path](const Predefined_Key& key) {
        String_View rest = path;
        return Take(rest, key.Name) && (rest.empty() || rest.front() == u'\\');
    });
}

class Hive_Reader {
public:
    std::shared_ptr<const Hive> Read(const std::vector<String>& lines);

private:
    void Read_Header(const std::vector<String>& lines);
    String Whole_Line(const std::vector<String>& lines, std::size_t& at) const;
    void Read_Line(String_View line);
    void Read_Key(String_View line);
    void Read_Value(String_View line);
    std::optional<Registry_Value> Take_Value(String_View& rest) const;
    Registry_Value Take_Binary(String_View& rest) const;

    const std::shared_ptr<Hive> hive = std::make_shared<Hive>();
    Hive::Values* values = nullptr; // of the key whose values are read
    bool texts_are_wide = false;
};

std::shared_ptr<const Hive> Hive_Reader::Read(const std::vector<String>& lines) {
    Read_Header(lines);
    for (std::size_t at = 1; at < lines.size(); ++at) {
        const std::size_t number = at + 1; // of the first line, when several make one
        try {
            Read_Line(Whole_Line(lines, at));
        } catch (const Refused& refused) {
            throw Format_Error(number, refused.Reason);
        }
    }
    return hive;
}

void Hive_Reader::Read_Header(const std::vector<String>& lines) {
    const String_View first = lines.empty() ? String_View{} : Without_Blanks(lines.front());
    texts_are_wide = first == u"Windows Registry Editor Version 5.00";
    if (!texts_are_wide && first != u"REGEDIT4")
        throw Format_Error(1, "is neither \"Windows Registry Editor Version 5.00\" nor \"REGEDIT4\"; name an "
                              "exported registry file");
}

// A key or a comment is never continued. `at` moves to the last line that belongs to the whole.
String Hive_Reader::Whole_Line(const std::vector<String>& lines, std::size_t& at) const {
    String whole(Without_Blanks(lines[at]));
    if (whole.starts_with(u';') || whole.starts_with(u'['))
        return whole;
    while (whole.ends_with(u'\\')) {
        if (at + 1 == lines.size())
            throw Refused{"is continued, but nothing follows"};
        whole.pop_back();
        whole += Without_Blanks(lines[++at]);
    }
    return whole;
}

void Hive_Reader::Read_Line(String_View line) {
    if (Is_Comment_Or_Empty(line))
        return;
    if (line.starts_with(u'['))
        Read_Key(line);
    else
        Read_Value(line);
}

void Hive_Reader::Read_Key(String_View line) {
    line.remove_prefix(1);
    const bool goes = Take(line, u"-");
    const auto end = line.rfind(u']');
    if (end == line.npos || !Is_Comment_Or_Empty(line.substr(end + 1)))
        throw Refused{"the closing bracket of the key is missing"};
    const String_View path = line.substr(0, end);
    if (!Is_Key_Path(path))
        throw Refused{"is not a key such as HKEY_LOCAL_MACHINE\\SOFTWARE"};
    if (goes)
        hive->Remove_Key(path);
    values = goes ? nullptr : &hive->Make_Key(path);
}

void Hive_Reader::Read_Value(String_View line) {
    String name;
    if (line.starts_with(u'"'))
        name = Take_Text(line);
    else if (!Take(line, u"@"))
        throw Refused{"is neither a key in brackets nor a value (\"name\"=... or @=...)"};
    line = Without_Leading_Blanks(line);
    if (!Take(line, u"="))
        throw Refused{"the name of the value is not followed by ="};
    line = Without_Leading_Blanks(line);
    auto value = Take_Value(line);
    if (!Is_Comment_Or_Empty(line))
        throw Refused{"something stands behind the value"};
    if (values == nullptr)
        throw Refused{"the value stands under no key"};
    name = automation::Case_Folded(name);
    if (value)
        values->insert_or_assign(name, std::move(*value));
    else
        values->erase(name);
}

// Nothing for the value that goes.
std::optional<Registry_Value> Hive_Reader::Take_Value(String_View& rest) const {
    if (Take(rest, u"-"))
        return std::nullopt;
    if (rest.starts_with(u'"'))
        return Registry_Value{registry_type::Text, automation::To_UTF8(Take_Text(rest)) + '\0'};
    if (Take(rest, u"dword:")) {
        const auto number = Take_Hexadecimal(rest, 8);
        if (!number)
            throw Refused{"dword: is not followed by 1 to 8 hexadecimal digits"};
        return Registry_Value{registry_type::Number, Number_Bytes(*number)};
    }
    if (Take(rest, u"hex"))
        return Take_Binary(rest);
    throw Refused{"the value is none of \"text\", dword:, hex:, hex(type): and -"};
}

Registry_Value Hive_Reader::Take_Binary(String_View& rest) const {
    std::uint32_t type = registry_type::Binary;
    if (Take(rest, u"(")) {
        const auto given = Take_Hexadecimal(rest, 8);
        if (!given || !Take(rest, u")"))
            throw Refused{"the type of hex(type): is not 1 to 8 hexadecimal digits"};
        type = *given;
    }
    if (!Take(rest, u":"))
        throw Refused{"hex is not followed by a colon"};
    std::string bytes = Take_Bytes(rest);
    const bool is_text = type == registry_type::Text || type == registry_type::Expandable_Text ||
                         type == registry_type::Multiple_Texts;
    return {type, is_text && texts_are_wide ? UTF8_Of_UTF16(bytes) : std::move(bytes)};
}

} // namespace

std::shared_ptr<const Hive> Parse_Hive(std::string_view bytes) {
    return Hive_Reader().Read(Unicode_Lines(bytes));
}

} // namespace shell
