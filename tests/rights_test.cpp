// What an ordinary user can and cannot make the program write: stores and the user log, under
// every umask, through links, into folders and over files that may not be written.
#include "automation/text.h"
#include "ordinary_user.h"
#include "shell/output_file.h"
#include "stores_test_tools.h"

namespace {

using namespace stores_test;

struct Written_File {
    const char* Name;
    std::function<void(const std::string& path)> Write;
    bool Makes_Folders = true;
};

const Written_File Files[] = {
    {"store", [](const std::string& path) { stores::Store::Create(URL(path)); }},
    {"log",
     [](const std::string& path) {
         shell::Open_For_Append(1, automation::From_UTF8_Replacing(path));
         shell::Write_Quoted_Line(1, u"line");
         shell::Close_File(1);
     },
     false},
};

class Rights : public ::testing::TestWithParam<Written_File> {
protected:
    Rights() { Give_To_Ordinary_User(folder.String()); }

    // "" when it was written, else "refused".
    std::string Write(const std::string& name, mode_t mask = 022) const {
        return As_Ordinary_User(mask, [&]() -> std::string {
            try {
                GetParam().Write(folder / name);
                return "";
            } catch (...) {
                return "refused";
            }
        });
    }
    static unsigned Mode_Of(const std::string& path) {
        struct stat status {};
        return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
    }
    std::size_t Entries(const std::string& name) const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder / name), {}));
    }
    std::string Make_Folder(const std::string& name, mode_t mode) const {
        fs::create_directory(folder / name);
        Give_To_Ordinary_User(folder / name);
        chmod((folder / name).c_str(), mode);
        return name;
    }
    std::string Make_File(const std::string& name, const std::string& bytes, mode_t mode,
                          bool gives_away = true) const {
        Write_File(folder / name, bytes);
        if (gives_away)
            Give_To_Ordinary_User(folder / name);
        chmod((folder / name).c_str(), mode);
        return folder / name;
    }

    const Temporary_Folder folder;
};

INSTANTIATE_TEST_SUITE_P(Of_A, Rights, ::testing::ValuesIn(Files),
                         [](const auto& made) { return std::string(made.param.Name); });

TEST_P(Rights, What_Is_Made_Is_Its_Owners_Alone_Under_Any_Umask) {
    for (const mode_t mask : {0000U, 0022U, 0077U}) {
        const std::string name = std::to_string(mask);
        if (!GetParam().Makes_Folders)
            Make_Folder(name, 0700);
        const std::string path = name + (GetParam().Makes_Folders ? "/deep/file" : "/file");
        EXPECT_EQ(Write(path, mask), "");
        EXPECT_EQ(Mode_Of(folder / path), 0600U) << mask;
        EXPECT_EQ(Mode_Of(fs::path(folder / path).parent_path()), 0700U) << mask;
    }
}

TEST_P(Rights, Where_Nothing_May_Be_Written_Nothing_Is) {
    for (const mode_t mode : {0555U, 0000U, 0444U}) {
        const std::string name = Make_Folder(std::to_string(mode), mode);
        EXPECT_EQ(Write(name + "/file") + " " + Write(name + "/deep/file"), "refused refused") << mode;
        chmod((folder / name).c_str(), 0700);
        EXPECT_EQ(Entries(name), 0U) << mode;
    }
}

TEST_P(Rights, A_Link_Is_Not_Written_Through) {
    const std::string target = Make_File("target", "", 0666);
    Make_Folder("links", 0700);
    fs::create_symlink(target, folder / "links/existing");
    fs::create_symlink(folder / "nowhere", folder / "links/dangling");
    for (const std::string name : {"links/existing", "links/dangling"}) {
        const std::string said = Write(name);
        EXPECT_TRUE(said == "refused" || fs::is_regular_file(fs::symlink_status(folder / name)))
            << "or replaced: " << name;
    }
    EXPECT_EQ(Bytes_Of_File(target), "");
    EXPECT_EQ(Mode_Of(target), 0666U);
    EXPECT_FALSE(fs::exists(folder / "nowhere"));
}

TEST_P(Rights, A_File_That_May_Not_Be_Read_Is_Left_As_It_Is) {
    const std::string path = Make_File("closed", "kept", 0000, false);
    EXPECT_EQ(Write("closed"), "refused");
    chmod(path.c_str(), 0600);
    EXPECT_EQ(Bytes_Of_File(path), "kept");
}

// --- a store that may be read only

class Read_Only_Store : public ::testing::Test {
protected:
    Read_Only_Store() {
        Give_To_Ordinary_User(folder.String());
        As_Ordinary_User(022, [&]() -> std::string {
            stores::Store::Create(URL(path));
            return "";
        });
    }
    // Reads and writes it; what the reading and the writing say.
    std::pair<std::string, std::string> Use_It() const {
        const std::string said = As_Ordinary_User(022, [&]() -> std::string {
            try {
                Use(stores::Store::Open(URL(path)));
            } catch (const stores::Store_Error& error) {
                return error.what() + std::string("|");
            }
            const auto text = [](automation::Status status) {
                const auto failure = status < 0 ? automation::Take_Error() : std::nullopt;
                return failure ? automation::To_UTF8(failure->Description) : "";
            };
            automation::Variant xml;
            const std::string reading = text(Created<interfaces::NODES>()->Get_Style_Nodes(u"1", u"1", xml));
            return reading + "|" +
                   text(
                       Created<interfaces::UDNODES>()->Update_Node_Entry(u"x", u"y", u"1", u"1", u"5", u"1"));
        });
        return {said.substr(0, said.find('|')), said.substr(said.find('|') + 1)};
    }

    const Temporary_Folder folder;
    const std::string path = folder / "nodes.db";
};

TEST_F(Read_Only_Store, Is_Read_And_A_Write_Says_Why_Not) {
    const std::string before = Bytes_Of_File(path);
    const std::pair<mode_t, mode_t> cases[] = {
        {0400, 0700}, {0600, 0500}, {0400, 0500}}; // of the file, of the folder
    for (const auto& [file, its_folder] : cases) {
        chmod(path.c_str(), file);
        chmod(folder.String().c_str(), its_folder);
        const auto [reading, writing] = Use_It();
        EXPECT_EQ(reading, "") << file << " " << its_folder;
        EXPECT_NE(writing.find("check the rights of the file and its folder"), std::string::npos) << writing;
        chmod(folder.String().c_str(), 0755);
        EXPECT_EQ(Bytes_Of_File(path), before);
        EXPECT_EQ(std::distance(fs::directory_iterator(folder.String()), {}), 1) << "nothing beside it";
    }
    chmod(path.c_str(), 0000);
    EXPECT_NE(Use_It().first.find("check the rights of the file"), std::string::npos) << Use_It().first;
    chmod(path.c_str(), 0600);
    EXPECT_EQ(Use_It(), (std::pair<std::string, std::string>()));
}

} // namespace
