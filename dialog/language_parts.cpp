// The texts, positions and widths that come from the string table, and the lists of usual values.
#include <cmath>

#include "automation/number.h"
#include "dialog/dlg_gui.h"

namespace dialog {

void dlgGUI::Load_Language_Dependant_Parts() {
    // One step for each text, in ascending order of the text ids. A text of a pair or a triple that is
    // not there stops before its control is moved.
    using Step = std::function<void(const String& text)>;
    auto caption = [](toolkit::Control& control) -> Step {
        return [&control](const String& text) { control.Set_Caption(text); };
    };
    auto caption_kept = [](toolkit::Control& control, String& kept) -> Step {
        return [&control, &kept](const String& text) {
            control.Set_Caption(text);
            kept = text;
        };
    };
    auto keep = [](String& kept) -> Step { return [&kept](const String& text) { kept = text; }; };
    auto left_rounded = [](toolkit::Control& control) -> Step {
        return [&control](const String& text) { control.Set_Left(automation::To_Integer(text)); };
    };
    auto left_floored = [](toolkit::Control& control) -> Step {
        return [&control](const String& text) {
            control.Set_Left(automation::To_Long(std::floor(automation::To_Double(text))));
        };
    };
    Integer button_left = 0;
    auto left_kept = [&button_left]() -> Step {
        return [&button_left](const String& text) { button_left = automation::To_Integer(text); };
    };
    auto width_moves = [&button_left](toolkit::Control& button) -> Step {
        return [&button_left, &button](const String& text) {
            button.Move(button_left, {}, automation::To_Integer(text));
        };
    };
    auto right_of = [](const toolkit::Control& control) { return control.Left() + control.Width(); };
    auto beside = [right_of](toolkit::Control& control, const toolkit::Control& neighbour) -> Step {
        return [&control, &neighbour, right_of](const String& text) {
            control.Move(right_of(neighbour), {}, automation::To_Integer(text));
        };
    };

    const Step steps[] = {
        [this](const String& text) {
            Set_Caption(With_Placeholder(text, The_Owner().Node_Type_Name_of(Style_Node_Type)));
        },
        [this](const String& text) {
            const Integer width = automation::To_Integer(text);
            const toolkit::Size screen_size = toolkit::screen::Screen_Size();
            Move({(screen_size.Width - width) / 2, (screen_size.Height - Place().Height) / 2, width,
                  Place().Height});
        },
        caption(lblDescription),
        left_rounded(txtDescription),
        caption(fraSupervised),
        caption(optBlind),
        caption(optPartial),
        caption(optFull),
        caption(optDialContinue),
        caption(optEnhanced),
        caption(lblHookFlash),
        left_floored(cmbHookFlash),
        caption(lblThreshold),
        left_floored(cmbThreshold),
        caption(lblTransfer),
        left_floored(txtTransfer),
        caption(lblDisconnect),
        left_floored(txtDisconnect),
        caption(lblRetrieve),
        left_floored(txtRetrieve),
        caption(lblBusyRetry),
        left_floored(cmbBusyRetry),
        caption(lblNumRetries),
        left_floored(cmbNumRetries),
        caption(lblRingLimit),
        left_floored(cmbRingLimit),
        caption_kept(lblBusyOn, busy_on_caption),
        keep(busy1_on_caption),
        left_floored(cmbBusyOn),
        caption_kept(lblBusyOff, busy_off_caption),
        keep(busy2_on_caption),
        left_floored(cmbBusyOff),
        caption(lblRingOn),
        left_floored(cmbRingOn),
        caption(lblRingOff),
        left_floored(cmbRingOff),
        caption(cmdOK),
        left_kept(),
        width_moves(cmdOK),
        caption(cmdCancel),
        left_kept(),
        width_moves(cmdCancel),
        caption(cmdApply),
        left_kept(),
        width_moves(cmdApply),
        caption(cmdHelp),
        left_kept(),
        width_moves(cmdHelp),
        [this, right_of](const String& text) {
            cmdFirst.Set_Left(automation::To_Integer(text));
            cmdPrevious.Set_Left(right_of(cmdFirst));
        },
        beside(cmbNode, cmdPrevious),
        [this, beside, right_of](const String& text) {
            beside(lblRecordPosition, cmbNode)(text);
            cmdNext.Set_Left(right_of(lblRecordPosition));
            cmdLast.Set_Left(right_of(cmdNext));
        },
    };

    if (!owner)
        return;
    Trapped(*owner, u"Load_Language_Dependant_Parts", Object_Index::dlgGUI, [&] {
        Long text_id = 0;
        for (const Step& step : steps) {
            const String text = The_Owner().Language_Text(text_id++);
            if (text.empty())
                return;
            step(text);
        }
    });
}

void dlgGUI::Load_ComboBoxes() {
    if (!owner)
        return;
    Trapped(*owner, u"Load_ComboBoxes", Object_Index::dlgGUI, [this] {
        for (Integer count = 1; count <= 30; ++count) {
            const String text = automation::Decimal_Text(count);
            cmbBusyRetry.Add_Item(text);
            cmbNumRetries.Add_Item(text);
            if (count <= 20)
                cmbRingLimit.Add_Item(text);
        }
        for (Integer length = 50; length <= 10000; length = automation::Add(length, Integer{50})) {
            const String text = automation::Decimal_Text(length);
            if (length <= 1500) {
                cmbBusyOn.Add_Item(text);
                cmbBusyOff.Add_Item(text);
            }
            if (length <= 2000)
                cmbHookFlash.Add_Item(text);
            cmbRingOn.Add_Item(text);
            cmbRingOff.Add_Item(text);
        }
        The_Owner().Load_All_Threshold();
    });
}

} // namespace dialog
