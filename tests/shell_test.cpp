// Quoted texts, string tables, special folders, the clock.
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "automation/text.h"
#include "shell/clock.h"
#include "shell/file_system.h"
#include "shell/quoted_text.h"
#include "shell/string_table.h"
#include "temporary_folder.h"

namespace {

using automation::String;
using automation::String_View;

TEST(Quoted_Text, Is_Taken_Up_To_Its_Closing_Quote) {
    const struct {
        String Input, Text, Rest;
    } cases[] = {{u"\"\"", u"", u""},
                 {u"\"a b\"  next", u"a b", u"  next"},
                 {u"\"\\\"\\\\\\t\\n\"x", u"\"\\\t\n", u"x"},
                 {u"\"\\u0041\\u00e9\\u20AC\"", u"Aé€", u""},
                 {u"\"\\ud83d\\ude00\"", u"\U0001F600", u""},
                 {u"\"\\ud83d\"", String(1, char16_t{0xD83D}), u""},
                 {u"\"a\\u0000b\"", String(u"a\0b", 3), u""},
                 {u"\"\\\\\" \"", u"\\", u" \""}};
    for (const auto& row : cases) {
        String_View rest = row.Input;
        const auto text = shell::Take_Quoted(rest);
        ASSERT_TRUE(text) << automation::To_UTF8(row.Input);
        EXPECT_EQ(*text, row.Text) << automation::To_UTF8(row.Input);
        EXPECT_EQ(rest, row.Rest) << automation::To_UTF8(row.Input);
    }
}

TEST(Quoted_Text, Broken_Ones_Are_Refused_And_Left_As_They_Were) {
    for (const String input :
         {u"", u"abc", u" \"abc\"", u"\"abc", u"\"abc\\\"", u"\"\\", u"\"\\x41\"", u"\"\\N\"", u"\"\\u004\"",
          u"\"\\u00g1\"", u"\"\\U0041\"", u"\"\\u 041\"", u"\"\\u00", u"\"\\u+041\"", u"\"\\'\""}) {
        String_View rest = input;
        EXPECT_FALSE(shell::Take_Quoted(rest)) << automation::To_UTF8(input);
        EXPECT_EQ(rest, input) << automation::To_UTF8(input);
    }
}

TEST(String_Table, Gives_Texts_By_Id) {
    const auto table = shell::String_Table::Parse("\xEF\xBB\xBF# a comment \"\n0 \"~ Node\"\r\n\n \t\n"
                                                  "59\t \"a\\u00e9\\t\\\"\\\\\"\n#7 \"not this\"\n7 \"\" \n"
                                                  "2147483647 \"€\"");
    EXPECT_EQ(table.Ids(), (std::vector<automation::Long>{0, 7, 59, 2147483647}));
    EXPECT_EQ(*table.Find(59), u"aé\t\"\\");
    EXPECT_EQ(*table.Find(7), u"");
    EXPECT_EQ(table.Line_Of(59), 5u);
    EXPECT_EQ(table.Find(-59), nullptr);
}

TEST(String_Table, Refuses_Broken_Lines_By_Their_Number) {
    const struct {
        std::string Text;
        std::size_t Line;
        std::string Reason; // a part of it
    } cases[] = {{"0 \"a\"\n1", 2, "quotes"},
                 {"1\"b\"", 1, "blanks"},
                 {"-1 \"b\"", 1, "resource id"},
                 {"2147483648 \"b\"", 1, "resource id"},
                 {"\n\n1 \"b", 3, "closing quote"},
                 {"1 \"b\\u12\"", 1, "backslash"},
                 {"1 \"b\" # c", 1, "behind the closing quote"},
                 {"1 \"a\"\n001 \"b\"", 2, "id 1 is given already"},
                 {"1 \"a\"\n2 \"\xFF\"", 2, "UTF-8"}};
    for (const auto& row : cases) {
        try {
            shell::String_Table::Parse(row.Text);
            ADD_FAILURE() << "accepted: " << row.Text;
        } catch (const shell::Format_Error& error) {
            EXPECT_EQ(error.Line, row.Line) << row.Text;
            EXPECT_NE(error.Reason.find(row.Reason), std::string::npos) << row.Text << ": " << error.Reason;
        }
    }
}

TEST(String_Table, Names_The_File_That_It_Cannot_Load) {
    try {
        shell::String_Table::Load("/dev/zero");
        ADD_FAILURE();
    } catch (const shell::Format_Error& error) {
        EXPECT_STREQ(error.what(), "/dev/zero: is larger than 64 MiB; name a smaller file");
    }
}

TEST(File_System, Backslashes_Separate_Folders) {
    const Temporary_Folder folder;
    std::filesystem::create_directories(folder / "Ä/b");
    Write_File(folder / "file", "");
    const String root = *automation::From_UTF8(folder.String());
    for (const String path : {u"\\Ä\\b\\", u"\\Ä\\b", u"/Ä\\b"})
        EXPECT_TRUE(shell::Folder_Exists(root + path)) << automation::To_UTF8(path);
    for (const String path : {u"\\missing", u"\\file", u"\\file\\", u"\\ä"})
        EXPECT_FALSE(shell::Folder_Exists(root + path)) << automation::To_UTF8(path);
}

TEST(Clock, Writes_The_General_Date_In_Local_Time) {
    const struct {
        const char* Zone;
        std::time_t Time;
        const char16_t* Text;
    } cases[] = {{"UTC0", 0, u"1/1/1970 12:00:00 AM"},
                 {"UTC0", 1709208000, u"2/29/2024 12:00:00 PM"},
                 {"UTC0", 1709208000 - 1, u"2/29/2024 11:59:59 AM"},
                 {"XST-5:30", 1709208000, u"2/29/2024 5:30:00 PM"}};
    setenv("LC_ALL", "C", 1);
    for (const auto& row : cases) {
        setenv("TZ", row.Zone, 1);
        EXPECT_EQ(shell::General_Date_Text(row.Time), row.Text) << row.Zone << " " << row.Time;
    }
    unsetenv("TZ");
    unsetenv("LC_ALL");
}

} // namespace
