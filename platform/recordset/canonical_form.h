// The one shape of a persisted recordset that this library writes, piece by piece: its writer puts the pieces
// down, and the reader of that shape looks for exactly them.
#pragma once

#include "automation/text.h"

namespace recordset::canonical_form {

using automation::String;
using automation::String_View;

// Up to the first field.
const String& Beginning();

// <s:AttributeType name='A'[ rs:name='N'] rs:number='1'...
constexpr String_View Field_Begin = u"      <s:AttributeType";
constexpr String_View Name = u" name='";
constexpr String_View Own_Name = u" rs:name='";
constexpr String_View Number = u" rs:number='";
// ...><s:datatype dt:type='string'[ dt:maxLength='30'][ rs:fixedlength='true']/>...
constexpr String_View Type_Begin = u" rs:nullable='true'><s:datatype";
constexpr String_View Type = u" dt:type='";
constexpr String_View Longest = u" dt:maxLength='";
constexpr String_View Fixed_Length = u" rs:fixedlength='true'";
constexpr String_View Field_End = u"/></s:AttributeType>\n";
constexpr String_View Data_Begin =
    u"      <s:extends type='rs:rowbase'/>\n    </s:ElementType>\n  </s:Schema>\n  <rs:data>\n";

// Behind it the values, as " NAME='VALUE'".
constexpr String_View Row_Begin = u"    <z:row";
constexpr String_View Row_End = u"/>\n";
constexpr String_View End = u"  </rs:data>\n</xml>\n";

namespace type {
constexpr String_View Text = u"string";
constexpr String_View Integer = u"i2";
constexpr String_View Long = u"i4";
} // namespace type
constexpr String_View Types[]{type::Text, type::Integer, type::Long};

// What a row has before the value of the field that it calls `name`.
inline String Before_Value(String_View name) {
    return u" " + String(name) + u"='";
}

// Narrower than XML: letters beyond ASCII differ between its editions, and xml... is reserved.
bool Is_Legal_Name(String_View name);

// What a character of a value is written as; empty when it stands for itself. Blanks other than the space are
// references, or reading would make spaces of them.
struct Escape {
    char16_t Unit;
    String_View Written;
};
constexpr Escape Escapes[]{{u'&', u"&amp;"},  {u'<', u"&lt;"},   {u'>', u"&gt;"},   {u'\'', u"&apos;"},
                           {u'"', u"&quot;"}, {u'\t', u"&#x9;"}, {u'\n', u"&#xA;"}, {u'\r', u"&#xD;"}};

} // namespace recordset::canonical_form
