#pragma once

#include "app/Clock.h"
#include "data/Shelf.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantList>
#include <filesystem>
#include <memory>

namespace navro {

class AppSettings;
class DesktopFiles;

// Files and folders kept at hand in named sections, kept in "shelf.json" in the data folder.
// Every change is written at once; a write that fails is logged once, shown (saveError) and
// tried again until one succeeds. When there is no "shelf.json" but an older "shelf.plist",
// that one is read once and the shelf written as JSON.
//
// Operations name sections and items by id; an unknown id changes nothing. An empty section id
// means the first section.
class ShelfStore : public QObject {
    Q_OBJECT
    // [{id, name, items: [{id, path, url, name, isFolder, exists, isImage, icon}]}] in order.
    Q_PROPERTY(QVariantList sections READ sectionList NOTIFY sectionsChanged)
    Q_PROPERTY(int itemCount READ itemCount NOTIFY sectionsChanged)
    // Why the last write failed, empty while writing works.
    Q_PROPERTY(QString saveError READ saveError NOTIFY saveErrorChanged)

public:
    static constexpr std::size_t maxFileBytes = 16 << 20;
    static constexpr Duration firstRetry = std::chrono::seconds(5);
    static constexpr Duration longestRetry = std::chrono::minutes(5);

    ShelfStore(Clock& clock, const AppSettings& settings, DesktopFiles& files,
               std::filesystem::path folder, QObject* parent = nullptr);
    ~ShelfStore() override;

    const Shelf& shelf() const { return shelf_; }
    std::filesystem::path file() const { return folder_ / "shelf.json"; }
    std::filesystem::path olderFile() const { return folder_ / "shelf.plist"; }

    QVariantList sectionList() const;
    int itemCount() const;
    QString saveError() const { return saveError_; }

    // Local files among `urls` (others are ignored), added to the section; returns how many
    // were new there.
    Q_INVOKABLE int addUrls(const QString& sectionID, const QList<QUrl>& urls);
    Q_INVOKABLE int addPaths(const QString& sectionID, const QStringList& paths);
    // The new section's id; empty for a blank name.
    Q_INVOKABLE QString addSection(const QString& name);
    Q_INVOKABLE bool renameSection(const QString& id, const QString& name);
    Q_INVOKABLE bool removeSection(const QString& id);
    Q_INVOKABLE bool moveSection(const QString& id, int index);
    Q_INVOKABLE bool removeItem(const QString& id);
    Q_INVOKABLE bool moveItem(const QString& id, const QString& sectionID, int index);

    Q_INVOKABLE void open(const QString& itemID);
    Q_INVOKABLE void showInFolder(const QString& itemID);
    // Asks for files and adds them to the section.
    Q_INVOKABLE void chooseFiles(const QString& sectionID);
    // Looks again at which files still exist (the tab calls it when it is shown).
    Q_INVOKABLE void refresh();

signals:
    void sectionsChanged();
    void saveErrorChanged();

private:
    void load();
    bool loadFrom(const std::filesystem::path& path, bool propertyList);
    void edited();
    void save();
    std::string sectionIDOrFirst(const QString& id) const;
    const ShelfItem* findItem(const QString& id) const;
    std::string defaultSectionName() const;
    void rebuildList();
    QVariantList buildList() const;

    Clock& clock_;
    const AppSettings& settings_;
    DesktopFiles& files_;
    std::filesystem::path folder_;
    Shelf shelf_;
    mutable QVariantList list_;
    mutable bool listBuilt_ = false;
    QString saveError_;
    Duration retryDelay_ = firstRetry;
    std::unique_ptr<TaskSlot> retry_;
};

} // namespace navro
