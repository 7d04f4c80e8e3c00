#include "data/ClipboardHistoryModel.h"

#include "app/Log.h"
#include "app/QtText.h"
#include "data/ClipboardStore.h"

namespace navro {
namespace {

// The kind each filter lets through; "all" is not listed.
const QHash<QString, QString> kindOfFilter{
    {QStringLiteral("text"), QStringLiteral("text")},
    {QStringLiteral("links"), QStringLiteral("link")},
    {QStringLiteral("images"), QStringLiteral("image")},
    {QStringLiteral("files"), QStringLiteral("file")},
};

} // namespace

ClipboardHistoryModel::ClipboardHistoryModel(const ClipboardStore& store, QObject* parent)
    : QAbstractListModel(parent), store_(store)
{
    connect(&store, &ClipboardStore::itemsChanged, this, &ClipboardHistoryModel::rebuild);
    rebuild();
}

void ClipboardHistoryModel::setFilter(const QString& filter)
{
    if (filter == filter_)
        return;
    if (filter != QLatin1String("all") && !kindOfFilter.contains(filter)) {
        logLine("no clipboard filter is named \"" + excerptForLog(filter.toStdString()) + "\"");
        return;
    }
    filter_ = filter;
    emit filterChanged();
    refilter();
}

void ClipboardHistoryModel::setQuery(const QString& query)
{
    if (query == query_)
        return;
    query_ = query;
    emit queryChanged();
    refilter();
}

void ClipboardHistoryModel::rebuild()
{
    rows_.clear();
    rows_.reserve(store_.items().size());
    for (const ClipboardItem& item : store_.items()) {
        Row row;
        row.id = toQString(item.id);
        row.kind = toQString(rawValue(item.kind));
        row.text = toQString(item.text);
        row.imageFile = toQString(item.imageFile.value_or(""));
        row.source = toQString(item.sourceApp.value_or(""));
        // In UTC: the views only measure ages from it, and local time would look the zone up again
        // for every row.
        row.date = QDateTime::fromMSecsSinceEpoch(item.date.time_since_epoch().count(), Qt::UTC);
        rows_.push_back(std::move(row));
    }
    refilter();
}

void ClipboardHistoryModel::refilter()
{
    const int before = count();
    beginResetModel();
    visible_.clear();
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (accepts(rows_[i]))
            visible_.push_back(i);
    endResetModel();
    if (count() != before)
        emit countChanged();
}

bool ClipboardHistoryModel::accepts(const Row& row) const
{
    if (filter_ != QLatin1String("all") && kindOfFilter.value(filter_) != row.kind)
        return false;
    // Letter case folds the same way in every locale of the two interface languages, so Qt's
    // locale-free folding serves.
    return query_.isEmpty() || row.text.contains(query_, Qt::CaseInsensitive) ||
           row.source.contains(query_, Qt::CaseInsensitive);
}

int ClipboardHistoryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ClipboardHistoryModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= count())
        return {};
    const Row& row = rows_[visible_[std::size_t(index.row())]];
    switch (role) {
    case itemIdRole:
        return row.id;
    case kindRole:
        return row.kind;
    case previewRole:
        return row.text.left(previewLength);
    case imageFileRole:
        return row.imageFile;
    case sourceRole:
        return row.source;
    case dateRole:
        return row.date;
    default:
        return {};
    }
}

QHash<int, QByteArray> ClipboardHistoryModel::roleNames() const
{
    return {{itemIdRole, "itemId"},       {kindRole, "kind"},     {previewRole, "preview"},
            {imageFileRole, "imageFile"}, {sourceRole, "source"}, {dateRole, "date"}};
}

} // namespace navro
