// The line in the user log. Everything here fails silently: the log is written when reporting has failed.
#include "folders/user_log.h"

#include "busyness_rules.h"

namespace component {

void Busyness_Rules::Write_User_Log() {
    try {
        const String path = folders::User_Log_Path();
        folders::Log_Entry entry;
        const auto configuration =
            data::Read(*this, state.Config_Reader, &interfaces::CONFIG::Get_Configuration_Info);
        if (configuration->Record_Count() > 0) {
            entry.Configuration_A = configuration->Value(1).To_Integer();
            entry.Configuration_B = configuration->Value(5).To_Integer();
            entry.Configuration_C = configuration->Value(3).To_Integer();
        }
        configuration->Close();
        entry.Code = state.Error_Code;
        entry.Description = state.Error_Description;
        entry.Location = state.Error_Location;
        folders::Append_To_User_Log(path, entry);
    } catch (...) {
        // A file that was open by then stays open.
    }
}

} // namespace component
