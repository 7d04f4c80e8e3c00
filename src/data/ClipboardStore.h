#pragma once

#include "app/BackgroundRunner.h"
#include "app/Clock.h"
#include "data/ClipboardItem.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QImage;

namespace navro {

class AppSettings;
class FrontmostApplication;
class Pasteboard;

// The history of what the user copies: text, web links, images and files, newest first. Each
// change of the clipboard is looked at once; concealed content (password managers) and content
// that was there before Navro started are never recorded. The history is kept in
// "clipboard.plist" in the data folder, images as PNG files in its "ClipboardImages" folder.
//
// It sleeps between changes: the platform tells it of each one. Only where the platform cannot
// does it look at the clipboard's change counter every pollInterval.
class ClipboardStore : public QObject {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY itemsChanged)
    // The last write of the history failed; it is tried again until one succeeds.
    Q_PROPERTY(bool saveFailed READ saveFailed NOTIFY saveFailedChanged)

public:
    static constexpr Duration pollInterval = std::chrono::milliseconds(600);
    // A longer text is not recorded, so that one huge copy cannot crowd the history file.
    static constexpr std::size_t maxTextBytes = 1 << 20;
    // The history file is kept below this size (the oldest entries give way), and a larger one is
    // not read.
    static constexpr std::size_t maxHistoryFileBytes = 64 << 20;
    static constexpr std::size_t maxImageFileBytes = 256 << 20;
    static constexpr std::size_t minimumLimit = 10;

    // Takes note of what is on the clipboard now and reads the history from `folder` through
    // `runInBackground` (without one, at once). Until the history is read, nothing is recorded
    // and nothing is written: changes of the clipboard meanwhile are recorded after it, and
    // Navro's own entries (putImage, putFiles) go on top of it.
    ClipboardStore(AppSettings& settings, Clock& clock, Pasteboard& pasteboard,
                   FrontmostApplication& frontmost, std::filesystem::path folder,
                   const BackgroundRunner& runInBackground = {}, QObject* parent = nullptr);
    ~ClipboardStore() override;

    // Starts watching the clipboard (once).
    void start();
    // Looks at the clipboard once and records its content if it changed since the last look.
    void check();

    bool isLoaded() const { return loaded_; }
    const std::vector<ClipboardItem>& items() const { return items_; }
    int count() const { return int(items_.size()); }
    bool saveFailed() const { return saveFailed_; }

    std::filesystem::path historyFile() const { return folder_ / "clipboard.plist"; }
    std::filesystem::path imagesFolder() const { return folder_ / "ClipboardImages"; }

    // Puts the entry back on the clipboard (without recording it again) and moves it to the top.
    // False when no entry has that id.
    Q_INVOKABLE bool copy(const QString& id);
    // Navro's own content (a capture) put on the clipboard: recorded once, as copied from Navro,
    // and the clipboard's change that follows is not recorded again.
    void putImage(const QImage& image);
    void putFiles(const QStringList& paths);
    // Removes the entry and its image file. False when no entry has that id.
    Q_INVOKABLE bool remove(const QString& id);
    // Removes every entry and every image file.
    Q_INVOKABLE void clear();

signals:
    void itemsChanged();
    void saveFailedChanged();
    // An entry went back on the clipboard through copy().
    void copiedBack();

private:
    struct History;
    static History readHistory(const std::filesystem::path& folder, WallTime now);
    void finishLoading(History history);
    void removeStrayImages();
    void watch();
    void schedulePoll();
    bool isConcealed(const QStringList& types);
    ClipboardItem newItem(ClipboardKind kind, std::string text,
                          const std::optional<QString>& source) const;
    void record(ClipboardKind kind, std::string text, const std::optional<QString>& source);
    void recordImage(const QImage& image, const std::optional<QString>& source);
    void add(ClipboardItem item);
    void keepWithinLimit();
    std::optional<QImage> loadImage(const ClipboardItem& item) const;
    std::vector<ClipboardItem>::iterator find(const QString& id);
    // Keeps the history file within its size, publishes the list and saves it.
    void commit();
    // Writes the history; once it is on disk, deletes the image files of entries that left it.
    void save();
    void dropFromEnd(std::size_t keep);

    AppSettings& settings_;
    Clock& clock_;
    Pasteboard& pasteboard_;
    FrontmostApplication& frontmost_;
    std::filesystem::path folder_;
    std::vector<ClipboardItem> items_;
    std::uint64_t lastChangeCount_ = 0;
    bool ignoreNextChange_ = false;
    bool loaded_ = false;
    // Entries added before the history was read, to be written with it.
    bool changedBeforeLoading_ = false;
    bool started_ = false;
    std::unique_ptr<TaskSlot> poll_;
    // Image files of entries that are gone, deleted once a history without them is on disk: a
    // crash before then must not leave the old history pointing at deleted images.
    std::vector<std::string> imagesToDelete_;
    bool saveFailed_ = false;
    Duration retryDelay_;
    std::unique_ptr<TaskSlot> retry_;
};

} // namespace navro
