#include "data/TodoListModel.h"

#include <QPersistentModelIndex>
#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>

namespace navro {
namespace {

using Row = TodoListModel::Row;

Row row(const QString& id, const QString& text = {})
{
    Row r;
    r.id = id;
    r.text = text.isEmpty() ? id : text;
    return r;
}

QStringList idsIn(const TodoListModel& model)
{
    QStringList ids;
    for (int i = 0; i < model.rowCount(); ++i)
        ids << model.data(model.index(i), TodoListModel::IdRole).toString();
    return ids;
}

// Every change is announced as it happens, so a view's handle on a row (and the focus it holds)
// follows that row to its new place; rows that did not change are not redrawn.
TEST(TodoListModel, ChangesArriveAsMovesInsertionsAndRemovals)
{
    std::mt19937 random(11);
    TodoListModel model;
    std::map<QString, QPersistentModelIndex> handles;
    QStringList changedIds;
    int resets = 0;
    QObject::connect(&model, &QAbstractItemModel::dataChanged,
                     [&](const QModelIndex& from, const QModelIndex& to) {
                         for (int i = from.row(); i <= to.row(); ++i)
                             changedIds
                                 << model.data(model.index(i), TodoListModel::IdRole).toString();
                     });
    QObject::connect(&model, &QAbstractItemModel::modelReset, [&] { ++resets; });

    std::vector<Row> previous;
    for (int round = 0; round < 300; ++round) {
        // Some of ten to-dos, in any order, one in five with new text.
        std::vector<Row> next;
        for (int id = 0; id < 10; ++id)
            if (random() % 3 != 0)
                next.push_back(row(QString::number(id), random() % 5 == 0
                                                            ? QString("edited %1").arg(round)
                                                            : QString()));
        std::shuffle(next.begin(), next.end(), random);

        changedIds.clear();
        handles.clear();
        for (int i = 0; i < model.rowCount(); ++i)
            handles[idsIn(model)[i]] = QPersistentModelIndex(model.index(i));
        model.show(next);

        ASSERT_EQ(model.rows(), next);
        for (const auto& [id, handle] : handles) {
            const auto now =
                std::find_if(next.begin(), next.end(), [&](const Row& r) { return r.id == id; });
            if (now == next.end()) {
                ASSERT_FALSE(handle.isValid()) << "a removed row still has a handle";
                continue;
            }
            ASSERT_TRUE(handle.isValid());
            ASSERT_EQ(handle.row(), int(now - next.begin())) << "row " << id.toStdString();
            const auto before = std::find_if(previous.begin(), previous.end(),
                                             [&](const Row& r) { return r.id == id; });
            ASSERT_EQ(changedIds.contains(id), !(*before == *now)) << id.toStdString();
        }
        previous = next;
    }
    EXPECT_EQ(resets, 0);
}

TEST(TodoListModel, ExposesEachRowToTheViews)
{
    TodoListModel model;
    int counts = 0;
    QObject::connect(&model, &TodoListModel::countChanged, [&] { ++counts; });
    Row r = row("A", "Pay rent");
    r.done = true;
    r.priority = 3;
    r.priorityTitle = "High";
    r.due = QDateTime::fromSecsSinceEpoch(1700000000);
    r.dueLabel = "Today 9:00 PM";
    r.overdue = true;
    model.show({r});
    model.show({r});
    EXPECT_EQ(counts, 1);
    const QModelIndex index = model.index(0);
    const auto roles = model.roleNames();
    auto role = [&](const char* name) { return roles.key(name, -1); };
    EXPECT_EQ(model.data(index, role("todoId")).toString(), "A");
    EXPECT_EQ(model.data(index, role("text")).toString(), "Pay rent");
    EXPECT_EQ(model.data(index, role("done")).toBool(), true);
    EXPECT_EQ(model.data(index, role("priority")).toInt(), 3);
    EXPECT_EQ(model.data(index, role("priorityTitle")).toString(), "High");
    EXPECT_EQ(model.data(index, role("due")).toDateTime(), r.due);
    EXPECT_EQ(model.data(index, role("dueLabel")).toString(), "Today 9:00 PM");
    EXPECT_EQ(model.data(index, role("overdue")).toBool(), true);
    EXPECT_FALSE(model.data(model.index(1), role("text")).isValid());
}

} // namespace
} // namespace navro
