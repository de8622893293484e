#include "run_setup/bundled_modules.h"

#include <filesystem>

#include "classes/class_table.h"
#include "classes/registration.h"
#include "process/errors.h"
#include "style_node/busyness_rules.h"
#include "toolkit/display_factory.h"

namespace host {

void Offer_Bundled_Modules() {
    const std::filesystem::path folder = classes::Platform_Folder() + "/style-node";
    using Editor = style_node::_Busyness_Rules;
    classes::Offer_Module(Editor::Program_Identity, Editor::Class_Identity, folder / "KOR_STYLE_Node.so");
    classes::Offer_Module(toolkit::Window_Identity, toolkit::Window_Class, folder / "Style_Window.so");
    classes::Offer_Module(toolkit::Terminal_Identity, toolkit::Terminal_Class, folder / "Style_Terminal.so");
    const auto stand_ins = folder / "Product_Stand_Ins.so";
    if (!exists(stand_ins))
        return;
    try {
        classes::Offer_Classes_Of(stand_ins);
    } catch (const classes::Registration_Error& error) {
        throw Start_Error(error.what());
    }
}

} // namespace host
