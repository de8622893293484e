// Output under fixed file numbers.
#include <string>
#include <sys/stat.h>
#include <thread>

#include <gtest/gtest.h>

#include "automation/text.h"
#include "failure_number.h"
#include "shell/output_file.h"
#include "temporary_folder.h"

namespace {

using automation::Long;
using automation::String;

Long Failure_Of_Open(Long number, const std::string& path) {
    return Failure_Number([&] { shell::Open_For_Append(number, *automation::From_UTF8(path)); });
}

void Append(const std::string& path, const String& text) {
    shell::Open_For_Append(1, *automation::From_UTF8(path));
    shell::Write_Quoted_Line(1, text);
    shell::Close_File(1);
}

unsigned Mode_Of(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

class Output_File : public testing::Test {
protected:
    ~Output_File() override {
        shell::Close_File(1);
        shell::Close_File(2);
    }
    const Temporary_Folder folder;
};

TEST_F(Output_File, Lines_Are_Quoted_And_Appended) {
    const std::string path = folder / "log.txt";
    Append(path, u"\ttwo \"quoted\" é\U0001F600\n");
    Append(path, u"");
    Append(path, String(u"a\0b", 3));
    EXPECT_EQ(Bytes_Of_File(path),
              "\"\ttwo \"quoted\" é\U0001F600\n\"\r\n\"\"\r\n" + std::string("\"a\0b\"\r\n", 7));
}

TEST_F(Output_File, A_New_File_Is_Its_Owners_Alone_Under_Any_Umask) {
    for (const mode_t mask : {0000U, 0077U}) {
        const std::string path = folder / std::to_string(mask);
        const mode_t before = umask(mask);
        Append(path, u"x");
        umask(before);
        EXPECT_EQ(Mode_Of(path), 0600u) << mask;
        chmod(path.c_str(), 0640);
        Append(path, u"x");
        EXPECT_EQ(Mode_Of(path), 0640u) << "what is there stays";
    }
}

TEST_F(Output_File, A_Number_Is_Open_Once_For_Every_Thread) {
    const std::string one = folder / "one";
    const std::string two = folder / "two";
    EXPECT_EQ(Failure_Of_Open(1, one), 0);
    EXPECT_EQ(Failure_Of_Open(1, two), 55);
    EXPECT_FALSE(std::filesystem::exists(two));
    std::thread([&] { EXPECT_EQ(Failure_Of_Open(1, two), 55); }).join();
    EXPECT_EQ(Failure_Of_Open(2, two), 0) << "another number is free";
    shell::Close_File(1);
    EXPECT_EQ(Failure_Of_Open(1, two), 0);
    EXPECT_EQ(Failure_Number([] { shell::Write_Quoted_Line(3, u"x"); }), 52);
}

TEST_F(Output_File, Refused_Paths_Leave_The_Number_Free_And_Nothing_Behind) {
    const std::string target = folder / "target";
    std::filesystem::create_symlink(Write_File(target, "kept"), folder / "link");
    std::filesystem::create_symlink(folder / "nowhere", folder / "dangling");
    const struct {
        Long Number;
        std::string Path;
        Long Failure;
    } cases[] = {{0, folder / "log", 52},
                 {512, folder / "log", 52},
                 {1, "", 52},
                 {1, folder / "missing/log", 76},
                 {1, folder / "link", 75},
                 {1, folder / "dangling", 75},
                 {1, "/dev/null", 75}};
    for (const auto& row : cases) {
        EXPECT_EQ(Failure_Of_Open(row.Number, row.Path), row.Failure) << row.Path;
        EXPECT_EQ(Failure_Number([] { shell::Write_Quoted_Line(1, u"x"); }), 52) << row.Path;
    }
    EXPECT_EQ(Bytes_Of_File(target), "kept");
    EXPECT_FALSE(std::filesystem::exists(folder / "nowhere"));
}

} // namespace
