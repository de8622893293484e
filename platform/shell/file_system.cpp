#include "shell/file_system.h"

#include "automation/text.h"

#include <algorithm>
#include <sys/stat.h>

namespace shell {

std::string Native_Path(automation::String_View path) {
    std::string native = automation::To_UTF8(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

bool Folder_Exists(automation::String_View path) {
    struct stat status {};
    const bool is_name = path.find(u'\0') == path.npos;
    return is_name && stat(Native_Path(path).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace shell
