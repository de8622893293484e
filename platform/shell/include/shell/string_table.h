// A table of texts by resource id, read from the text form that translators edit.
//
// One entry a line, UTF-8: the id in decimal digits, blanks, the text in double quotes with the escapes of
// quoted_text.h. Lines that are empty or begin with # are skipped. An id that no line gives has no text,
// which is not the same as an empty one. A table never changes after it is read; any thread may use it.
#pragma once

#include <map>
#include <vector>

#include "automation/text.h"
#include "shell/format_error.h"

namespace shell {

class String_Table {
public:
    // Failure: Format_Error with the number of the first line that is of another form, gives an id that an
    // earlier line gave, or is not UTF-8. Load also names the file, and refuses one that cannot be read.
    static String_Table Parse(std::string_view utf8);
    static String_Table Load(const std::string& path);

    // Null when the table has no such text; otherwise as long-lived as the table.
    const automation::String* Find(automation::Long id) const;
    // In ascending order.
    std::vector<automation::Long> Ids() const;
    // The line that gives the id, from 1; 0 when none does.
    std::size_t Line_Of(automation::Long id) const;

private:
    struct Entry {
        automation::String Text;
        std::size_t Line;
    };
    void Add(automation::String_View line, std::size_t number);

    std::map<automation::Long, Entry> entries;
};

} // namespace shell
