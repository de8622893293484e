#include "recordset/writer.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "automation/failure.h"
#include "automation/number.h"
#include "automation/text.h"
#include "canonical_form.h"
#include "persisted_format.h"

namespace recordset {

namespace {

using automation::Decimal_Text;
using automation::String;
using automation::String_View;
using automation::Text_Builder;

String Wide(std::string_view ascii) {
    return String(ascii.begin(), ascii.end());
}

bool Is_Held_By_XML(char16_t unit) {
    return unit >= u' ' ? unit < 0xFFFE : unit == u'\t' || unit == u'\n' || unit == u'\r';
}

void Require_Held_By_XML(String_View text) {
    if (!std::all_of(text.begin(), text.end(), Is_Held_By_XML) || !automation::Is_Well_Formed(text))
        automation::Raise(automation::run_time::Invalid_Argument);
}

// Characters that every text holds and that stand for themselves in a value.
bool Is_Plain(char16_t unit) {
    return unit >= u' ' && unit < 0x7F && unit != u'&' && unit != u'<' && unit != u'>' && unit != u'\'' &&
           unit != u'"';
}

std::size_t Plain_Length(String_View text) {
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), Is_Plain) - text.begin());
}

String_View Escape_Of(char16_t unit) {
    for (const auto& escape : canonical_form::Escapes)
        if (escape.Unit == unit)
            return escape.Written;
    return {};
}

void Append_Escaped(Text_Builder& text, String_View value) {
    while (!value.empty()) {
        const std::size_t plain = Plain_Length(value);
        text.Append(value.substr(0, plain));
        value.remove_prefix(plain);
        if (value.empty())
            return;
        const auto escape = Escape_Of(value.front());
        text.Append(escape.empty() ? value.substr(0, 1) : escape);
        value.remove_prefix(1);
    }
}

// `begin` ends with the quote that the value stands behind.
void Append_Value(Text_Builder& text, String_View begin, String_View value) {
    text.Append(begin);
    Append_Escaped(text, value);
    text.Append(u'\'');
}

// Moves what is plain at the beginning of `utf8` to `target`; gives the end there.
char16_t* Take_Plain(char16_t* target, std::string_view& utf8) {
    std::size_t plain = 0;
    for (; plain < utf8.size() && Is_Plain(static_cast<unsigned char>(utf8[plain])); ++plain)
        *target++ = static_cast<unsigned char>(utf8[plain]);
    utf8.remove_prefix(plain);
    return target;
}

bool Is_Letter(char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_';
}

bool Is_Name_Character(char16_t unit) {
    return Is_Letter(unit) || (unit >= u'0' && unit <= u'9') || unit == u'.' || unit == u'-';
}

String Substitute(std::size_t position) {
    return u"c" + Decimal_Text(static_cast<std::int64_t>(position));
}

bool Looks_Like_Substitute(String_View name) {
    return name.size() > 1 && name.front() == u'c' &&
           name.find_first_not_of(u"0123456789", 1) == String_View::npos;
}

// What rows call each field: its own name wherever that can stand and stays the only one.
std::vector<String> Attributes_Of(const std::vector<Field_Description>& fields) {
    std::vector<String> attributes;
    std::set<String_View> taken;
    for (const auto& field : fields) {
        const bool own = canonical_form::Is_Legal_Name(field.Name) && !Looks_Like_Substitute(field.Name) &&
                         taken.insert(field.Name).second;
        attributes.push_back(own ? field.Name : Substitute(attributes.size() + 1));
    }
    return attributes;
}

struct Type_Name {
    String_View Name;
    int Bytes; // of every value; 0: values differ
};

Type_Name Name_Of(Field_Type type) {
    switch (type) {
    case Field_Type::Integer:
        return {canonical_form::type::Integer, 2};
    case Field_Type::Long:
        return {canonical_form::type::Long, 4};
    case Field_Type::Text:
        break;
    }
    return {canonical_form::type::Text, 0};
}

void Append_Type(Text_Builder& text, const Field_Description& field) {
    const auto type = Name_Of(field.Type);
    const int longest = type.Bytes > 0 ? type.Bytes : field.Longest;
    text.Append(canonical_form::Type_Begin);
    Append_Value(text, canonical_form::Type, type.Name);
    if (longest > 0)
        Append_Value(text, canonical_form::Longest, Decimal_Text(longest));
    if (type.Bytes > 0)
        text.Append(canonical_form::Fixed_Length);
}

void Append_Field(Text_Builder& text, const Field_Description& field, String_View attribute,
                  std::size_t position) {
    Require_Held_By_XML(field.Name);
    text.Append(canonical_form::Field_Begin);
    Append_Value(text, canonical_form::Name, attribute);
    if (attribute != field.Name)
        Append_Value(text, canonical_form::Own_Name, field.Name);
    Append_Value(text, canonical_form::Number, Decimal_Text(static_cast<std::int64_t>(position)));
    Append_Type(text, field);
    text.Append(canonical_form::Field_End);
}

String Make_Beginning() {
    Text_Builder text;
    text.Append(u"<xml");
    Append_Value(text, u" xmlns:s='", Wide(format::Schema_Namespace));
    Append_Value(text, u" xmlns:dt='", Wide(format::Datatype_Namespace));
    Append_Value(text, u" xmlns:rs='", Wide(format::Rowset_Namespace));
    Append_Value(text, u" xmlns:z='", Wide(format::Row_Namespace));
    text.Append(u">\n  <s:Schema id='RowsetSchema'>\n    <s:ElementType name='row' content='eltOnly'>\n");
    return String(text.Finish().View());
}

} // namespace

const String& canonical_form::Beginning() {
    static const String beginning = Make_Beginning();
    return beginning;
}

bool canonical_form::Is_Legal_Name(String_View name) {
    return !name.empty() && Is_Letter(name.front()) &&
           std::all_of(name.begin(), name.end(), Is_Name_Character) &&
           !automation::Equal_Ignoring_Case(name.substr(0, 3), u"xml");
}

Writer::Writer(std::vector<Field_Description> fields) {
    text.Append(canonical_form::Beginning());
    const auto names = Attributes_Of(fields);
    for (std::size_t index = 0; index < fields.size(); ++index) {
        Append_Field(text, fields[index], names[index], index + 1);
        attributes.push_back(canonical_form::Before_Value(names[index]));
    }
    text.Append(canonical_form::Data_Begin);
}

void Writer::Add_Row(const std::vector<std::optional<String>>& values) {
    if (values.size() != attributes.size())
        automation::Raise(automation::run_time::Invalid_Argument);
    for (const auto& value : values)
        if (value && Plain_Length(*value) < value->size())
            Require_Held_By_XML(*value);
    text.Append(canonical_form::Row_Begin);
    for (std::size_t index = 0; index < values.size(); ++index)
        if (values[index])
            Append_Value(text, attributes[index], *values[index]);
    text.Append(canonical_form::Row_End);
}

bool Writer::Add_UTF8_Row(const std::vector<std::optional<std::string_view>>& values) {
    if (values.size() != attributes.size())
        automation::Raise(automation::run_time::Invalid_Argument);
    const std::size_t before = text.Length();
    try {
        text.Append(canonical_form::Row_Begin);
        bool is_utf8 = true;
        for (std::size_t index = 0; index < values.size(); ++index)
            is_utf8 = is_utf8 && (!values[index] || Add_UTF8(attributes[index], *values[index]));
        text.Append(canonical_form::Row_End);
        if (!is_utf8)
            text.Cut(before);
        return is_utf8;
    } catch (...) {
        text.Cut(before);
        throw;
    }
}

// Mostly the value goes straight from one form into the other.
bool Writer::Add_UTF8(String_View begin, std::string_view value) {
    char16_t* const room = text.Room(begin.size() + value.size() + 1);
    char16_t* end = Take_Plain(std::copy(begin.begin(), begin.end(), room), value);
    if (value.empty())
        *end++ = u'\'';
    text.Extend(static_cast<std::size_t>(end - room));
    return value.empty() || Add_Converted(value);
}

// What is left of a value from the first character that is not plain.
bool Writer::Add_Converted(std::string_view value) {
    if (!automation::Convert_UTF8(value, converted))
        return false;
    Require_Held_By_XML(converted);
    Append_Escaped(text, converted);
    text.Append(u'\'');
    return true;
}

automation::Text Writer::Finish_Text() && {
    text.Append(canonical_form::End);
    return text.Finish();
}

} // namespace recordset
