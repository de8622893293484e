// The shell's special folders, asked for in two steps: an item identifier list, then its path.
//
// The machine knows one of them, the common application-data folder (35). Unless a host sets another, it is
// /var/lib, where Linux keeps the data that the programs of a machine share. Callable from any thread.
#pragma once

#include <optional>
#include <string>

#include "automation/text.h"

namespace shell {

constexpr automation::Long Common_App_Data_Folder = 35;
constexpr const char* Default_Common_App_Data = "/var/lib";
// Size of the buffer that takes a path, its terminating zero included.
constexpr std::size_t Path_Buffer_Size = 260;

// With nothing, or an empty path, the shell has no such folder. The path is in the 8-bit character set.
void Set_Common_App_Data(std::optional<std::string> path);

struct Item_Id_List;

// 0, and in `list` the identifier of the folder, which the caller gives back with CoTaskMemFree; or a
// negative status and null when the shell has no such folder. No owner window is needed: pass null.
automation::Long SHGetSpecialFolderLocation(void* owner_window, automation::Long folder, Item_Id_List** list);
// Writes the path and a zero into `path`, which has Path_Buffer_Size bytes. False, and nothing written, when
// the path does not fit.
bool SHGetPathFromIDListA(const Item_Id_List* list, char* path);
void CoTaskMemFree(void* memory);

} // namespace shell
