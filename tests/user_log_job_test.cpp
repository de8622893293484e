// The user log as a whole job writes it: only when reporting itself fails, and silently.
#include <fstream>
#include <sstream>
#include <unistd.h>

#include "editor_files.h"

namespace {

namespace fs = std::filesystem;

// A text that is missing makes reporting fail. Silent or not, the log is written.
constexpr const char* Fail_Once = "shown 1 1 1 2 silent";

class User_Log_Job : public ::testing::Test {
protected:
    static std::string Bytes(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream bytes;
        bytes << file.rdbuf();
        return bytes.str();
    }
    static fs::path Product(const fs::path& common) { return common / "Velmorant" / "ZEBRIX"; }
    static fs::path Log(const fs::path& common) { return Product(common) / "User_Log.txt"; }
    fs::path Make(const std::string& name) const {
        fs::create_directories(Product(session.Folder() / name));
        return session.Folder() / name;
    }
    Options Configuration(const Rows& rows) const {
        return Reply(session, "Get_Configuration_Info", Persisted({"a", "b", "c", "d", "e", "f"}, rows));
    }
    // One line of the log, with the time as <now>.
    static std::string Line_With(const std::string& values, int text) {
        return "\"Internal Error\t<now>\t" + values + "\t326\tResource with identifier '" +
               std::to_string(text) + "' not found\tKOR_STYLE_Node\"\r\n";
    }
    // The second field of every line, the time, as "<now>".
    static std::string Timeless(const std::string& bytes) {
        std::istringstream lines(bytes);
        std::string result;
        for (std::string line; std::getline(lines, line); result += line + "\n") {
            const std::size_t start = line.find('\t') + 1;
            const std::size_t end = line.find('\t', start);
            const bool is_time = line.substr(start, end - start).find(':') != std::string::npos;
            line.replace(start, end - start, is_time ? "<now>" : "<no time>");
        }
        return result;
    }

    Editor_Session session;
    const fs::path common = session.Folder(); // --appdata
};

TEST_F(User_Log_Job, Two_Errors_Are_Two_Lines_In_Order) {
    Make(".");
    const Lines lines = session.Play("shown 1 1 1 2\nshown 1 1 1 0 silent",
                                     Configuration({{"0", "1", "2", "-3", "4", "32767"}}));
    EXPECT_EQ(Only(lines, "box").size(), 1U);
    EXPECT_EQ(Timeless(Bytes(Log(common))), Line_With("1\t32767\t-3", 59) + Line_With("1\t32767\t-3", -59));
}

TEST_F(User_Log_Job, The_Configuration_Is_Three_Integers_Or_No_Line) {
    const struct {
        Rows Records;
        const char* Values; // null: no line
    } cases[] = {
        {{}, "0\t0\t0"},
        {{{"x", "7", "x", "9", "x", "8"}, {"x", "x"}}, "7\t8\t9"},
        {{{"", "1.5", "", "1e3", "", " -5 "}}, "2\t-5\t1000"},
        {{{"", "32768", "", "1", "", "1"}}, nullptr},
        {{{"", "1", "", nullptr, "", "1"}}, nullptr},
        {{{"", "1", "", "1", "", "one"}}, nullptr},
    };
    Make(".");
    for (const auto& row : cases) {
        fs::remove(Log(common));
        session.Play(Fail_Once, Configuration(row.Records));
        EXPECT_EQ(Timeless(Bytes(Log(common))), row.Values ? Line_With(row.Values, 59) : "");
    }
    for (const Options& options :
         {Reply(session, "Get_Configuration_Info", Persisted({"a", "b"}, {{"1", "2"}})),
          Options{"--fail", "Get_Configuration_Info"}, Options{"--missing", "ZEBdb.CONFIG"}}) {
        fs::remove(Log(common));
        EXPECT_EQ(Last_Record(session.Play(Fail_Once, options)).Code, 326) << options[1];
        EXPECT_FALSE(fs::exists(Log(common))) << options[1];
    }
}

TEST_F(User_Log_Job, Goes_To_The_Registrys_Folder_Or_Nowhere) {
    const fs::path other = Make("other");
    const Options hive{
        "--registry", session.File("hive.reg", "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\"
                                               "CurrentVersion\\Explorer\\Shell Folders]\n"
                                               "\"Common AppData\"=\"" +
                                                   other.string() + "\"\n")};
    for (const bool with_hive : {false, true}) {
        EXPECT_EQ(Last_Record(session.Play(Fail_Once, with_hive ? hive : Options{})).Code, 326);
        EXPECT_EQ(fs::exists(Log(other)), with_hive);
        EXPECT_FALSE(fs::exists(common / "Velmorant")) << "no folder is made";
    }
}

TEST_F(User_Log_Job, A_Link_In_Its_Place_Is_Left_Alone) {
    Make(".");
    const fs::path target = session.File("target", "kept");
    fs::create_symlink(target, Log(common));
    EXPECT_EQ(Last_Record(session.Play(Fail_Once)).Code, 326);
    EXPECT_EQ(Bytes(target), "kept");
    fs::remove(Log(common));
    session.Play(Fail_Once);
    EXPECT_EQ(Timeless(Bytes(Log(common))), Line_With("1\t420\t12", 59)) << "the file number was free again";
    if (::geteuid() == 0)
        return; // every file can be written
    fs::permissions(Log(common), fs::perms::owner_read);
    const std::string before = Bytes(Log(common));
    EXPECT_EQ(Last_Record(session.Play(Fail_Once)).Code, 326);
    EXPECT_EQ(Bytes(Log(common)), before);
}

} // namespace
