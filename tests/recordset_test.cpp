// Stream and recordset as objects: what is open, where they stand, and what fails under which name.
#include <limits>

#include "automation/text.h"
#include "recordset_test_support.h"

namespace {

using namespace recordset_test;

class Recordset_Test : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(automation::Live_Objects(), before) << "an object is left behind"; }

    static Reference<Recordset> With_Rows(int count) {
        std::string rows;
        for (int row = 1; row <= count; ++row)
            rows += "<z:row N='" + std::to_string(row) + "'/>";
        return Opened(Wide(Document(Three_Fields, rows)));
    }

    const std::string no_record = "ADODB.Recordset 3021";

private:
    std::int64_t before = automation::Live_Objects();
};

TEST_F(Recordset_Test, Stream_Writes_At_Its_Position) {
    auto stream = Stream_Of(u"abcdef");
    stream->Set_Position(8);
    stream->Write_Text(u"XYZ");
    EXPECT_EQ(stream->Size(), 14);
    stream->Set_Position(2);
    EXPECT_EQ(stream->Rest(), u"bcdXYZ");
    stream->Set_Position(0);
    EXPECT_EQ(stream->Rest(), u"abcdXYZ");
}

TEST_F(Recordset_Test, Stream_Lent_A_Text_Is_As_If_It_Were_Written) {
    const String text = u"abc";
    auto stream = New<Stream>(u"ADODB.Stream");
    EXPECT_EQ(Failure_Of([&] { stream->Borrow_Text(text); }), "ADODB.Stream 3704");
    stream->Open();
    stream->Borrow_Text(text);
    EXPECT_EQ(stream->Position(), 6);
    EXPECT_EQ(Failure_Of([&] { stream->Borrow_Text(text); }), "ADODB.Stream 3001");
    stream->Set_Position(2);
    EXPECT_EQ(stream->Rest().data(), text.data() + 1) << "nothing is copied";
    stream->Write_Text(u"XYZ");
    EXPECT_EQ(text, u"abc");
    stream->Set_Position(0);
    EXPECT_EQ(stream->Rest(), u"aXYZ");
    stream->Close();
    stream->Open();
    EXPECT_EQ(stream->Size(), 0);
}

TEST_F(Recordset_Test, Stream_Refuses) {
    auto stream = Stream_Of(u"abc");
    for (const std::int64_t position : {-2LL, -1LL, 1LL, 5LL, 8LL, std::numeric_limits<long long>::max()})
        EXPECT_EQ(Failure_Of([&] { stream->Set_Position(position); }), "ADODB.Stream 3001") << position;
    EXPECT_EQ(Failure_Of([&] { stream->Open(); }), "ADODB.Stream 3705");
    EXPECT_EQ(stream->Size(), 6) << "a refused open keeps the text";
    stream->Close();
    const auto refused = [&](auto&& body) { EXPECT_EQ(Failure_Of(body), "ADODB.Stream 3704"); };
    refused([&] { stream->Write_Text(u""); });
    refused([&] { stream->Rest(); });
    stream->Open();
    EXPECT_EQ(stream->Size(), 0);
}

TEST_F(Recordset_Test, Closed_Recordset_Refuses_Everything_But_Open) {
    auto rows = With_Rows(1);
    rows->Close();
    const auto refused = [&](auto&& body) { EXPECT_EQ(Failure_Of(body), "ADODB.Recordset 3704"); };
    refused([&] { rows->Close(); });
    refused([&] { rows->At_End(); });
    refused([&] { rows->Move_Next(); });
    refused([&] { rows->Set_Bookmark(Variant(1.0)); });
    refused([&] { rows->Value(u"N"); });
    rows->Open(Stream_Of(Wide(Document(Three_Fields, "<z:row N='9'/>"))));
    EXPECT_EQ(Failure_Of([&] { rows->Open(Stream_Of(u"")); }), "ADODB.Recordset 3705");
    EXPECT_EQ(rows->Value(u"N").To_Integer(), 9) << "a refused open keeps the rows";
}

TEST_F(Recordset_Test, Opens_From_The_Position_Of_An_Open_Stream) {
    auto closed = New<Recordset>(u"ADODB.Recordset");
    EXPECT_EQ(Failure_Of([&] { closed->Open(nullptr); }), "ADODB.Recordset 3709");
    EXPECT_EQ(Failure_Of([&] { closed->Open(New<Stream>(u"ADODB.Stream")); }), "ADODB.Recordset 3709");
    auto stream = Stream_Of(u"junk" + Wide(Document(Three_Fields, "<z:row N='4'/>")));
    EXPECT_EQ(Failure_Of([&] { closed->Open(stream); }), "ADODB.Recordset -2147467259");
    EXPECT_FALSE(closed->Is_Open());
    stream->Set_Position(8);
    closed->Open(stream, recordset::Cursor_Type::Unspecified, recordset::Lock_Type::Batch_Optimistic);
    EXPECT_EQ(stream->Position(), 8);
    stream->Close();
    EXPECT_EQ(closed->Value(u"N").To_Integer(), 4) << "the rows outlive the stream";
}

TEST_F(Recordset_Test, Moves_At_Both_Ends) {
    auto rows = With_Rows(2);
    EXPECT_EQ(rows->Record_Count(), 2);
    rows->Move_Previous();
    EXPECT_TRUE(rows->At_Beginning() && !rows->At_End());
    EXPECT_EQ(Failure_Of([&] { rows->Move_Previous(); }), no_record);
    EXPECT_EQ(Failure_Of([&] { rows->Bookmark(); }), no_record);
    rows->Move_Next();
    EXPECT_EQ(rows->Value(u"N").To_Integer(), 1);
    rows->Move_Next();
    rows->Move_Next();
    EXPECT_TRUE(rows->At_End() && !rows->At_Beginning());
    EXPECT_EQ(Failure_Of([&] { rows->Move_Next(); }), no_record);
    EXPECT_EQ(Failure_Of([&] { rows->Value(u"nowhere"); }), "ADODB.Recordset 3265");
    rows->Move_Previous();
    EXPECT_EQ(rows->Value(u"N").To_Integer(), 2);
    rows->Move_First();
    EXPECT_EQ(rows->Value(u"N").To_Integer(), 1);
    rows = With_Rows(0);
    EXPECT_TRUE(rows->At_Beginning() && rows->At_End());
    EXPECT_EQ(Failure_Of([&] { rows->Move_First(); }), no_record);
    EXPECT_EQ(Failure_Of([&] { rows->Move_Next(); }), no_record);
    EXPECT_EQ(Failure_Of([&] { rows->Move_Previous(); }), no_record);
}

TEST_F(Recordset_Test, Bookmarks_Lead_Back) {
    auto rows = With_Rows(3);
    rows->Move_Next();
    const Variant second = rows->Bookmark();
    rows->Move_First();
    rows->Set_Bookmark(second);
    EXPECT_EQ(rows->Value(u"N").To_Integer(), 2);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Variant foreign[] = {Variant(),    Variant::Null(), Variant(u"2"), Variant(0.0),
                               Variant(4.0), Variant(-1.0),   Variant(1.5),  Variant(nan)};
    for (const Variant& bookmark : foreign)
        EXPECT_EQ(Failure_Of([&] { rows->Set_Bookmark(bookmark); }), "ADODB.Recordset 3001")
            << &bookmark - foreign;
    EXPECT_EQ(rows->Value(u"N").To_Integer(), 2) << "a refused bookmark moves nothing";
}

TEST_F(Recordset_Test, Fields_By_Name_And_By_Position) {
    auto rows = Opened(Wide(Document("<s:AttributeType name='NodeNumber'/>"
                                     "<s:AttributeType name='c2' rs:name='Node name'/>",
                                     "<z:row NodeNumber='1' c2='first'/>")));
    EXPECT_EQ(rows->Field_Name(1), u"Node name");
    EXPECT_EQ(rows->Value(u"node NAME").Text(), u"first");
    for (const int ordinal : {-1, 2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        EXPECT_EQ(Failure_Of([&] { rows->Value(ordinal); }), "ADODB.Recordset 3265") << ordinal;
    for (const char16_t* name : {u"", u"c2", u"NodeNumber ", u"Node"})
        EXPECT_EQ(Failure_Of([&] { rows->Value(name); }), "ADODB.Recordset 3265")
            << automation::To_UTF8(name);
}

} // namespace
