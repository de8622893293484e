#include "entry_model.h"

#include "qt_text.h"
#include "toolkit/control.h"

namespace window {

void Entry_Model::Reset() {
    beginResetModel();
    rows = list ? list->Count() : 0;
    endResetModel();
}

void Entry_Model::Detach() {
    list = nullptr;
    Reset();
}

QString Entry_Model::Longest() const {
    const toolkit::String none;
    const toolkit::String* longest = &none;
    for (automation::Long at = 0; list && at < list->Count(); ++at)
        if (list->Item(at).size() > longest->size())
            longest = &list->Item(at);
    return To_Qt(*longest);
}

int Entry_Model::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows;
}

QVariant Entry_Model::data(const QModelIndex& index, int role) const {
    // Between a change and the reset the views may ask for an entry that is no more.
    if (!list || !index.isValid() || index.row() >= list->Count())
        return {};
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    return To_Qt(list->Item(index.row()));
}

} // namespace window
