#pragma once

#include <QAbstractListModel>
#include <QDateTime>
#include <QString>
#include <vector>

namespace navro {

// The to-dos as the Notes tab lists them: in display order, each with what its row shows.
// Changes arrive as moves, insertions, removals and changed rows rather than as a new list, so
// that a row keeps its place in the view, and the keyboard focus on it, while the list changes.
class TodoListModel final : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    struct Row {
        QString id;
        QString text;
        bool done = false;
        int priority = 0;
        QString priorityTitle;
        QDateTime due; // invalid without a deadline
        QString dueLabel;
        bool overdue = false;

        bool operator==(const Row&) const = default;
    };

    enum Role {
        IdRole = Qt::UserRole + 1,
        TextRole,
        DoneRole,
        PriorityRole,
        PriorityTitleRole,
        DueRole,
        DueLabelRole,
        OverdueRole,
    };

    using QAbstractListModel::QAbstractListModel;

    int count() const { return int(rows_.size()); }
    const std::vector<Row>& rows() const { return rows_; }
    // Makes the model show `rows`, in that order.
    void show(std::vector<Row> rows);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void countChanged();

private:
    std::vector<Row> rows_;
};

} // namespace navro
