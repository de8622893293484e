// The views of the lists.
#pragma once

#include <QComboBox>
#include <QListView>

#include <optional>

#include "control_view.h"
#include "entry_model.h"
#include "field_views.h"

namespace window {

class Combo_View final : public Control_View {
public:
    Combo_View(toolkit::Combo_Box& combo, QWidget* parent, Input& input);
    void Detach() override { entries.Detach(); }

private:
    class Combo;

    void Show() override;
    void Entries_Changed() override { entries.Reset(); }
    int Text_Width() const;

    toolkit::Combo_Box& combo;
    Combo& shown;
    Entry_Model entries;
    std::optional<Line_Editing> editing;
};

class List_View final : public Control_View {
public:
    List_View(toolkit::List_Box& list, QWidget* parent, Input& input);
    void Detach() override { entries.Detach(); }

private:
    void Show() override;
    void Entries_Changed() override { entries.Reset(); }

    toolkit::List_Box& list;
    QListView& shown;
    Entry_Model entries;
};

} // namespace window
