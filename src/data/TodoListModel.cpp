#include "data/TodoListModel.h"

#include <QSet>
#include <algorithm>

namespace navro {

void TodoListModel::show(std::vector<Row> rows)
{
    const int before = count();
    QSet<QString> wanted;
    for (const Row& row : rows)
        wanted.insert(row.id);

    // Gone first, from the bottom, so the positions above stay valid.
    for (int index = count() - 1; index >= 0; --index) {
        if (wanted.contains(rows_[std::size_t(index)].id))
            continue;
        beginRemoveRows({}, index, index);
        rows_.erase(rows_.begin() + index);
        endRemoveRows();
    }
    // Then each place from the top: already right, moved up from further down, or new.
    for (int index = 0; index < int(rows.size()); ++index) {
        Row& row = rows[std::size_t(index)];
        const auto found = std::find_if(rows_.begin() + index, rows_.end(),
                                        [&](const Row& shown) { return shown.id == row.id; });
        if (found == rows_.end()) {
            beginInsertRows({}, index, index);
            rows_.insert(rows_.begin() + index, std::move(row));
            endInsertRows();
            continue;
        }
        const int from = int(found - rows_.begin());
        if (from != index) {
            beginMoveRows({}, from, from, {}, index);
            std::rotate(rows_.begin() + index, rows_.begin() + from, rows_.begin() + from + 1);
            endMoveRows();
        }
        if (!(rows_[std::size_t(index)] == row)) {
            rows_[std::size_t(index)] = std::move(row);
            emit dataChanged(this->index(index), this->index(index));
        }
    }
    if (count() != before)
        emit countChanged();
}

int TodoListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant TodoListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() < 0 || index.row() >= count())
        return {};
    const Row& row = rows_[std::size_t(index.row())];
    switch (role) {
    case IdRole:
        return row.id;
    case Qt::DisplayRole:
    case TextRole:
        return row.text;
    case DoneRole:
        return row.done;
    case PriorityRole:
        return row.priority;
    case PriorityTitleRole:
        return row.priorityTitle;
    case DueRole:
        return row.due;
    case DueLabelRole:
        return row.dueLabel;
    case OverdueRole:
        return row.overdue;
    default:
        return {};
    }
}

QHash<int, QByteArray> TodoListModel::roleNames() const
{
    return {{IdRole, "todoId"},
            {TextRole, "text"},
            {DoneRole, "done"},
            {PriorityRole, "priority"},
            {PriorityTitleRole, "priorityTitle"},
            {DueRole, "due"},
            {DueLabelRole, "dueLabel"},
            {OverdueRole, "overdue"}};
}

} // namespace navro
