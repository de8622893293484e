// The generator's refusals: run as the build runs it, on copies of the real files with one fault each.
#include <algorithm>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <vector>

#include <gtest/gtest.h>

#include "temporary_folder.h"

namespace {

// What the generator says; COMPILE_RESOURCES and RESOURCE_FOLDER come from the build.
std::string Compile(const Temporary_Folder& folder, const std::string& arguments, int status) {
    const std::string command = std::string(COMPILE_RESOURCES) + " " + (folder / "out.cpp") + " " +
                                arguments + " 2>" + (folder / "output");
    const int result = std::system(command.c_str());
    EXPECT_TRUE(WIFEXITED(result) && WEXITSTATUS(result) == status) << command << ": " << result;
    return Bytes_Of_File(folder / "output");
}

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
    return text.replace(text.find(what), what.size(), with);
}

// The ids of language 2.
std::string Second_Language() {
    std::string texts;
    for (int id = 59; id < 118; ++id)
        texts += std::to_string(id) + " \"Text\\u00fc" + std::to_string(id) + "\"\n";
    return texts;
}

TEST(Compile_Resources, Embeds_Languages_That_Are_Complete) {
    const Temporary_Folder folder;
    const std::string second = Write_File(folder / "language_2.strings", Second_Language());
    EXPECT_EQ(Compile(folder, RESOURCE_FOLDER "/language_1.strings " + second, 0), "");
    EXPECT_NE(Bytes_Of_File(folder / "out.cpp").find(R"({117, {u"Text" u"\xfc" u"117", 8}})"),
              std::string::npos);
}

TEST(Compile_Resources, Refuses_A_Language_With_Other_Ids_By_Its_Line) {
    const std::string english = Bytes_Of_File(RESOURCE_FOLDER "/language_1.strings");
    const auto line = [&](const char* entry) {
        const auto end = english.begin() + static_cast<std::ptrdiff_t>(english.find(entry));
        return ", line " + std::to_string(1 + std::count(english.begin(), end, '\n')) + ": ";
    };
    const struct {
        std::string Name, Text, Message;
    } cases[] = {{"language_1.strings", Replaced(english, "\n20 \"", "\n#20 \""),
                  line("19 \"1800\"") + "id 20 is missing; its line belongs behind this one"},
                 {"language_1.strings", Replaced(english, "\n21 \"", "\n20 \""),
                  line("21 \"1800\"") + "id 20 is given already in line "},
                 {"language_1.strings", Replaced(english, "\"BLIND\"", "\"BLIND"),
                  line("5 \"BLIND\"") + "the closing quote is missing"},
                 {"language_1.strings", "", ": id 0 is missing"},
                 {"language_2.strings", english,
                  line("0 \"~") + "id 0 is not one of this language, which has the ids 59 to 117"},
                 {"language_3.strings", Second_Language(), ", line 1: id 59 is not one of this language"},
                 {"language_0.strings", english, ": is not named language_N.strings"},
                 {"language_1.strings.old", english, ": is not named language_N.strings"}};
    for (const auto& row : cases) {
        const Temporary_Folder folder;
        const std::string path = Write_File(folder / row.Name, row.Text);
        const std::string output = Compile(folder, path, 1);
        EXPECT_TRUE(output.starts_with("compile_resources: " + path + row.Message)) << output;
        EXPECT_FALSE(std::filesystem::exists(folder / "out.cpp")) << row.Message;
    }
}

} // namespace
