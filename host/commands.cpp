#include "commands.h"

#include "bulk_edit/bulk_commands.h"
#include "class_admin/class_commands.h"
#include "editing/editing_commands.h"
#include "store_admin/store_commands.h"
#include "translation/strings_commands.h"

namespace host {

Subcommands All_Commands() {
    Subcommands commands;
    for (const auto make :
         {Make_Edit_Command, Make_Play_Command, Make_Init_Command, Make_Find_Command, Make_Show_Command,
          Make_Export_Command, Make_Apply_Command, Make_History_Command, Make_Revert_Command,
          Make_Upgrade_Command, Make_Check_Command, Make_Picture_Command, Make_Register_Command,
          Make_Unregister_Command, Make_List_Command})
        commands.push_back(make());
    return commands;
}

std::vector<Group> Command_Groups() {
    return {{"store", "Look into a store, change many nodes, look after it"},
            {"strings", "Help with a string table"}};
}

} // namespace host
