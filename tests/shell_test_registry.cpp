// The registry and the reader of its text form.
#include <array>
#include <cstring>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "automation/text.h"
#include "shell/registry.h"
#include "temporary_folder.h"

namespace {

using namespace std::string_literals;
using shell::HKEY_LOCAL_MACHINE;
using shell::KEY_READ;
using shell::Registry_Key;

constexpr const char* Version_5 = "Windows Registry Editor Version 5.00\r\n";
constexpr const char* Version_4 = "REGEDIT4\r\n";

class Registry : public testing::Test {
protected:
    ~Registry() override { shell::Unload_Hive(); }

    void Load(const std::string& bytes) { shell::Load_Hive(Write_File(folder / "hive.reg", bytes)); }

    // Two lines of a file: the key, and `line` below it.
    void Load_Below_Key(const char* header, const std::string& line) {
        Load(header + "[HKEY_LOCAL_MACHINE\\K]\r\n"s + line + "\r\n");
    }

    static bool Exists(Registry_Key root, const char* path) {
        Registry_Key key = 0;
        if (shell::RegOpenKeyExA(root, path, 0, KEY_READ, &key) != 0)
            return false;
        EXPECT_EQ(shell::RegCloseKey(key), 0);
        return true;
    }

    // Type, colon, bytes of a value of HKEY_LOCAL_MACHINE\path; the failing status otherwise.
    static std::string Value(const char* path, const char* name) {
        Registry_Key key = 0;
        if (const auto status = shell::RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key))
            return "open " + std::to_string(status);
        std::uint32_t type = 0;
        std::array<std::uint8_t, 256> data{};
        auto size = static_cast<std::uint32_t>(data.size());
        const auto status = shell::RegQueryValueExA(key, name, nullptr, &type, data.data(), &size);
        EXPECT_EQ(shell::RegCloseKey(key), 0);
        return status != 0 ? "query " + std::to_string(status)
                           : std::to_string(type) + ":" + std::string(data.begin(), data.begin() + size);
    }

    const Temporary_Folder folder;
};

std::string UTF16(const std::u16string& text) {
    std::string bytes = "\xFF\xFE";
    for (const char16_t unit : text)
        bytes += {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
    return bytes;
}

TEST_F(Registry, Values_Are_The_Bytes_Of_The_Eight_Bit_Functions) {
    const struct {
        const char* Header;
        std::string Line, Value;
    } cases[] = {{Version_5, "\"v\"=\"text\"", "1:text\0"s},
                 {Version_5, "  \"v\" = \"a\\\\b\\\"c\" ; note", "1:a\\b\"c\0"s},
                 {Version_5, "\"v\"=dword:0000002a", "4:*\0\0\0"s},
                 {Version_5, "\"v\"=hex:01,FF,0", "3:\1\xFF\0"s},
                 {Version_5, "\"v\"=hex: ; none", "3:"},
                 {Version_5, "\"v\"=hex:01,\\\r\n  02,\\\r\n\t03", "3:\1\2\3"},
                 {Version_5, "\"v\"=hex(2):25,00,e9,00,00,00", "2:%é\0"s},
                 {Version_5, "\"v\"=hex(1):3d,d8,00,de,00,00", "1:\xF0\x9F\x98\x80\0"s},
                 {Version_5, "\"v\"=hex(7):61,00,00,00,62,00,00,00,00,00", "7:a\0b\0\0"s},
                 {Version_4, "\"v\"=hex(2):25,61,00", "2:%a\0"s},
                 {Version_4, "\"v\"=\"é\"", "1:é\0"s},
                 {Version_5, "\"v\"=\"1\"\r\n\"V\"=\"2\"", "1:2\0"s},
                 {Version_5, "\"v\"=\"1\"\r\n\"v\"=-", "query 2"},
                 {Version_5, "; \"v\"=\"1\"", "query 2"}};
    for (const auto& row : cases) {
        ASSERT_NO_THROW(Load_Below_Key(row.Header, row.Line)) << row.Line;
        EXPECT_EQ(Value("K", "v"), row.Value) << row.Line;
    }
}

TEST_F(Registry, Every_Encoding_Gives_The_Same_Hive) {
    const std::u16string text =
        u"Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\Ä]\r\n\"ñ\"=\"\U0001F600\"\r\n";
    for (const std::string& bytes :
         {automation::To_UTF8(text), "\xEF\xBB\xBF" + automation::To_UTF8(text), UTF16(text)}) {
        Load(bytes);
        EXPECT_EQ(Value("Ä", "ñ"), "1:\xF0\x9F\x98\x80\0"s) << bytes.substr(0, 4);
    }
}

TEST_F(Registry, Broken_Files_Are_Refused_By_Line_And_Change_Nothing) {
    const std::string key = "[HKEY_LOCAL_MACHINE\\K]\n";
    const std::string below = "REGEDIT4\n" + key;
    const struct {
        std::string Bytes;
        std::size_t Line;
        std::string Reason; // a part of it
    } cases[] = {{"", 1, "neither"},
                 {"Windows Registry Editor Version 6.00\n", 1, "neither"},
                 {"REGEDIT4\n\nx\n", 3, "neither a key"},
                 {"REGEDIT4\n\"v\"=\"1\"", 2, "no key"},
                 {below + "[-HKEY_LOCAL_MACHINE\\K]\n\"v\"=\"1\"", 4, "no key"},
                 {"REGEDIT4\n[HKEY_LOCAL_MACHINE\\]", 2, "not a key"},
                 {below + "\"v\"", 3, "="},
                 {below + "\"v\"=\"C:\\Data\"", 3, "backslash"},
                 {below + "\"v\"=\"1\" x", 3, "behind the value"},
                 {below + "\"v\"=", 3, "none of"},
                 {below + "\"v\"=dword:123456789", 3, "dword"},
                 {below + "\"v\"=hex():01", 3, "type"},
                 {below + "\"v\"=hex:123", 3, "digits"},
                 {below + "\"v\"=hex:1,\\", 3, "nothing follows"},
                 {Version_5 + key + "\"v\"=hex(2):61", 3, "two of them"},
                 {below + "\"v\"=\"\xE9\"", 3, "UTF-8"},
                 {UTF16(u"REGEDIT4\n\xD800x"), 2, "UTF-16"}};
    Load_Below_Key(Version_5, "\"v\"=\"former\"");
    for (const auto& row : cases) {
        try {
            Load(row.Bytes);
            ADD_FAILURE() << "accepted: " << row.Bytes;
        } catch (const shell::Format_Error& error) {
            EXPECT_EQ(error.Line, row.Line) << row.Bytes << ": " << error.what();
            EXPECT_NE(error.Reason.find(row.Reason), std::string::npos) << row.Bytes << ": " << error.what();
            EXPECT_TRUE(std::string(error.what()).starts_with(folder / "hive.reg")) << error.what();
        }
        EXPECT_EQ(Value("K", "v"), "1:former\0"s) << row.Bytes;
    }
}

TEST_F(Registry, Files_That_Others_May_Have_Written_Are_Refused) {
    const std::string path = folder / "own/hive.reg";
    std::filesystem::create_directories(folder / "own");
    Write_File(path, Version_4);
    for (const std::string& name : {std::string(), "/own"s, "/own/hive.reg"s}) {
        const std::filesystem::path spoiled = folder.String() + name;
        const auto before = std::filesystem::status(spoiled).permissions();
        std::filesystem::permissions(spoiled, before | std::filesystem::perms::others_write);
        try {
            shell::Load_Hive(path);
            ADD_FAILURE() << spoiled << " is trusted";
        } catch (const shell::Format_Error& error) {
            EXPECT_NE(std::string(error.what()).find(spoiled.string() + " may be written by others"),
                      std::string::npos)
                << error.what();
        }
        std::filesystem::permissions(spoiled, before);
    }
    EXPECT_NO_THROW(shell::Load_Hive(path));
    // What a shell hands over: a pipe.
    std::array<int, 2> pipe_ends{};
    ASSERT_EQ(pipe(pipe_ends.data()), 0);
    ASSERT_EQ(write(pipe_ends[1], Version_4, strlen(Version_4)), static_cast<ssize_t>(strlen(Version_4)));
    close(pipe_ends[1]);
    EXPECT_NO_THROW(shell::Load_Hive("/dev/fd/" + std::to_string(pipe_ends[0])));
    close(pipe_ends[0]);
}

TEST_F(Registry, A_Query_Tells_The_Room_That_It_Needs) {
    Load_Below_Key(Version_5, "\"v\"=\"12345\"");
    Registry_Key key = 0;
    ASSERT_EQ(shell::RegOpenKeyExA(HKEY_LOCAL_MACHINE, "K", 0, KEY_READ, &key), 0);
    std::array<std::uint8_t, 6> data{9, 9, 9, 9, 9, 9};
    std::uint32_t type = 77;
    std::uint32_t size = 5;
    EXPECT_EQ(shell::RegQueryValueExA(key, "v", nullptr, &type, data.data(), &size), 234);
    EXPECT_EQ(type, 1u);
    EXPECT_EQ(size, 6u);
    EXPECT_EQ(data[0], 9) << "nothing is written without room";
    EXPECT_EQ(shell::RegQueryValueExA(key, "v", nullptr, nullptr, data.data(), &size), 0);
    EXPECT_EQ(std::string(data.begin(), data.end()), "12345\0"s);
    size = 0;
    EXPECT_EQ(shell::RegQueryValueExA(key, "v", nullptr, nullptr, nullptr, &size), 0);
    EXPECT_EQ(size, 6u);
    EXPECT_EQ(shell::RegCloseKey(key), 0);
    EXPECT_EQ(shell::RegCloseKey(key), 6);
    EXPECT_EQ(shell::RegOpenKeyExA(HKEY_LOCAL_MACHINE, "K", 0, 0x20006, &key), 5) << "for writing";
}

} // namespace
