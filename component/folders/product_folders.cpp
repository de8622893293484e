#include "folders/product_folders.h"

#include <array>
#include <vector>

#include "automation/text.h"
#include "shell/eight_bit.h"
#include "shell/file_system.h"
#include "shell/special_folders.h"

namespace folders {

namespace {

constexpr String_View Company_Folder = u"Velmorant";
constexpr String_View Product_Folder = u"ZEBRIX";
constexpr String_View Separator = u"\\";
constexpr String_View Shell_Folders_Key =
    u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr std::uint32_t First_Buffer_Size = 1024;

String Below(String common_folder) {
    return common_folder.append(Separator)
        .append(Company_Folder)
        .append(Separator)
        .append(Product_Folder)
        .append(Separator);
}

class Item_List {
public:
    explicit Item_List(Long folder_id) {
        found = shell::SHGetSpecialFolderLocation(nullptr, folder_id, &list) == automation::Status_OK;
    }
    Item_List(const Item_List&) = delete;
    Item_List& operator=(const Item_List&) = delete;
    ~Item_List() { shell::CoTaskMemFree(list); }

    String Path() const {
        std::array<char, shell::Path_Buffer_Size> buffer;
        buffer.fill(' ');
        if (!found || !shell::SHGetPathFromIDListA(list, buffer.data()))
            return {};
        const std::string_view bytes(buffer.data(), buffer.size());
        return shell::From_Eight_Bit(bytes.substr(0, bytes.find('\0')));
    }

private:
    shell::Item_Id_List* list = nullptr;
    bool found = false;
};

class Open_Key {
public:
    Open_Key(shell::Registry_Key root, String_View path) {
        const Long status =
            shell::RegOpenKeyExA(root, automation::To_UTF8(path).c_str(), 0, shell::KEY_READ, &key);
        is_open = status == shell::registry_status::Success;
    }
    Open_Key(const Open_Key&) = delete;
    Open_Key& operator=(const Open_Key&) = delete;
    ~Open_Key() {
        if (is_open)
            shell::RegCloseKey(key);
    }

    bool Is_Open() const { return is_open; }
    shell::Registry_Key Key() const { return key; }

private:
    shell::Registry_Key key = 0;
    bool is_open = false;
};

// What a query left behind; type 0 when there is no such value.
struct Queried_Value {
    std::uint32_t Type = shell::registry_type::None;
    std::uint32_t Size = First_Buffer_Size;
    std::vector<std::uint8_t> Buffer = std::vector<std::uint8_t>(First_Buffer_Size);

    Long Query(const Open_Key& key, const std::string& name) {
        return shell::RegQueryValueExA(key.Key(), name.c_str(), nullptr, &Type, Buffer.data(), &Size);
    }
};

Queried_Value Query(const Open_Key& key, const std::string& name) {
    Queried_Value value;
    if (value.Query(key, name) == shell::registry_status::More_Data) {
        value.Buffer.resize(value.Size);
        value.Query(key, name);
    }
    return value;
}

// Without its last `zeros` bytes.
Variant Text_Of(const Queried_Value& value, std::uint32_t zeros) {
    if (value.Size < zeros)
        automation::Raise(automation::run_time::Invalid_Argument);
    const std::string bytes(value.Buffer.begin(), value.Buffer.begin() + (value.Size - zeros));
    return shell::From_Eight_Bit(bytes);
}

Variant Number_Of(const Queried_Value& value) {
    std::uint32_t number = 0;
    for (std::size_t index = 0; index < sizeof number; ++index)
        number |= std::uint32_t{value.Buffer[index]} << (8 * index);
    return static_cast<Long>(number);
}

Variant Bytes_Of(const Queried_Value& value) {
    return Variant::Bytes({value.Buffer.begin(), value.Buffer.begin() + value.Size});
}

Variant Converted(const Queried_Value& value) {
    switch (value.Type) {
    case shell::registry_type::Text:
    case shell::registry_type::Expandable_Text:
        return Text_Of(value, 1);
    case shell::registry_type::Binary:
        return Bytes_Of(value);
    case shell::registry_type::Number:
        return Number_Of(value);
    case shell::registry_type::Multiple_Texts:
        return Text_Of(value, 2);
    default:
        throw automation::Failure(Unsupported_Value_Type, u"Unsupported value type");
    }
}

} // namespace

String Product_Data_Folder() {
    String path = Below(Special_Folder_Path(shell::Common_App_Data_Folder));
    return shell::Folder_Exists(path) ? path : Below(Common_AppData_From_Registry());
}

String Special_Folder_Path(Long folder_id) {
    return Item_List(folder_id).Path();
}

String Common_AppData_From_Registry() {
    return Read_Registry_Value(shell::HKEY_LOCAL_MACHINE, Shell_Folders_Key, u"Common AppData", Variant(u""))
        .To_Text();
}

Variant Read_Registry_Value(shell::Registry_Key root, String_View key_path, String_View value_name,
                            const std::optional<Variant>& default_value) {
    const Open_Key key(root, key_path);
    if (!key.Is_Open())
        return default_value.value_or(Variant());
    return Converted(Query(key, automation::To_UTF8(value_name)));
}

} // namespace folders
