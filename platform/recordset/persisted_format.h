// Names of the persisted XML format that its reader and its writer share. All of them are ASCII.
#pragma once

#include <string_view>

namespace recordset::format {

constexpr std::string_view Schema_Namespace = "uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882";
constexpr std::string_view Datatype_Namespace = "uuid:C2F41010-65B3-11d1-A29F-00AA00C14882";
constexpr std::string_view Rowset_Namespace = "urn:schemas-microsoft-com:rowset";
constexpr std::string_view Row_Namespace = "#RowsetSchema";

} // namespace recordset::format
