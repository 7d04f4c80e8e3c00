#pragma once

#include <QAbstractListModel>
#include <QDateTime>
#include <QString>
#include <vector>

namespace navro {

class ClipboardStore;

// The clipboard history as the Clipboard tab lists it: newest first, narrowed to one kind by the
// filter and to the entries whose text, or else whose source application, contains the query
// (letter case aside).
class ClipboardHistoryModel final : public QAbstractListModel {
    Q_OBJECT
    // "all", "text", "links", "images" or "files".
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
    // Taken as typed: not trimmed.
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        itemIdRole = Qt::UserRole + 1,
        kindRole,
        previewRole,
        imageFileRole,
        sourceRole,
        dateRole
    };

    // The longest text a row carries: the row shows two lines of it at most.
    static constexpr qsizetype previewLength = 400;

    explicit ClipboardHistoryModel(const ClipboardStore& store, QObject* parent = nullptr);

    QString filter() const { return filter_; }
    void setFilter(const QString& filter);
    QString query() const { return query_; }
    void setQuery(const QString& query);
    int count() const { return int(visible_.size()); }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void filterChanged();
    void queryChanged();
    void countChanged();

private:
    struct Row {
        QString id;
        QString kind;
        QString text;
        QString imageFile;
        QString source;
        QDateTime date;
    };

    void rebuild();
    void refilter();
    bool accepts(const Row& row) const;

    const ClipboardStore& store_;
    QString filter_ = QStringLiteral("all");
    QString query_;
    std::vector<Row> rows_;
    std::vector<std::size_t> visible_;
};

} // namespace navro
