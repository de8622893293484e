#include "shell/special_folders.h"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>

#include "automation/failure.h"

namespace shell {

using automation::Long;

// The length and the path's bytes follow one another in one block of the task's memory, so that the list
// stays what it was when the setting changes.
struct Item_Id_List {
    std::size_t Length;
    char* Path() { return reinterpret_cast<char*>(this + 1); }
    const char* Path() const { return reinterpret_cast<const char*>(this + 1); }
};

namespace {

std::mutex setting_lock;
std::optional<std::string> common_app_data(Default_Common_App_Data);

Item_Id_List* Make_List(const std::string& path) {
    void* memory = std::malloc(sizeof(Item_Id_List) + path.size());
    if (memory == nullptr)
        return nullptr;
    auto* list = new (memory) Item_Id_List{path.size()};
    std::memcpy(list->Path(), path.data(), path.size());
    return list;
}

} // namespace

void Set_Common_App_Data(std::optional<std::string> path) {
    const std::lock_guard guard(setting_lock);
    common_app_data = std::move(path);
}

Long SHGetSpecialFolderLocation(void*, Long folder, Item_Id_List** list) {
    *list = nullptr;
    const std::lock_guard guard(setting_lock);
    if (folder == Common_App_Data_Folder && common_app_data && !common_app_data->empty())
        *list = Make_List(*common_app_data);
    return *list != nullptr ? automation::Status_OK : automation::Status_Unspecified;
}

bool SHGetPathFromIDListA(const Item_Id_List* list, char* path) {
    if (list == nullptr || list->Length >= Path_Buffer_Size)
        return false;
    std::memcpy(path, list->Path(), list->Length);
    path[list->Length] = '\0';
    return true;
}

void CoTaskMemFree(void* memory) {
    std::free(memory);
}

} // namespace shell
