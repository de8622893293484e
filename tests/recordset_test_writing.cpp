// What the writer writes: the exact form, what it refuses, and that reading gives it back.
#include <optional>
#include <vector>

#include "automation/text.h"
#include "recordset/writer.h"
#include "recordset_test_support.h"

namespace {

using namespace recordset_test;

using recordset::Field_Description;
using recordset::Field_Type;
using recordset::Writer;
using Values = std::vector<std::optional<String>>;

String Written(std::vector<Field_Description> fields, const std::vector<Values>& rows) {
    Writer writer(std::move(fields));
    for (const auto& row : rows)
        writer.Add_Row(row);
    return std::move(writer).Finish();
}

TEST(Recordset_Writing, The_Exact_Form) {
    const String text = Written({{u"NodeNumber", Field_Type::Integer},
                                 {u"NodeDescription", Field_Type::Text, 30},
                                 {u"Total", Field_Type::Long},
                                 {u"Busy on", Field_Type::Text}},
                                {{u"0", u"Default & fallback", u"70000", u""}, {u"3", {}, {}, {}}});
    EXPECT_EQ(automation::To_UTF8(text),
              R"(<xml xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882' )"
              R"(xmlns:dt='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882' )"
              R"(xmlns:rs='urn:schemas-microsoft-com:rowset' xmlns:z='#RowsetSchema'>
  <s:Schema id='RowsetSchema'>
    <s:ElementType name='row' content='eltOnly'>
      <s:AttributeType name='NodeNumber' rs:number='1' rs:nullable='true'><s:datatype dt:type='i2' dt:maxLength='2' rs:fixedlength='true'/></s:AttributeType>
      <s:AttributeType name='NodeDescription' rs:number='2' rs:nullable='true'><s:datatype dt:type='string' dt:maxLength='30'/></s:AttributeType>
      <s:AttributeType name='Total' rs:number='3' rs:nullable='true'><s:datatype dt:type='i4' dt:maxLength='4' rs:fixedlength='true'/></s:AttributeType>
      <s:AttributeType name='c4' rs:name='Busy on' rs:number='4' rs:nullable='true'><s:datatype dt:type='string'/></s:AttributeType>
      <s:extends type='rs:rowbase'/>
    </s:ElementType>
  </s:Schema>
  <rs:data>
    <z:row NodeNumber='0' NodeDescription='Default &amp; fallback' Total='70000' c4=''/>
    <z:row NodeNumber='3'/>
  </rs:data>
</xml>
)");
    auto read = Opened(text);
    EXPECT_EQ(All_Values(*read), "0,'Default & fallback',70000,'';3,~,~,~;");
}

TEST(Recordset_Writing, Values_Come_Back_As_They_Were) {
    const String odd_values[] = {u"",
                                 u"  leading, trailing  ",
                                 u"&<>'\" &amp; &#10; ]]> <!-- -->",
                                 u"\t\n\r\r\n\n\r tabs and lines",
                                 u"\u0085\u00A0\u2028\u007F\uFEFF\uFFFD\uE000 \U0001F4DE\U0010FFFF",
                                 String(100000, u'\''),
                                 String(70000, u'\u00FC')};
    std::vector<Values> rows;
    for (const auto& value : odd_values)
        rows.push_back({value});
    auto read = Opened(Written({{u"Value", Field_Type::Text}}, rows));
    for (const auto& value : odd_values) {
        EXPECT_EQ(read->Value(u"Value").Text(), value) << automation::To_UTF8(value).substr(0, 80);
        read->Move_Next();
    }
    EXPECT_TRUE(read->At_End());
}

TEST(Recordset_Writing, Fields_Come_Back_As_They_Were) {
    const std::vector<String> names{
        u"Plain",           u"with blank", u"1st",   u"xmlns",   u"XML_x",  u"a:b", u"c9",  u"c8",    u"",
        u"Gr\u00F6\u00DFe", u"Plain",      u"plain", u"_ok.1-x", u"<&'\">", u"c",   u"c02", u"a\tb\n"};
    std::vector<Field_Description> fields;
    Values values;
    for (const auto& name : names) {
        fields.push_back({name, Field_Type::Text});
        values.emplace_back(u"value of " + name);
    }
    auto read = Opened(Written(fields, {values}));
    ASSERT_EQ(read->Field_Count(), static_cast<automation::Long>(names.size()));
    for (automation::Long field = 0; field < read->Field_Count(); ++field) {
        const String& name = names[static_cast<std::size_t>(field)];
        EXPECT_EQ(read->Field_Name(field), name) << field;
        EXPECT_EQ(read->Value(field).Text(), u"value of " + name) << field;
    }
}

TEST(Recordset_Writing, UTF8_Is_Written_As_The_Same_Text_In_UTF16) {
    const String values[] = {u"",
                             u"plain",
                             u"a & b",
                             u"&",
                             u"'quoted' \"twice\" <x>",
                             u"Gr\u00F6\u00DFe",
                             u"\u2603 first",
                             u"last \U0001F4DE",
                             u"\t\n\r",
                             u"\u007F",
                             String(10000, u'x') + u"\u00E4"};
    Writer wide({{u"A"}, {u"B"}});
    Writer narrow({{u"A"}, {u"B"}});
    for (const auto& value : values) {
        const std::string utf8 = automation::To_UTF8(value);
        wide.Add_Row({value, {}});
        EXPECT_TRUE(narrow.Add_UTF8_Row({utf8, {}})) << utf8;
    }
    for (const std::string& text : std::initializer_list<std::string>{"\xFF", "a\xC3", "ab\xED\xA0\x80"})
        EXPECT_FALSE(narrow.Add_UTF8_Row({"left out", text})) << testing::PrintToString(text);
    for (const std::string& text : {std::string("a\0b", 3), std::string("\x1F"), std::string("\xEF\xBF\xBE")})
        EXPECT_EQ(Failure_Of([&] {
                      narrow.Add_UTF8_Row({"left out", text});
                  }),
                  " 5")
            << testing::PrintToString(text);
    EXPECT_EQ(Failure_Of([&] { narrow.Add_UTF8_Row({"of another width"}); }), " 5");
    EXPECT_EQ(std::move(narrow).Finish(), std::move(wide).Finish());
}

TEST(Recordset_Writing, Refuses_What_XML_Cannot_Hold) {
    const String refused[] = {{u'\0'}, u"a\x08", u"\x0B", u"\x1F", u"\xFFFE", {0xD83D}, {0xDCDE, 0xD83D}};
    for (const auto& text : refused) {
        SCOPED_TRACE(testing::PrintToString(std::vector<int>(text.begin(), text.end())));
        Writer writer({{u"A"}, {u"B"}});
        writer.Add_Row({u"first", u"row"});
        EXPECT_EQ(Failure_Of([&] { writer.Add_Row({u"good", text}); }), " 5");
        EXPECT_EQ(Failure_Of([&] { Writer({{u"name" + text}}); }), " 5");
        EXPECT_EQ(Failure_Of([&] { writer.Add_Row({u"of another width"}); }), " 5");
        writer.Add_Row({u"last", {}});
        EXPECT_EQ(All_Values(*Opened(std::move(writer).Finish())), "'first','row';'last',~;")
            << "a refused row leaves nothing behind";
    }
}

} // namespace
