// The persisted format as it may arrive: what is read, what is refused, and what it costs.
#include <malloc.h>

#include <algorithm>
#include <ctime>
#include <locale>
#include <vector>

#include "automation/text.h"
#include "recordset/writer.h"
#include "recordset_test_support.h"

namespace {

using namespace recordset_test;

// The text `count` times, each # in it replaced by the number of the copy.
std::string Repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t index = 0; index < count; ++index) {
        all += text;
        if (const auto mark = text.find('#'); mark != text.npos)
            all.replace(all.size() - text.size() + mark, 1, std::to_string(index));
    }
    return all;
}

std::string Rows(const std::string& rows) {
    return Document(Three_Fields, rows);
}

// A row with pending changes: its original and what stands beside it.
std::string Update(const std::string& original, const std::string& changed) {
    return Rows("<rs:update><rs:original>" + original + "</rs:original>" + changed + "</rs:update>");
}

TEST(Recordset_Reading, Accepts) {
    const struct {
        std::string Text, Values;
    } cases[] = {
        {Root + Schema(Three_Fields) + "</xml>", ""},
        {Rows("<z:row T=''/>"), "~,'',~;"},
        {Rows("<z:row U='u' T=\"it's\" N='1'>text</z:row>"), "1,'it's','u';"},
        {Rows("<z:row T='&amp;&lt;&gt;&quot;&apos;'/>"), "~,'&<>\"'',~;"},
        {Rows("<z:row U='a\tb\r\nc' T='&#65;&#x42;&#x1F600;&#9;&#10;&#13;'/>"),
         "~,'AB\U0001F600\t\n\r','a b c';"},
        {"<?xml version='1.0' encoding='ISO-8859-1'?>" + Rows("<z:row T='\u00e9'/>"), "~,'\u00e9',~;"},
        {"<?xml version='1.0' encoding='utf-16'?>" + Rows("<z:row T='\u2603'/>"), "~,'\u2603',~;"},
        {"\uFEFF" + Rows("<z:row N='1'/>"), "1,~,~;"},
        {"<!-- <x> --><?p?>" + Rows("<!-- --><z:row N='1'/><?p ?>") + "<!-- -->", "1,~,~;"},
        {Rows("text <![CDATA[<z:row N='7'/>]]> &amp;<z:row N='1' X='2' z:T='no' rs:T='no' n='3'/>"),
         "1,~,~;"},
        {Root + "<s:data><z:row N='8'/></s:data>" +
             Schema(Three_Fields + "<x><s:AttributeType name='V'/></x>") +
             "<rs:data><a><z:row N='9'/><rs:data/></a><row N='9'/><rs:row N='9'/><z:Row/>"
             "<z:row N='1'><z:row N='9'/></z:row></rs:data><z:row N='9'/></xml>",
         "1,~,~;"},
        {"<xml xmlns='urn:schemas-microsoft-com:rowset' xmlns:a='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882' "
         "xmlns:s='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882'><a:Schema><a:ElementType>"
         "<a:AttributeType name='N'><a:datatype s:type='i2'/></a:AttributeType></a:ElementType></a:Schema>"
         "<data><row xmlns='#RowsetSchema' N='1'/></data></xml>",
         "1;"},
        {Document("<s:AttributeType name='N' dt:type='i2'/>", "<z:row N='007'/>"), "7;"},
        // Pending changes.
        {Rows("<rs:insert><z:row N='1'/><z:row N='2'/></rs:insert><z:row N='3'/>"), "1,~,~;2,~,~;3,~,~;"},
        {Rows("<rs:delete><z:row N='1'/><x><z:row N='2'/></x></rs:delete><z:row N='3'/>"), "3,~,~;"},
        {Update("<z:row N='1' T='t' U='u'/>", "<z:row T='new'/>"), "1,'new','u';"},
        {Update("<z:row N='1' T='t' U='u'/>", "<z:row N='2' rs:forcenull='U  T'/>"), "2,~,~;"},
        {Update("<z:row N='1'/>", "<z:row N='2' T='t' rs:forcenull='nothing N'/>"), "~,'t',~;"},
        {Update("<z:row T='t'/>", "<z:row T=''/>"), "~,'',~;"},
        {Update("<z:row N='1'/><z:row N='2'/>", "<z:row T='a'/><z:row T='b'/>"), "1,'a',~;2,'b',~;"},
    };
    for (const auto& document : cases) {
        std::string values;
        const auto failure = Failure_Of([&] { values = All_Values(*Opened(Wide(document.Text))); });
        EXPECT_EQ(failure, "none") << document.Text;
        EXPECT_EQ(values, document.Values) << document.Text;
    }
}

TEST(Recordset_Reading, Refuses) {
    const std::string cases[] = {
        // Not the format.
        "", " \n ", "recordset", "<data/>", "<a>" + Rows("") + "</a>", "<xml/>",
        Root + "<s:Schema id='RowsetSchema'/><rs:data/></xml>",
        Root + "<Schema><ElementType/></Schema></xml>",
        Root + "<rs:data><z:row/></rs:data>" + Schema(Three_Fields) + "</xml>",
        Root + Schema(Three_Fields) + Schema("") + "</xml>", Document("<s:AttributeType rs:name='N'/>", ""),
        Document("<s:AttributeType name='N'/><s:AttributeType name='N' rs:name='M'/>", ""),
        // Not well-formed, also where nothing is read.
        Root + Schema(Three_Fields) + "<q:data/></xml>", Rows("") + Rows(""), Rows("") + "x",
        " <?xml version='1.0'?>" + Rows(""), Rows("<a><b></a></b>"), "<!DOCTYPE xml>" + Rows(""),
        "<!DOCTYPE xml [<!ENTITY e 'v'>]>" + Rows("<z:row T='&e;'/>"), Rows("<a>&nbsp;</a>"),
        Rows("<z:row N='1' N='1'/>"), Rows("<a N='1' N='1'/>"), Rows("<z:row N=1/>"), Rows("<z:row T='<'/>"),
        Rows("<z:row xmlns:a='x' xmlns:b='x' a:N='1' b:N='1'/>"),
        // No characters.
        Rows("<z:row T='&#0;'/>"), Rows("<z:row T='&#x1F;'/>"), Rows("<z:row T='&#xD800;'/>"),
        Rows("<z:row T='&#x110000;'/>"), Rows("<z:row T='&#xFFFE;'/>"), Rows("<z:row T='\x01'/>"),
        Rows("<!-- \x0C -->"), Rows("<z:row T='\uFFFF'/>"),
        // Values and pending changes.
        Rows("<z:row N='one'/>"), Update("<z:row N='x'/>", "<z:row N='1'/>"), Update("<z:row N='1'/>", ""),
        Rows("<rs:update><z:row N='1'/></rs:update>"),
        // Would be written out a hundred thousand times.
        Rows("<a xmlns:q='" + std::string(1'000'000, 'u') + "'>" + Repeated("<b q:a=''/>", 100'000) +
             "</a>")};
    for (const auto& text : cases)
        EXPECT_FALSE(Is_Readable(Wide(text))) << text.substr(0, 1000);
}

TEST(Recordset_Reading, Refuses_Lone_Surrogates_NUL_And_Cuts_Wherever_They_Stand) {
    const String text = Wide(Rows("<z:row N='1' T='\u2603&amp;\u2603'/>"));
    ASSERT_TRUE(Is_Readable(text));
    for (std::size_t at = 0; at <= text.size(); ++at)
        for (const int unit : {0xD800, 0xDC00, 0})
            EXPECT_FALSE(Is_Readable(String(text).insert(at, 1, static_cast<char16_t>(unit)))) << at;
    for (std::size_t length = 0; length < text.size(); ++length)
        EXPECT_FALSE(Is_Readable(text.substr(0, length))) << length;
}

String With_Value(const std::string& type, const std::string& text) {
    return Wide(Document("<s:AttributeType name='V'><s:datatype dt:type='" + type + "'/></s:AttributeType>",
                         "<z:row V='" + text + "'/><z:row/>"));
}

struct Comma_Numbers : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

TEST(Recordset_Reading, Types_Of_Values_In_Any_Locale) {
    using enum automation::Variant_Type;
    const struct {
        std::string Name;
        automation::Variant_Type Type;
        std::vector<std::pair<std::string, std::string>> Accepted;
        std::vector<std::string> Refused;
    } cases[] = {
        {"i1", Integer, {{"-128", "-128"}}, {"128"}},
        {"i2", Integer, {{"-32768", "-32768"}, {"+7", "7"}}, {"32768", "+-7", "+", " 7", "7 ", "\u0663"}},
        {"i2", Integer, {}, {"7.0", "1,000", "1e3", "0x10"}},
        {"i4", Long, {{"2147483647", "2147483647"}}, {"2147483648"}},
        {"i8", Long_Long, {{"-9223372036854775808", "-9223372036854775808"}}, {"9223372036854775808"}},
        {"ui1", Byte, {{"255", "255"}}, {"256", "-1"}},
        {"ui2", Long, {{"65535", "65535"}}, {"65536"}},
        {"ui4", Long_Long, {{"4294967295", "4294967295"}}, {"4294967296"}},
        {"ui8", Double, {{"18446744073709551615", "1.84467440737096E+19"}}, {"18446744073709551616"}},
        {"r4", Single, {{"1.5", "1.5"}}, {"1e39"}},
        {"r8", Double, {{"-1.25E+2", "-125"}, {"1e-400", "0"}}, {"1e400", "1,5", "5-", "inf", "nan", "."}},
        {"float", Double, {{".5", "0.5"}, {"12.", "12"}}, {}},
        {"fixed.14.4",
         Currency,
         {{"-0.0001", "-0.0001"}, {"-.5", "-0.5"}},
         {"922337203685477.5808", "1.", "-"}},
        {"boolean", Boolean, {{"0", "False"}, {"-1", "True"}, {"True", "True"}}, {"2", "yes"}},
        {"dateTime", Date, {{"2004-02-29T13:05:09", "2/29/2004 1:05:09 PM"}}, {"2004-02-29T13:05"}},
        {"dateTime", Date, {{"1850-01-02T12:00:00.000000000", "1/2/1850 12:00:00 PM"}}, {"2004-02-29T"}},
        {"dateTime", Date, {}, {"2003-02-29T13:05:09", "2004-02-29 13:05:09", "2004-02-29T24:00:00"}},
        {"date", Date, {{"9999-12-31", "12/31/9999"}}, {"0099-12-31", "2004-13-01", "04-1-1", "+004-01-01"}},
        {"time", Date, {{"23:59:59", "11:59:59 PM"}}, {"23:60:00", "-1:00:00"}},
        {"bin.hex", Byte_Array, {}, {"0", "0g", "-1"}}};
    const std::locale before = std::locale::global(std::locale(std::locale(), new Comma_Numbers));
    for (const auto& type : cases) {
        for (const auto& [text, value] : type.Accepted) {
            auto rows = Opened(With_Value(type.Name, text));
            EXPECT_EQ(rows->Value(0).Type(), type.Type) << type.Name << " '" << text << "'";
            EXPECT_EQ(automation::To_UTF8(rows->Value(0).To_Text()), value) << type.Name;
            rows->Move_Next();
            EXPECT_TRUE(rows->Value(0).Is_Null());
        }
        EXPECT_EQ(Opened(With_Value(type.Name, ""))->Value(0).Type(), automation::Variant_Type::Text)
            << type.Name;
        for (const auto& text : type.Refused)
            EXPECT_FALSE(Is_Readable(With_Value(type.Name, text))) << type.Name << " '" << text << "'";
    }
    std::locale::global(before);
    EXPECT_EQ(Opened(With_Value("bin.hex", "00fFA0"))->Value(0).Byte_Array(),
              (std::vector<std::uint8_t>{0, 255, 160}));
}

// A surrogate pair and a long value at every offset around the borders of the reader's pieces.
TEST(Recordset_Reading, Pieces_Divide_Nothing) {
    const std::string value = Repeated("\u00e9\u2603\U0001F4DE&amp;", 20000);
    for (std::size_t shift = 0; shift < 12; ++shift) {
        const std::string blanks((std::size_t{1} << 14U) - Rows("").size() + shift - 2, ' ');
        auto rows = Opened(Wide(Rows(blanks + "<z:row T='" + value + "' N='1'/>")));
        EXPECT_EQ(rows->Value(u"T").Text(), Wide(Repeated("\u00e9\u2603\U0001F4DE&", 20000))) << shift;
        EXPECT_EQ(rows->Value(u"N").To_Integer(), 1) << shift;
    }
}

// Of the processor, so that other work on the machine counts little.
double Seconds_To_Read(const String& text) {
    double least = 1e9;
    for (int attempt = 0; attempt < 2; ++attempt) {
        const std::clock_t start = std::clock();
        EXPECT_TRUE(Is_Readable(text));
        least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return least;
}

// 32 times the text: 32 times the time when linear, up to 130 when it leaves the caches, 1024 when square.
TEST(Recordset_Reading, Time_Is_Linear_In_The_Text) {
    std::string (*const shapes[])(std::size_t) = {
        [](std::size_t count) { return Rows("<z:row T='" + Repeated("value ", count * 5) + "'/>"); },
        [](std::size_t count) { return Rows(Repeated("<a>", count * 4) + Repeated("</a>", count * 4)); },
        [](std::size_t count) { return Rows("<z:row" + Repeated(" a#=''", count * 3) + "/>"); },
        [](std::size_t count) { // fields, and nulls by name
            return Document(Repeated("<s:AttributeType name='f#'/>", count),
                            "<rs:update><rs:original><z:row" + Repeated(" f#='1'", count) +
                                "/></rs:original><z:row rs:forcenull='" + Repeated("f# ", count) +
                                "'/></rs:update>");
        }};
    for (const auto& shape : shapes) {
        const double one = Seconds_To_Read(Wide(shape(800)));
        const double many = Seconds_To_Read(Wide(shape(800 * 32)));
        EXPECT_LT(many, one * 320 + 0.02) << shape(2) << ": " << one << " s, then " << many << " s";
    }
}

// Longer than the parser's pieces, so that what is not at its end yet would be scanned again with each of
// them.
TEST(Recordset_Reading, A_Long_Token_Costs_Its_Length) {
    std::string (*const shapes[])(const std::string&) = {
        [](const std::string& text) { return Rows("<!--" + text + "-->"); },
        [](const std::string& text) { return Rows("<?a " + text + "?>"); },
        [](const std::string& text) { return Rows("<a b='" + text + "'/>"); },
        [](const std::string& text) { return Rows("<a" + Repeated(" b#='1'", text.size() / 12) + "/>"); },
        [](const std::string& text) { return Rows("<a" + text + "/>"); }};
    for (const auto& shape : shapes) {
        const double seconds = Seconds_To_Read(Wide(shape(std::string(std::size_t{1} << 24U, 'x'))));
        EXPECT_LT(seconds, 2) << shape("x");
    }
}

std::size_t Bytes_In_Use() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// Everything about the rows that can be asked for, or that they cannot be read.
std::string Read(const String& text) {
    std::string all;
    const auto failure = Failure_Of([&] {
        auto rows = Opened(text);
        for (automation::Long field = 0; field < rows->Field_Count(); ++field)
            all += automation::To_UTF8(rows->Field_Name(field)) + "|";
        all += All_Values(*rows);
    });
    return failure + " " + all;
}

// The short way for the writer's own shape, against the parser: a comment at the end is all that leads there.
TEST(Recordset_Reading, The_Writers_Own_Shape_Is_Read_As_The_Parser_Reads_It) {
    recordset::Writer writer({{u"N", recordset::Field_Type::Integer},
                              {u"L", recordset::Field_Type::Long},
                              {u"T", recordset::Field_Type::Text, 30},
                              {u"a & b"}});
    writer.Add_Row({u"1", u"70000", u"x & <y>", u"Gr\u00F6\u00DFe \U0001F4DE"});
    writer.Add_Row({u"-2", {}, u"", String(9000, u'z')});
    writer.Add_Row({{}, {}, {}, {}});
    const String whole = std::move(writer).Finish();
    const struct {
        const char16_t *What, *Becomes;
    } edits[] = {
        {u"", u""},
        {u"'N'", u"'T'"},     // two fields with one attribute
        {u"'N'", u"'xmlns'"}, // the rows then declare a namespace
        {u"'N'", u"'z:N'"},
        {u"'N'", u"'n'"}, // the rows know none of that name
        {u"'N'", u"'&#78;'"},
        {u"a &amp; b", u"a &#38; b"},
        {u"a &amp; b", u"a & b"},
        {u"a &amp; b", u"a \t b"},
        {u"rs:number='1'", u"rs:number='x'"},
        {u"dt:maxLength='30'", u"dt:maxLength=''"},
        {u"dt:type='i4'", u"dt:type='ui1'"}, // 70000 is none
        {u"dt:type='i4'", u"dt:type='r8'"},
        {u"dt:type='i4'", u"dt:type='I4'"},
        {u"dt:type='string'", u"dt:type='i2'"},
        {u" rs:nullable='true'", u""},
        {u"70000", u"2147483648"},
        {u"70000", u"+0000000000000000000000000000000000000000000000000000000000000000000000000000070000"},
        {u"70000", u""},
        {u"70000", u" 7"},
        {u"'1'", u"\"1\""},
        {u" N='1' L='70000'", u" L='70000' N='1'"},
        {u" N='1'", u" N='1' N='1'"},
        {u" N='1'", u"  N='1'"},
        {u" N='1'", u" N = '1'"},
        {u" N='1'", u" N='1' Z='2'"},
        {u" N='1'", u" n='1'"},
        {u" N='1'", u" N='1"},
        {u"x &amp;", u"x &#38;"},
        {u"x &amp;", u"x &#x9;&#xA;&#xD;&apos;&quot;&gt;"},
        {u"x &amp;", u"x &amp"},
        {u"x &amp;", u"x &nbsp;"},
        {u"x &amp;", u"x <"},
        {u"x &amp;", u"x > \""},
        {u"x &amp;", u"x \t\n"},
        {u"x &amp;", u"x \u0001"},
        {u"x &amp;", u"x \uFFFE"},
        {u"x &amp;", u"x \uFFFD\uE000\u0085\u2028"},
        {u"\u00DF", u"\U0010FFFF"},
        {u"/>\n    <z:row/>", u"/><z:row/>"},
        {u"    <z:row/>\n", u""},
        {u"<z:row/>", u"<z:row></z:row>"},
        {u"<z:row/>", u"<z:Row/>"},
        {u"<z:row/>", u"<y:row/>"},
        {u"</rs:data>", u"</rs:datA>"},
        {u"</xml>\n", u"</xml>"},
        {u"</xml>\n", u"</xml>\n "},
        {u"</xml>\n", u"</xml>\n<x/>"},
        {u"#RowsetSchema'>", u"#rowsetSchema'>"},
        {u"<xml", u"<?xml version='1.0'?><xml"},
        {u"<xml", u"<Xml"},
    };
    for (const auto& edit : edits) {
        String text = whole;
        const auto at = text.find(edit.What);
        ASSERT_NE(at, String::npos) << automation::To_UTF8(edit.What);
        text.replace(at, String(edit.What).size(), edit.Becomes);
        EXPECT_EQ(Read(text), Read(text + u"<!---->"))
            << automation::To_UTF8(edit.What) << " -> " << automation::To_UTF8(edit.Becomes);
    }
    for (std::size_t cut = 0; cut < whole.size(); cut += cut < 1600 ? 1 : 97)
        EXPECT_EQ(Read(whole.substr(0, cut)), "ADODB.Recordset -2147467259 ") << cut;
}

TEST(Recordset_Reading, Memory_Of_A_Full_Partition) {
    std::string fields = "<s:AttributeType name='NodeNumber' dt:type='i2'/>";
    for (const char* name :
         {"NodeDescription", "SuperviseID", "Hookflash", "ThresholdTypeID", "Transfer", "Disconnection"})
        fields += "<s:AttributeType name='" + std::string(name) + "'/>";
    const std::string row =
        "<z:row NodeNumber='#' NodeDescription='A label of thirty characters..' "
        "SuperviseID='2' Hookflash='2000' ThresholdTypeID='17' Transfer='!,9,,0123456789012345678901234567' "
        "Disconnection='!!,,*99*,,01234567890123456789'/>";
    const auto stream = Stream_Of(Wide(Document(fields, Repeated(row, 32767))));
    auto rows = New<Recordset>(u"ADODB.Recordset");
    const std::size_t before = Bytes_In_Use();
    if (before < std::size_t{1} << 20U)
        GTEST_SKIP() << "the text is not in this heap: a sanitizer has its own";
    rows->Open(stream);
    const std::size_t added = Bytes_In_Use() - before;
    ASSERT_EQ(rows->Record_Count(), 32767);
    EXPECT_GT(added, std::size_t{1} << 20U) << "the rows are not where the test looks";
    EXPECT_LE(added, std::size_t{10} << 20U);
    rows->Close();
    EXPECT_LE(Bytes_In_Use(), before + (std::size_t{1} << 16U)) << "closing gives the memory back";
}

} // namespace
