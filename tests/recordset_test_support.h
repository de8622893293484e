// What the tests of the recordset library share: documents, opened recordsets, failures as values.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "automation/create.h"
#include "automation/text.h"
#include "recordset/recordset.h"

namespace recordset_test {

using automation::Reference;
using automation::String;
using automation::Variant;
using recordset::Recordset;
using recordset::Stream;

template <typename Object>
Reference<Object> New(const char16_t* identity) {
    recordset::Offer_Classes();
    return automation::Create_Bound<Object>(identity);
}

inline Reference<Stream> Stream_Of(const String& text) {
    auto stream = New<Stream>(u"adodb.STREAM");
    stream->Open();
    stream->Write_Text(text);
    stream->Set_Position(0);
    return stream;
}

inline Reference<Recordset> Opened(const String& text) {
    auto rows = New<Recordset>(u"ADODB.Recordset");
    rows->Open(Stream_Of(text));
    return rows;
}

// "source number", "none" when the body does not fail.
template <typename Body>
std::string Failure_Of(Body&& body) {
    try {
        body();
        return "none";
    } catch (const automation::Failure& failure) {
        return automation::To_UTF8(failure.Source) + " " + std::to_string(failure.Number);
    }
}

inline bool Is_Readable(const String& text) {
    const std::string failure = Failure_Of([&] { Opened(text); });
    EXPECT_TRUE(failure == "none" || failure == "ADODB.Recordset -2147467259") << failure;
    return failure == "none";
}

inline String Wide(const std::string& utf8) {
    return automation::From_UTF8(utf8).value();
}

inline const std::string Root = "<xml xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882' "
                                "xmlns:dt='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882' "
                                "xmlns:rs='urn:schemas-microsoft-com:rowset' xmlns:z='#RowsetSchema'>";

inline std::string Schema(const std::string& fields) {
    return "<s:Schema id='RowsetSchema'><s:ElementType name='row' content='eltOnly'>" + fields +
           "<s:extends type='rs:rowbase'/></s:ElementType></s:Schema>";
}

// Fields N (i2), T and U (text).
inline const std::string Three_Fields =
    "<s:AttributeType name='N'><s:datatype dt:type='i2'/></s:AttributeType>"
    "<s:AttributeType name='T'><s:datatype dt:type='string'/></s:AttributeType>"
    "<s:AttributeType name='U'/>";

inline std::string Document(const std::string& fields, const std::string& rows) {
    return Root + Schema(fields) + "<rs:data>" + rows + "</rs:data></xml>";
}

// All rows as "value,value;" with null as ~ and texts between quotes.
inline std::string All_Values(Recordset& rows) {
    std::string all;
    for (; !rows.At_End(); rows.Move_Next()) {
        for (automation::Long field = 0; field < rows.Field_Count(); ++field) {
            const Variant value = rows.Value(field);
            const bool is_text = value.Type() == automation::Variant_Type::Text;
            const std::string text = value.Is_Null() ? "~" : automation::To_UTF8(value.To_Text());
            all += (field == 0 ? "" : ",") + (is_text ? "'" + text + "'" : text);
        }
        all += ";";
    }
    return all;
}

} // namespace recordset_test
