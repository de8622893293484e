#include "recordset/writer.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "automation/failure.h"
#include "automation/number.h"
#include "automation/text.h"
#include "persisted_format.h"

namespace recordset {

namespace {

using automation::Decimal_Text;
using automation::String;
using automation::String_View;

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

// Blanks other than the space are references, or reading would make spaces of them.
String_View Escape_Of(char16_t unit) {
    switch (unit) {
    case u'&':
        return u"&amp;";
    case u'<':
        return u"&lt;";
    case u'>':
        return u"&gt;";
    case u'\'':
        return u"&apos;";
    case u'"':
        return u"&quot;";
    case u'\t':
        return u"&#x9;";
    case u'\n':
        return u"&#xA;";
    case u'\r':
        return u"&#xD;";
    default:
        return {};
    }
}

void Append_Attribute(String& text, String_View name, String_View value) {
    text.append(u" ").append(name).append(u"='");
    for (const char16_t unit : value) {
        const auto escape = Escape_Of(unit);
        if (escape.empty())
            text.push_back(unit);
        else
            text.append(escape);
    }
    text.push_back(u'\'');
}

bool Is_Letter(char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || unit == u'_';
}

bool Is_Name_Character(char16_t unit) {
    return Is_Letter(unit) || (unit >= u'0' && unit <= u'9') || unit == u'.' || unit == u'-';
}

// Narrower than XML: letters beyond ASCII differ between its editions, and xml... is reserved.
bool Is_Legal_Name(String_View name) {
    return !name.empty() && Is_Letter(name.front()) &&
           std::all_of(name.begin(), name.end(), Is_Name_Character) &&
           !automation::Equal_Ignoring_Case(name.substr(0, 3), u"xml");
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
        const bool own = Is_Legal_Name(field.Name) && !Looks_Like_Substitute(field.Name) &&
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
        return {u"i2", 2};
    case Field_Type::Long:
        return {u"i4", 4};
    case Field_Type::Text:
        break;
    }
    return {u"string", 0};
}

void Append_Type(String& text, const Field_Description& field) {
    const auto type = Name_Of(field.Type);
    const int longest = type.Bytes > 0 ? type.Bytes : field.Longest;
    text.append(u"<s:datatype");
    Append_Attribute(text, u"dt:type", type.Name);
    if (longest > 0)
        Append_Attribute(text, u"dt:maxLength", Decimal_Text(longest));
    if (type.Bytes > 0)
        Append_Attribute(text, u"rs:fixedlength", u"true");
    text.append(u"/>");
}

void Append_Field(String& text, const Field_Description& field, String_View attribute, std::size_t position) {
    Require_Held_By_XML(field.Name);
    text.append(u"      <s:AttributeType");
    Append_Attribute(text, u"name", attribute);
    if (attribute != field.Name)
        Append_Attribute(text, u"rs:name", field.Name);
    Append_Attribute(text, u"rs:number", Decimal_Text(static_cast<std::int64_t>(position)));
    Append_Attribute(text, u"rs:nullable", u"true");
    text.append(u">");
    Append_Type(text, field);
    text.append(u"</s:AttributeType>\n");
}

void Append_Root(String& text) {
    text.append(u"<xml");
    Append_Attribute(text, u"xmlns:s", Wide(format::Schema_Namespace));
    Append_Attribute(text, u"xmlns:dt", Wide(format::Datatype_Namespace));
    Append_Attribute(text, u"xmlns:rs", Wide(format::Rowset_Namespace));
    Append_Attribute(text, u"xmlns:z", Wide(format::Row_Namespace));
    text.append(u">\n");
}

} // namespace

Writer::Writer(std::vector<Field_Description> fields) : attributes(Attributes_Of(fields)) {
    Append_Root(text);
    text.append(u"  <s:Schema id='RowsetSchema'>\n    <s:ElementType name='row' content='eltOnly'>\n");
    for (std::size_t index = 0; index < fields.size(); ++index)
        Append_Field(text, fields[index], attributes[index], index + 1);
    text.append(u"      <s:extends type='rs:rowbase'/>\n    </s:ElementType>\n  </s:Schema>\n  <rs:data>\n");
}

void Writer::Add_Row(const std::vector<std::optional<String>>& values) {
    if (values.size() != attributes.size())
        automation::Raise(automation::run_time::Invalid_Argument);
    for (const auto& value : values)
        Require_Held_By_XML(value ? String_View(*value) : String_View());
    text.append(u"    <z:row");
    for (std::size_t index = 0; index < values.size(); ++index)
        if (values[index])
            Append_Attribute(text, attributes[index], *values[index]);
    text.append(u"/>\n");
}

String Writer::Finish() && {
    text.append(u"  </rs:data>\n</xml>\n");
    return std::move(text);
}

} // namespace recordset
