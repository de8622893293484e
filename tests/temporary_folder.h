// A folder of a test's own, gone with everything in it at the end. Also open to other users, so that a test
// may drop its rights.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

class Temporary_Folder {
public:
    Temporary_Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "style_node_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::filesystem::filesystem_error("no temporary folder", name, std::error_code());
        path = name;
        std::filesystem::permissions(path, std::filesystem::perms(0755));
    }
    Temporary_Folder(const Temporary_Folder&) = delete;
    Temporary_Folder& operator=(const Temporary_Folder&) = delete;
    ~Temporary_Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    std::string operator/(const std::string& name) const { return (path / name).string(); }
    std::string String() const { return path.string(); }

private:
    std::filesystem::path path;
};

inline std::string Write_File(const std::string& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary);
    file << bytes;
    file.close();
    EXPECT_TRUE(file) << path;
    return path;
}

inline std::string Bytes_Of_File(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}
