#include "folders/user_log.h"

#include "automation/number.h"
#include "folders/product_folders.h"
#include "shell/clock.h"
#include "shell/output_file.h"

namespace folders {

namespace {

constexpr Long Log_File_Number = 1;

String Line_Of(const Log_Entry& entry) {
    const String fields[] = {u"Internal Error",
                             shell::General_Date_Text(),
                             automation::Decimal_Text(entry.Configuration_A),
                             automation::Decimal_Text(entry.Configuration_B),
                             automation::Decimal_Text(entry.Configuration_C),
                             automation::Decimal_Text(entry.Code),
                             entry.Description,
                             entry.Location};
    String line;
    for (const String& field : fields)
        line.append(line.empty() ? u"" : u"\t").append(field);
    return line;
}

} // namespace

String User_Log_Path() {
    return Product_Data_Folder() + u"User_Log.txt";
}

void Append_To_User_Log(String_View path, const Log_Entry& entry) {
    shell::Open_For_Append(Log_File_Number, path);
    shell::Write_Quoted_Line(Log_File_Number, Line_Of(entry));
    shell::Close_File(Log_File_Number);
}

} // namespace folders
