#include "data/ShelfStore.h"

#include "app/AppSettings.h"
#include "app/FileAccess.h"
#include "app/Log.h"
#include "app/QtText.h"
#include "app/SafeStorage.h"
#include "data/DesktopFiles.h"
#include "data/ShelfFile.h"

#include <QMimeDatabase>
#include <QPointer>
#include <QUuid>
#include <QVariantMap>

namespace navro {
namespace {

std::string newShelfID()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
}

QVariantMap itemMap(const ShelfItem& item, const QMimeDatabase& types)
{
    const QString path = toQString(item.path);
    std::error_code error;
    const bool exists = std::filesystem::exists(item.path, error);
    // By name only: reading each file's first bytes could block on a slow or special file.
    const QMimeType type = item.isFolder
                               ? types.mimeTypeForName(QStringLiteral("inode/directory"))
                               : types.mimeTypeForFile(path, QMimeDatabase::MatchExtension);
    const QString fileName = QString::fromStdString(std::filesystem::path(item.path).filename());
    return {
        {QStringLiteral("id"), toQString(item.id)},
        {QStringLiteral("path"), path},
        {QStringLiteral("url"), QUrl::fromLocalFile(path)},
        {QStringLiteral("name"), fileName.isEmpty() ? path : fileName},
        {QStringLiteral("isFolder"), item.isFolder},
        {QStringLiteral("exists"), exists},
        {QStringLiteral("isImage"), !item.isFolder && type.name().startsWith(u"image/")},
        {QStringLiteral("icon"), item.isFolder ? QStringLiteral("folder") : type.iconName()},
        {QStringLiteral("genericIcon"), type.genericIconName()},
    };
}

} // namespace

ShelfStore::ShelfStore(Clock& clock, const AppSettings& settings, DesktopFiles& files,
                       std::filesystem::path folder, QObject* parent)
    : QObject(parent), clock_(clock), settings_(settings), files_(files),
      folder_(std::move(folder)), retry_(clock.makeSlot())
{
    load();
    // A fresh shelf's first section is written with its first change.
    shelf_.ensureSection(defaultSectionName(), newShelfID);
    rebuildList();
}

ShelfStore::~ShelfStore() = default;

std::string ShelfStore::defaultSectionName() const
{
    return settings_.isArabic() ? "الرف" : "Shelf";
}

void ShelfStore::load()
{
    if (loadFrom(file(), false))
        return;
    std::error_code error;
    if (std::filesystem::exists(file(), error))
        return;
    // No "shelf.json" yet: an older version may have left the shelf as a property list. It is
    // read once; the JSON written now is what is read from then on.
    if (loadFrom(olderFile(), true) && !shelf_.sections().empty()) {
        logLine("moved the shelf from " + olderFile().filename().string() + " to " +
                file().filename().string());
        save();
    }
}

// True when the file was there and read.
bool ShelfStore::loadFrom(const std::filesystem::path& path, bool propertyList)
{
    const std::string name = path.filename().string();
    const FileRead read = readRegularFile(path, maxFileBytes);
    switch (read.status) {
    case FileRead::Status::missing:
        return false;
    case FileRead::Status::notRegular:
        logLine("could not read " + name + ": " + read.reason);
        return false;
    case FileRead::Status::tooLarge:
    case FileRead::Status::failed:
        logLine("could not read " + name + ": " + read.reason);
        SafeStorage::backUpUnreadable(path, clock_.now());
        return false;
    case FileRead::Status::ok:
        break;
    }
    const auto decoded = propertyList
                             ? decodeShelfPropertyList(read.bytes, clock_.now(), newShelfID)
                             : decodeShelf(read.bytes, clock_.now(), newShelfID);
    if (!decoded.sections) {
        logLine(name + " is damaged: " + decoded.error);
        SafeStorage::backUpUnreadable(path, clock_.now());
        return false;
    }
    if (decoded.skipped > 0)
        logLine(name + ": left out " + std::to_string(decoded.skipped) +
                " entries without a path or repeating one");
    shelf_ = Shelf(*decoded.sections);
    return true;
}

void ShelfStore::edited()
{
    save();
    rebuildList();
}

void ShelfStore::save()
{
    std::optional<FileError> error = makePrivateFolder(folder_);
    if (!error)
        error = writeFileAtomically(file(), encodeShelf(shelf_.sections()));
    const std::string name = file().filename().string();
    if (error) {
        if (saveError_.isEmpty())
            logLine("could not save " + name + ": " + *error + "; trying again");
        const QString reason = toQString(*error);
        if (reason != saveError_) {
            saveError_ = reason;
            emit saveErrorChanged();
        }
        retry_->schedule(retryDelay_, [this] { save(); });
        retryDelay_ = std::min(retryDelay_ * 2, longestRetry);
        return;
    }
    retry_->cancel();
    retryDelay_ = firstRetry;
    if (!saveError_.isEmpty()) {
        logLine("saved " + name + " again");
        saveError_.clear();
        emit saveErrorChanged();
    }
}

// The list's icons come from the MIME database, whose first use reads it from disk: the list is
// built when something first reads it, not while Navro starts.
void ShelfStore::rebuildList()
{
    if (!listBuilt_) {
        emit sectionsChanged();
        return;
    }
    QVariantList list = buildList();
    if (list == list_)
        return;
    list_ = std::move(list);
    emit sectionsChanged();
}

QVariantList ShelfStore::buildList() const
{
    const QMimeDatabase types;
    QVariantList list;
    for (const ShelfSection& section : shelf_.sections()) {
        QVariantList items;
        for (const ShelfItem& item : section.items)
            items.append(itemMap(item, types));
        list.append(QVariantMap{{QStringLiteral("id"), toQString(section.id)},
                                {QStringLiteral("name"), toQString(section.name)},
                                {QStringLiteral("items"), items}});
    }
    return list;
}

QVariantList ShelfStore::sectionList() const
{
    if (!listBuilt_) {
        list_ = buildList();
        listBuilt_ = true;
    }
    return list_;
}

int ShelfStore::itemCount() const
{
    std::size_t count = 0;
    for (const ShelfSection& section : shelf_.sections())
        count += section.items.size();
    return int(count);
}

std::string ShelfStore::sectionIDOrFirst(const QString& id) const
{
    if (id.isEmpty() && !shelf_.sections().empty())
        return shelf_.sections().front().id;
    return id.toStdString();
}

const ShelfItem* ShelfStore::findItem(const QString& id) const
{
    const std::string key = id.toStdString();
    const ShelfSection* section = shelf_.sectionOfItem(key);
    if (!section)
        return nullptr;
    for (const ShelfItem& item : section->items)
        if (item.id == key)
            return &item;
    return nullptr;
}

int ShelfStore::addUrls(const QString& sectionID, const QList<QUrl>& urls)
{
    QStringList paths;
    for (const QUrl& url : urls)
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    return addPaths(sectionID, paths);
}

int ShelfStore::addPaths(const QString& sectionID, const QStringList& paths)
{
    std::vector<ShelfEntry> entries;
    for (const QString& path : paths) {
        // Kept as the absolute, tidied path, so that one file is one entry however it came.
        const std::filesystem::path absolute =
            std::filesystem::path(path.toStdString()).lexically_normal();
        if (!absolute.is_absolute())
            continue;
        std::error_code error;
        entries.push_back({absolute.string(), std::filesystem::is_directory(absolute, error)});
    }
    const std::size_t added =
        shelf_.addItems(sectionIDOrFirst(sectionID), entries, clock_.now(), newShelfID);
    if (added > 0)
        edited();
    return int(added);
}

QString ShelfStore::addSection(const QString& name)
{
    const auto id = shelf_.addSection(name.toStdString(), newShelfID);
    if (!id)
        return {};
    edited();
    return toQString(*id);
}

bool ShelfStore::renameSection(const QString& id, const QString& name)
{
    if (!shelf_.renameSection(id.toStdString(), name.toStdString()))
        return false;
    edited();
    return true;
}

bool ShelfStore::removeSection(const QString& id)
{
    if (!shelf_.removeSection(id.toStdString()))
        return false;
    edited();
    return true;
}

bool ShelfStore::moveSection(const QString& id, int index)
{
    if (index < 0 || !shelf_.moveSection(id.toStdString(), std::size_t(index)))
        return false;
    edited();
    return true;
}

bool ShelfStore::removeItem(const QString& id)
{
    if (!shelf_.removeItem(id.toStdString()))
        return false;
    edited();
    return true;
}

bool ShelfStore::moveItem(const QString& id, const QString& sectionID, int index)
{
    if (index < 0 ||
        !shelf_.moveItem(id.toStdString(), sectionIDOrFirst(sectionID), std::size_t(index)))
        return false;
    edited();
    return true;
}

void ShelfStore::open(const QString& itemID)
{
    if (const ShelfItem* item = findItem(itemID))
        files_.open(toQString(item->path));
}

void ShelfStore::showInFolder(const QString& itemID)
{
    if (const ShelfItem* item = findItem(itemID))
        files_.showInFolder(toQString(item->path));
}

void ShelfStore::chooseFiles(const QString& sectionID)
{
    QPointer<ShelfStore> self(this);
    const QString title =
        settings_.isArabic() ? QStringLiteral("إضافة إلى الرف") : QStringLiteral("Add to Shelf");
    files_.pickFiles(title, [self, sectionID](const QStringList& paths) {
        if (self)
            self->addPaths(sectionID, paths);
    });
}

void ShelfStore::refresh()
{
    rebuildList();
}

} // namespace navro
