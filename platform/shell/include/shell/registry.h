// The registry, over a hive that a host loads from the text form of an exported registry file.
//
// Without a hive no key can be opened; nothing is ever written back. Keys and value names are compared
// without regard to the case of ASCII letters. Everything here is process-wide and callable from any thread;
// an open key keeps what it names, even when another hive is loaded meanwhile.
#pragma once

#include <cstdint>
#include <string>

#include "automation/text.h"
#include "shell/format_error.h"

namespace shell {

// Replaces the hive by that of the file; on failure the hive stays what it was.
//
// The file is UTF-8, or UTF-16 with a byte-order mark. Its first line is "Windows Registry Editor Version
// 5.00" or "REGEDIT4"; then follow [key], [-key] (the key with all below it goes), "name"= or @= (the value
// without a name) with "text", dword:, hex:, hex(type): or - (the value goes), lines that a backslash
// continues, and comments behind a semicolon. Texts are kept as the 8-bit functions give them: UTF-8 with a
// terminating zero. In version 5.00 the bytes of the text types 1, 2 and 7 are UTF-16 and become UTF-8.
// A file that others than root and this user may have written (trusted_file.h) is refused.
// Failure: Format_Error with the file, the line and what is wrong with it.
void Load_Hive(const std::string& path);
void Unload_Hive();

// A predefined key, or one that RegOpenKeyExA gave.
using Registry_Key = automation::Long;
constexpr Registry_Key HKEY_CLASSES_ROOT = INT32_MIN;
constexpr Registry_Key HKEY_CURRENT_USER = INT32_MIN + 1;
constexpr Registry_Key HKEY_LOCAL_MACHINE = INT32_MIN + 2;
constexpr Registry_Key HKEY_USERS = INT32_MIN + 3;
constexpr Registry_Key HKEY_CURRENT_CONFIG = INT32_MIN + 5;

constexpr std::uint32_t KEY_READ = 0x20019;

// The status codes of the three functions below.
namespace registry_status {
constexpr automation::Long Success = 0;
constexpr automation::Long Not_Found = 2;
constexpr automation::Long Access_Denied = 5;
constexpr automation::Long Invalid_Handle = 6;
constexpr automation::Long Invalid_Parameter = 87;
constexpr automation::Long More_Data = 234;
} // namespace registry_status

// Types of values.
namespace registry_type {
constexpr std::uint32_t None = 0;
constexpr std::uint32_t Text = 1;
constexpr std::uint32_t Expandable_Text = 2;
constexpr std::uint32_t Binary = 3;
constexpr std::uint32_t Number = 4; // 32 bits, the low byte first
constexpr std::uint32_t Multiple_Texts = 7;
} // namespace registry_type

// Opens the key `path` (separated by backslashes; null or empty is `key` itself) for reading. Asking for more
// than KEY_READ is denied. The caller closes `opened`.
automation::Long RegOpenKeyExA(Registry_Key key, const char* path, std::uint32_t options,
                               std::uint32_t access, Registry_Key* opened);
// Gives type and bytes of a value; `name` null or empty is the value without a name. `size` comes in as the
// room in `data` and goes out as the size of the value; without room enough nothing is written to `data` and
// the answer is 234. `type`, and `data` with `size`, may be null; `data` null with a size only asks for it.
automation::Long RegQueryValueExA(Registry_Key key, const char* name, std::uint32_t* reserved,
                                  std::uint32_t* type, std::uint8_t* data, std::uint32_t* size);
// A predefined key stays open.
automation::Long RegCloseKey(Registry_Key key);

} // namespace shell
