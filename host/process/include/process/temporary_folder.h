// A folder of its own for one command, open to its owner alone; it goes with everything in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "process/errors.h"

namespace host {

class Temporary_Folder {
public:
    Temporary_Folder() {
        std::error_code unusable;
        std::string name = (std::filesystem::temp_directory_path(unusable) / "style-editor-XXXXXX").string();
        if (unusable || !mkdtemp(name.data()))
            throw Start_Error(
                "no temporary folder can be made; set TMPDIR to a folder that you can write to");
        path = name;
    }
    Temporary_Folder(const Temporary_Folder&) = delete;
    Temporary_Folder& operator=(const Temporary_Folder&) = delete;
    ~Temporary_Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    std::string operator/(const std::string& name) const { return (path / name).string(); }

private:
    std::filesystem::path path;
};

} // namespace host
