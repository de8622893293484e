// Product folders, registry values and the user log.
#include <csignal>
#include <string>
#include <sys/resource.h>
#include <vector>

#include <gtest/gtest.h>

#include "automation/text.h"
#include "failure_number.h"
#include "folders/product_folders.h"
#include "folders/user_log.h"
#include "shell/clock.h"
#include "shell/output_file.h"
#include "shell/special_folders.h"
#include "temporary_folder.h"

namespace {

using automation::Failure;
using automation::Long;
using automation::String;
using automation::Variant;
using automation::Variant_Type;
using shell::HKEY_LOCAL_MACHINE;

const std::string Shell_Folders_Key = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";

class Folders : public testing::Test {
protected:
    ~Folders() override {
        shell::Set_Common_App_Data(shell::Default_Common_App_Data);
        shell::Unload_Hive();
        shell::Close_File(1);
    }

    // A hive with one key that holds the lines.
    void Load_Hive(const std::string& lines, const std::string& key = "K") const {
        shell::Load_Hive(
            Write_File(folder / "hive.reg", "Windows Registry Editor Version 5.00\n[HKEY_LOCAL_MACHINE\\" +
                                                key + "]\n" + lines + "\n"));
    }
    // A common application-data folder of that name with the product's folder in it.
    std::string Make_Product_Folder(const std::string& name) const {
        std::filesystem::create_directories(folder / (name + "/Velmorant/ZEBRIX"));
        return folder / name;
    }

    const Temporary_Folder folder;
};

TEST_F(Folders, A_Value_Comes_In_Its_Type) {
    const std::string long_text(3000, 'x');
    const struct {
        std::string Line;
        Variant_Type Type;
        String Text;
    } cases[] = {{"\"v\"=\"" + long_text + "\"", Variant_Type::Text, String(3000, u'x')},
                 {"\"v\"=hex(2):25,00,41,00,25,00,00,00", Variant_Type::Text, u"%A%"},
                 {"\"v\"=hex(1):41,00,42,00", Variant_Type::Text, u"A"}, // the last byte goes, whatever it is
                 {"\"v\"=hex(7):61,00,00,00,62,00,00,00,00,00", Variant_Type::Text, String(u"a\0b", 3)},
                 {"\"v\"=dword:0000002a", Variant_Type::Long, u"42"}};
    for (const auto& row : cases) {
        Load_Hive(row.Line);
        const Variant value =
            folders::Read_Registry_Value(HKEY_LOCAL_MACHINE, u"k", u"V", Variant(u"default"));
        EXPECT_EQ(value.Type(), row.Type) << row.Line;
        EXPECT_EQ(value.To_Text(), row.Text) << row.Line;
    }
}

TEST_F(Folders, Binary_Values_Are_Byte_Arrays_Of_Their_Size) {
    Load_Hive("\"v\"=hex:00,ff,20");
    const Variant value = folders::Read_Registry_Value(HKEY_LOCAL_MACHINE, u"K", u"v");
    ASSERT_EQ(value.Type(), Variant_Type::Byte_Array);
    EXPECT_EQ(value.Byte_Array(), (std::vector<std::uint8_t>{0, 255, 32}));
}

TEST_F(Folders, Other_Types_And_Missing_Values_Are_Error_1001) {
    for (const char* line : {"", "\"w\"=\"1\"", "\"v\"=hex(0):01", "\"v\"=hex(5):00,00,00,01",
                             "\"v\"=hex(b):01,00,00,00,00,00,00,00", "\"v\"=hex(ffffffff):01"}) {
        Load_Hive(line);
        try {
            folders::Read_Registry_Value(HKEY_LOCAL_MACHINE, u"K", u"v", Variant(u"default"));
            ADD_FAILURE() << "accepted: " << line;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Number, 1001) << line;
            EXPECT_EQ(failure.Description, u"Unsupported value type") << line;
        }
    }
}

TEST_F(Folders, The_Registry_Is_Asked_When_The_Shells_Folder_Lacks_The_Products) {
    const std::string with = Make_Product_Folder("with");
    const std::string other = Make_Product_Folder("other");
    std::filesystem::create_directory(folder / "without");
    const std::string without = folder / "without";
    const struct {
        std::optional<std::string> Shell, Registry;
        std::string Common;
    } cases[] = {{with, other, with},
                 {without, other, other},
                 {without, folder / "missing", folder / "missing"},
                 {without, std::nullopt, ""}};
    for (const auto& row : cases) {
        shell::Unload_Hive();
        shell::Set_Common_App_Data(row.Shell);
        if (row.Registry)
            Load_Hive("\"Common AppData\"=\"" + *row.Registry + "\"", Shell_Folders_Key);
        const std::string expected = row.Common + "\\Velmorant\\ZEBRIX\\";
        EXPECT_EQ(automation::To_UTF8(folders::Product_Data_Folder()), expected);
        EXPECT_EQ(automation::To_UTF8(folders::User_Log_Path()), expected + "User_Log.txt");
    }
}

class User_Log : public Folders {
protected:
    User_Log() { shell::Set_Common_App_Data(Make_Product_Folder("data")); }

    static Long Failure_Of_Append() {
        return Failure_Number([] { folders::Append_To_User_Log(folders::User_Log_Path(), {}); });
    }

    const std::string log = folder / "data/Velmorant/ZEBRIX/User_Log.txt";
};

TEST_F(User_Log, Has_Eight_Fields_A_Line) {
    const auto line = [] {
        return "\"Internal Error\t" + automation::To_UTF8(shell::General_Date_Text()) +
               "\t-32768\t0\t32767\t-2147483648\ta \"b\"\tc é\tKOR_STYLE_Node\"\r\n";
    };
    const std::string early = line();
    folders::Append_To_User_Log(folders::User_Log_Path(),
                                {-32768, 0, 32767, -2147483647 - 1, u"a \"b\"\tc é", u"KOR_STYLE_Node"});
    const std::string late = line();
    const std::string bytes = Bytes_Of_File(log);
    EXPECT_TRUE(bytes == early || bytes == late) << bytes;
}

TEST_F(User_Log, Stays_Silent_After_A_Failure_Between_Opening_And_Closing) {
    EXPECT_EQ(Failure_Of_Append(), 0);
    const std::string before = Bytes_Of_File(log);
    rlimit former{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
    const auto former_action = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{before.size(), former.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
    const Long first = Failure_Of_Append();
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, former_action);
    EXPECT_EQ(first, 75);
    EXPECT_EQ(Failure_Of_Append(), 55);
    EXPECT_EQ(Bytes_Of_File(log), before);
}

} // namespace
