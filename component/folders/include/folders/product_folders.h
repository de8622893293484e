// Where the product keeps its data on this machine: the shell is asked first, the registry second.
//
// Nothing here creates a folder. Paths are written with backslashes, as the product writes them; the shell
// layer's file functions take them so. Callable from any thread. What fails raises automation::Failure.
#pragma once

#include "automation/variant.h"
#include "shell/registry.h"

namespace folders {

using automation::Long;
using automation::String;
using automation::String_View;
using automation::Variant;

constexpr Long Unsupported_Value_Type = 1001;

// The product's folder below the machine's common application-data folder, with a backslash at its end. Where
// the shell's has none, it is the one below the registry's, which may not exist either. Fails as
// Common_AppData_From_Registry does.
String Product_Data_Folder();

// The path of one of the shell's special folders; empty when the shell cannot give it.
String Special_Folder_Path(Long folder_id);

// What the registry has recorded as the common application-data folder. Empty without the key; 1001 when the
// key is there but the value is not.
String Common_AppData_From_Registry();

// A registry value: a text for types 1, 2 (left unexpanded) and 7 (its texts separated by zeros), bytes for
// type 3, a Long for type 4. Any other type raises 1001, and so does a value that does not exist; the default
// (else the empty value) answers only for a key that cannot be opened. 5 for a text without its zeros.
Variant Read_Registry_Value(shell::Registry_Key root, String_View key_path, String_View value_name,
                            const std::optional<Variant>& default_value = std::nullopt);

} // namespace folders
