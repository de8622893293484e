// The entries of a list control as Qt's views want them: read in place, however many there are.
#pragma once

#include <QAbstractListModel>

#include <unordered_map>

namespace toolkit {
class List_Control;
}

namespace window {

class Input;

class Entry_Model final : public QAbstractListModel {
public:
    Entry_Model(const toolkit::List_Control& list, const Input& input) : list(&list), input(input) {}

    // The entries have changed.
    void Reset();
    // The control goes: no entries from now on.
    void Detach();

    // The entry of the most characters, which is near enough to the widest and costs no measuring.
    QString Longest() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    // The next entry that starts with a text, as typing ahead asks for it, is found without a detour.
    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                          Qt::MatchFlags flags) const override;

private:
    const toolkit::List_Control* list;
    const Input& input;
    mutable std::unordered_map<int, QString>
        drawn;    // what was asked for last, for when the list may not be read
    int rows = 0; // as the views were told, until the next reset
};

} // namespace window
