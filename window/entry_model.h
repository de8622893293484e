// The entries of a list control as Qt's views want them: read in place, however many there are.
#pragma once

#include <QAbstractListModel>

namespace toolkit {
class List_Control;
}

namespace window {

class Entry_Model final : public QAbstractListModel {
public:
    explicit Entry_Model(const toolkit::List_Control& list) : list(&list) {}

    // The entries have changed.
    void Reset();
    // The control goes: no entries from now on.
    void Detach();

    // The entry of the most characters, which is near enough to the widest and costs no measuring.
    QString Longest() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    const toolkit::List_Control* list;
    int rows = 0; // as the views were told, until the next reset
};

} // namespace window
