// The embedded texts and pictures.
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "automation/text.h"
#include "failure_number.h"
#include "resources/resources.h"
#include "shell/replaced_strings.h"

namespace {

using automation::Long;

constexpr const char* English =
    "~ Node Editor|4770|Label:|1200|Supervised|BLIND|PARTIAL|FULL|DIALCONTINUE|ENHANCED|"
    "Hook Flash (msec):|1920|Threshold:|1800|Transfer:|1920|Disconnect:|1920|Retrieve:|1800|"
    "Busy Retry (sec):|1800|Num Retries:|1800|Ring Limit:|1800|Busy On (msec):|"
    "Busy1 On (msec):|1800|Busy Off (msec):|Busy2 On (msec):|1800|Ring On (msec):|1800|"
    "Ring Off (msec):|1800|OK|700|855|Cancel|1900|855|Apply|3100|855|Help|3720|855|680|1000|"
    "875|========= MESSAGES|-------------- Confirmation Dialog Settings|Confirmation|"
    "Information|Do you want to save changes?|All ~ nodes have been deleted.|"
    "Node '~' not found.|########  END OF ENGLISH TEXTS";

TEST(Resources, All_English_Texts) {
    std::istringstream texts(English);
    std::string text;
    Long id = 0;
    for (; std::getline(texts, text, '|'); ++id)
        EXPECT_EQ(automation::To_UTF8(resources::Load_String(id)), text) << id;
    EXPECT_EQ(id, resources::Texts_Per_Language);
}

TEST(Resources, A_Replaced_Table_Stands_For_All_Languages) {
    shell::Replace_Strings(shell::String_Table::Parse("20 \"\"\n59 \"y\""));
    EXPECT_EQ(resources::Load_String(20), u"") << "an empty text is not a missing one";
    EXPECT_EQ(resources::Load_String(59), u"y");
    EXPECT_EQ(Failure_Number([] { resources::Load_String(1); }), 326) << "nothing shines through";
    shell::Restore_Strings();
    EXPECT_EQ(Failure_Number([] { resources::Load_String(-59); }), 326);
}

using Bytes = std::basic_string_view<unsigned char>;

Long Number_At(Bytes bytes, std::size_t at, std::size_t size) {
    Long value = 0;
    for (std::size_t index = 0; index < size; ++index)
        value |= bytes.at(at + index) << (8 * index);
    return value;
}

// The picture as text, a line a row: # black, . silver, ? anything else. The rows of the file run upwards.
std::string Drawn(Bytes bytes) {
    std::string drawn;
    for (std::size_t row = 19; row-- > 0; drawn += '\n')
        for (std::size_t column = 0; column < 17; ++column) {
            const auto colour = Number_At(bytes, 54 + row * 52 + column * 3, 3);
            drawn += colour == 0 ? '#' : colour == 0xC0C0C0 ? '.' : '?';
        }
    return drawn;
}

TEST(Pictures, Navigation_Bitmaps) {
    const std::string glyphs[] = {// side by side
                                  ".....#.....#..... .........#....... .......#......... .....#.....#.....",
                                  ".....#....##..... ........##....... .......##........ .....##....#.....",
                                  ".....#...###..... .......###....... .......###....... .....###...#.....",
                                  ".....#..####..... ......####....... .......####...... .....####..#.....",
                                  ".....#...###..... .......###....... .......###....... .....###...#.....",
                                  ".....#....##..... ........##....... .......##........ .....##....#.....",
                                  ".....#.....#..... .........#....... .......#......... .....#.....#....."};
    // Sizes of the file and of the header, width, height, planes and depth, compression.
    const std::pair<std::size_t, Long> header[] = {{2, 1042}, {10, 54},           {18, 17},
                                                   {22, 19},  {26, 24 << 16 | 1}, {30, 0}};
    const std::string blank = std::string(17, '.') + "\n";
    const std::string margin = blank + blank + blank + blank + blank + blank;
    for (Long id = 1; id <= 4; ++id) {
        const Bytes bitmap = resources::Load_Picture(id);
        ASSERT_EQ(bitmap.size(), 54u + 19 * 52) << id;
        EXPECT_EQ(Number_At(bitmap, 0, 2), 'B' | 'M' << 8) << id;
        for (const auto& [at, value] : header)
            EXPECT_EQ(Number_At(bitmap, at, 4), value) << id << ": " << at;
        std::string drawn = margin;
        for (const auto& row : glyphs)
            drawn += row.substr(static_cast<std::size_t>(id - 1) * 18, 17) + "\n";
        EXPECT_EQ(Drawn(bitmap), drawn + margin) << id;
    }
    EXPECT_TRUE(resources::Load_Picture(5).empty());
}

} // namespace
