#include "shell/string_table.h"

#include <limits>

#include "shell/file_bytes.h"
#include "shell/quoted_text.h"
#include "text_file.h"

namespace shell {

using automation::Long;
using automation::String;
using automation::String_View;

namespace {

// Takes the decimal digits that `rest` begins with. Nothing when there are none or the id is out of range.
std::optional<Long> Take_Id(String_View& rest) {
    std::int64_t id = 0;
    const std::size_t count = std::min(rest.find_first_not_of(u"0123456789"), rest.size());
    for (const char16_t digit : rest.substr(0, count)) {
        id = id * 10 + (digit - u'0');
        if (id > std::numeric_limits<Long>::max())
            return std::nullopt;
    }
    rest.remove_prefix(count);
    return count == 0 ? std::nullopt : std::optional(static_cast<Long>(id));
}

String_View Take_Blanks(String_View& rest) {
    const String_View before = rest;
    rest = Without_Leading_Blanks(rest);
    return before.substr(0, before.size() - rest.size());
}

} // namespace

String_Table String_Table::Parse(std::string_view utf8) {
    String_Table table;
    std::size_t number = 0;
    for (const String& line : UTF8_Lines(utf8))
        table.Add(line, ++number);
    return table;
}

String_Table String_Table::Load(const std::string& path) {
    try {
        return Parse(File_Bytes(path));
    } catch (const Format_Error& error) {
        throw Format_Error(error.Line, error.Reason, path);
    }
}

void String_Table::Add(String_View line, std::size_t number) {
    String_View rest = line;
    if (line.starts_with(u'#') || Without_Blanks(line).empty())
        return;
    const auto id = Take_Id(rest);
    if (!id)
        throw Format_Error(number, "does not begin with a resource id (a whole number from 0)");
    if (Take_Blanks(rest).empty() || !rest.starts_with(u'"'))
        throw Format_Error(number, "the id is not followed by blanks and a text in double quotes");
    auto text = Take_Quoted(rest);
    if (!text)
        throw Format_Error(
            number, "the closing quote is missing, or a backslash is not one of \\\" \\\\ \\t \\n \\uXXXX");
    if (!Without_Blanks(rest).empty())
        throw Format_Error(number,
                           "something stands behind the closing quote; write \\\" for a quote in the text");
    if (!entries.try_emplace(*id, Entry{std::move(*text), number}).second)
        throw Format_Error(number, "id " + std::to_string(*id) + " is given already in line " +
                                       std::to_string(Line_Of(*id)));
}

const String* String_Table::Find(Long id) const {
    const auto found = entries.find(id);
    return found == entries.end() ? nullptr : &found->second.Text;
}

std::vector<Long> String_Table::Ids() const {
    std::vector<Long> ids;
    for (const auto& entry : entries)
        ids.push_back(entry.first);
    return ids;
}

std::size_t String_Table::Line_Of(Long id) const {
    const auto found = entries.find(id);
    return found == entries.end() ? 0 : found->second.Line;
}

} // namespace shell
