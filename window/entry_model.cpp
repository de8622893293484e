#include "entry_model.h"

#include <new>

#include "control_view.h"
#include "qt_text.h"
#include "toolkit/control.h"

namespace window {

void Entry_Model::Reset() {
    beginResetModel();
    drawn.clear();
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
    const automation::Long count = list && input.May_Read() ? list->Count() : 0;
    for (automation::Long at = 0; at < count; ++at)
        if (list->Item(at).size() > longest->size())
            longest = &list->Item(at);
    return To_Qt(*longest);
}

int Entry_Model::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows;
}

QModelIndexList Entry_Model::match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                   Qt::MatchFlags flags) const {
    if (role != Qt::DisplayRole || hits != 1 || flags != (Qt::MatchStartsWith | Qt::MatchWrap))
        return QAbstractListModel::match(start, role, value, hits, flags);
    const automation::Long count = list && input.May_Read() ? list->Count() : 0;
    const QString wanted = value.toString();
    for (automation::Long step = 0; step < count; ++step) {
        const automation::Long row = (start.row() + step) % count;
        if (QStringView(list->Item(row)).startsWith(wanted, Qt::CaseInsensitive))
            return {index(row, 0)};
    }
    return {};
}

// Qt lets nothing be thrown here: without memory an entry is empty.
QVariant Entry_Model::data(const QModelIndex& index, int role) const try {
    if (!list || !index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    if (!input.May_Read()) {
        const auto known = drawn.find(index.row());
        return known == drawn.end() ? QString() : known->second;
    }
    // Between a change and the reset the views may ask for an entry that is no more.
    if (index.row() >= list->Count())
        return {};
    constexpr int More_Than_A_View_Shows = 200;
    if (drawn.size() > More_Than_A_View_Shows)
        drawn.clear();
    return drawn.insert_or_assign(index.row(), To_Qt(list->Item(index.row()))).first->second;
} catch (const std::bad_alloc&) {
    return {};
}

} // namespace window
