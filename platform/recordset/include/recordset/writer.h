// Writes the persisted XML format: what a data component answers a read with.
// Belongs to one thread; throws automation::Failure 5 for a text that XML cannot hold.
#pragma once

#include <optional>
#include <vector>

#include "automation/text.h"
#include "automation/text_builder.h"

namespace recordset {

// Text fits every value; Integer is i2, Long i4.
enum class Field_Type { Text, Integer, Long };

struct Field_Description {
    automation::String Name; // may be no legal XML name
    Field_Type Type = Field_Type::Text;
    int Longest = 0; // code units of a text; 0: not stated
};

class Writer {
public:
    explicit Writer(std::vector<Field_Description> fields);
    // One value for each field, in their order; nothing is null. 5 when there are more or fewer, or when a
    // text cannot be held; the row is then left out. A value of an Integer or a Long field is its decimal
    // text.
    void Add_Row(const std::vector<std::optional<automation::String>>& values);
    // The same with texts in UTF-8; false when one is not, and the row is left out.
    bool Add_UTF8_Row(const std::vector<std::optional<std::string_view>>& values);
    // The whole document; the writer is spent afterwards.
    automation::Text Finish_Text() &&;
    automation::String Finish() && { return automation::String(std::move(*this).Finish_Text().View()); }

private:
    bool Add_UTF8(automation::String_View begin, std::string_view value);
    bool Add_Converted(std::string_view value);

    std::vector<automation::String> attributes; // what stands before each field's value in a row
    automation::String converted;               // one value at a time
    automation::Text_Builder text;
};

} // namespace recordset
