#include "data/ClipboardStore.h"

#include "ClipboardItemPrinter.h"
#include "FakePasteboard.h"
#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "QtTestApplication.h"
#include "TemporaryFolder.h"
#include "app/AppSettings.h"
#include "app/FileAccess.h"
#include "app/Log.h"
#include "app/SafeStorage.h"
#include "app/Version.h"
#include "data/ClipboardHistoryFile.h"

#include <QUuid>
#include <gtest/gtest.h>

namespace navro {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

QImage solidImage(QColor color, QSize size = {4, 3})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

class ClipboardStoreTest : public ::testing::Test {
protected:
    void SetUp() override { testApplication(); }

    std::unique_ptr<ClipboardStore> startStore()
    {
        auto store =
            std::make_unique<ClipboardStore>(settings, clock, pasteboard, frontmost, folder);
        store->start();
        return store;
    }

    static std::vector<std::string> texts(const ClipboardStore& store)
    {
        std::vector<std::string> result;
        for (const ClipboardItem& item : store.items())
            result.push_back(item.text);
        return result;
    }

    std::vector<ClipboardItem> onDisk() const
    {
        const auto history = decodeClipboardHistory(readBytes(folder / "clipboard.plist"));
        EXPECT_TRUE(history) << "clipboard.plist is not readable";
        return history ? history->items : std::vector<ClipboardItem>{};
    }

    std::vector<std::string> imageFiles() const
    {
        std::vector<std::string> names;
        std::error_code error;
        for (const auto& entry : fs::directory_iterator(folder / "ClipboardImages", error))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    // Holds each reading of the history back until the test runs it.
    BackgroundRunner heldBack(std::vector<std::function<void()>>& pending)
    {
        return [&pending](std::function<void()> work, std::function<void()> then) {
            pending.push_back([work, then] {
                work();
                then();
            });
        };
    }

    void copyTexts(int count)
    {
        for (int i = 0; i < count; ++i)
            pasteboard.copy(FakePasteboard::text(QString("text %1").arg(i)));
    }

    TemporaryFolder temporary;
    const fs::path folder = temporary / "Navro";
    FakeSettingsStore settingsStore;
    AppSettings settings{settingsStore, [] { return QStringList{"en-GB"}; }};
    ManualClock clock;
    FakePasteboard pasteboard;
    FakeFrontmostApplication frontmost;
};

TEST_F(ClipboardStoreTest, RecordsEachKindNewestFirstWithItsSourceAndTime)
{
    auto store = startStore();
    frontmost.name = "Text Editor";
    frontmost.arabicName = "محرر النصوص";
    pasteboard.copy(FakePasteboard::text("  hello\n"));
    clock.advance(1s);
    frontmost.name.reset();
    frontmost.arabicName.reset();
    pasteboard.copy(FakePasteboard::text("https://example.com/a"));
    clock.advance(1s);
    settings.setLanguage(AppLanguage::arabic);
    frontmost.name = "Files";
    frontmost.arabicName = "الملفات";
    pasteboard.copy(FakePasteboard::files({"/home/u/a.txt", "/home/u/b c.png"}));
    clock.advance(1s);
    pasteboard.copy(FakePasteboard::image(solidImage(Qt::red)));

    const auto& items = store->items();
    ASSERT_EQ(items.size(), 4u);
    EXPECT_EQ(items[0].kind, ClipboardKind::image);
    EXPECT_EQ(items[0].text, "4 × 3");
    EXPECT_EQ(items[1].kind, ClipboardKind::file);
    EXPECT_EQ(items[1].text, "/home/u/a.txt\n/home/u/b c.png");
    EXPECT_EQ(items[1].sourceApp, "الملفات");
    EXPECT_EQ(items[2].kind, ClipboardKind::link);
    EXPECT_EQ(items[2].sourceApp, std::nullopt);
    EXPECT_EQ(items[3].kind, ClipboardKind::text);
    EXPECT_EQ(items[3].text, "hello");
    EXPECT_EQ(items[3].sourceApp, "Text Editor");
    EXPECT_EQ(items[3].date + 3s, clock.now());
    EXPECT_EQ(items[0].date, clock.now());
    for (const ClipboardItem& item : items)
        EXPECT_EQ(canonicalUuid(item.id), item.id);
    EXPECT_EQ(onDisk(), items);

    // The image is a PNG named after the entry, with the copied pixels.
    ASSERT_EQ(items[0].imageFile, items[0].id + ".png");
    const QImage kept(QString::fromStdString((store->imagesFolder() / *items[0].imageFile)));
    EXPECT_EQ(kept.size(), QSize(4, 3));
    EXPECT_EQ(kept.pixelColor(2, 1), QColor(Qt::red));
}

TEST_F(ClipboardStoreTest, FilesComeBeforeTextAndTextBeforeAnImage)
{
    auto store = startStore();
    FakePasteboard::Content everything = FakePasteboard::files({"/tmp/x"});
    everything.text = "the text";
    everything.image = solidImage(Qt::blue);
    pasteboard.copy(everything);
    everything.files.clear();
    pasteboard.copy(everything);
    everything.text = " \n ";
    pasteboard.copy(everything);
    pasteboard.copy(FakePasteboard::Content{}); // nothing readable at all

    ASSERT_EQ(store->items().size(), 3u);
    EXPECT_EQ(store->items()[0].kind, ClipboardKind::image);
    EXPECT_EQ(store->items()[1].text, "the text");
    EXPECT_EQ(store->items()[2].kind, ClipboardKind::file);
}

TEST_F(ClipboardStoreTest, WhatWasThereAtLaunchOrCopiedWithHistoryOffIsNeverRecorded)
{
    pasteboard.copy(FakePasteboard::text("before Navro"));
    CapturingLogSink log;
    auto store = startStore();
    store->check();
    EXPECT_TRUE(store->items().empty());
    EXPECT_TRUE(log.lines.empty()) << "a missing history is an empty one";
    EXPECT_FALSE(fs::exists(folder));

    settings.setClipboardEnabled(false);
    pasteboard.copy(FakePasteboard::text("while off"));
    settings.setClipboardEnabled(true);
    store->check();
    EXPECT_TRUE(store->items().empty());
    EXPECT_FALSE(fs::exists(store->historyFile()));
    pasteboard.copy(FakePasteboard::text("on again"));
    EXPECT_EQ(texts(*store), (std::vector<std::string>{"on again"}));
}

TEST_F(ClipboardStoreTest, ARepeatMovesToTheTopAsANewEntryButImagesAreAlwaysNew)
{
    auto store = startStore();
    pasteboard.copy(FakePasteboard::text("same"));
    const ClipboardItem first = store->items()[0];
    clock.advance(5s);
    pasteboard.copy(FakePasteboard::text("other"));
    pasteboard.copy(FakePasteboard::text("  same  "));
    EXPECT_EQ(texts(*store), (std::vector<std::string>{"same", "other"}));
    EXPECT_NE(store->items()[0].id, first.id);
    EXPECT_EQ(store->items()[0].date, first.date + 5s);

    // The same words as text and as a file list are different entries.
    pasteboard.copy(FakePasteboard::files({"same"}));
    EXPECT_EQ(store->items().size(), 3u);

    pasteboard.copy(FakePasteboard::image(solidImage(Qt::green)));
    pasteboard.copy(FakePasteboard::image(solidImage(Qt::green)));
    EXPECT_EQ(store->items().size(), 5u);
    EXPECT_EQ(imageFiles().size(), 2u);
}

TEST_F(ClipboardStoreTest, ConcealedContentIsConsumedButNeverRecorded)
{
    struct Case {
        QStringList types;
        QByteArray hint;
        bool recorded;
    };
    const Case cases[] = {
        {{"org.nspasteboard.ConcealedType"}, {}, false},
        {{"org.nspasteboard.TransientType"}, {}, false},
        {{"org.nspasteboard.AutoGeneratedType"}, {}, false},
        {{"com.agilebits.onepassword"}, {}, false},
        {{"com.bitwarden.desktop"}, {}, false},
        {{"com.apple.passwords"}, {}, false},
        {{"x-kde-passwordManagerHint"}, "secret", false},
        {{"x-kde-passwordManagerHint"}, "secret\n", false},
        {{"x-kde-passwordManagerHint"}, "not secret", true},
        {{"x-kde-passwordManagerHint"}, "", true},
        {{"org.nspasteboard.concealedtype"}, {}, true}, // type names are exact
    };
    for (const Case& c : cases) {
        auto store = startStore();
        FakePasteboard::Content content = FakePasteboard::text("p4ssw0rd", c.types);
        content.data.insert("x-kde-passwordManagerHint", c.hint);
        pasteboard.copy(content);
        store->check();
        EXPECT_EQ(store->items().size(), c.recorded ? 1u : 0u) << c.types.join(",").toStdString();
        if (!c.recorded) {
            EXPECT_EQ(readBytes(store->historyFile()).find("p4ssw0rd"), std::string::npos);
        }
        store->clear();
    }
}

TEST_F(ClipboardStoreTest, KeepsTheLimitButNeverFewerThanTenAndDeletesDroppedImages)
{
    struct Case {
        int limit;
        std::size_t kept;
    };
    for (const Case c : {Case{5, 10}, Case{-1, 10}, Case{10, 10}, Case{12, 12}}) {
        settings.setClipboardLimit(c.limit);
        auto store = startStore();
        pasteboard.copy(FakePasteboard::image(solidImage(Qt::yellow)));
        const std::string imageFile = *store->items()[0].imageFile;
        copyTexts(20);
        EXPECT_EQ(store->items().size(), c.kept) << c.limit;
        EXPECT_EQ(store->items().front().text, "text 19");
        EXPECT_EQ(onDisk().size(), c.kept);
        EXPECT_FALSE(fs::exists(store->imagesFolder() / imageFile)) << c.limit;
        store->clear();
    }
}

TEST_F(ClipboardStoreTest, CopyingBackRecordsNothingAndMovesTheEntryToTheTop)
{
    for (const bool deferred : {false, true}) {
        pasteboard.defersOwnChanges = deferred;
        auto store = startStore();
        pasteboard.copy(FakePasteboard::files({"/tmp/a", "/tmp/b"}));
        pasteboard.copy(FakePasteboard::image(solidImage(Qt::cyan)));
        pasteboard.copy(FakePasteboard::text("words"));
        const std::vector<ClipboardItem> before = store->items();

        ASSERT_TRUE(store->copy(QString::fromStdString(before[2].id)));
        pasteboard.deliverDeferred();
        store->check();
        EXPECT_EQ(pasteboard.content().files, (QStringList{"/tmp/a", "/tmp/b"}));
        ASSERT_EQ(store->items().size(), 3u);
        EXPECT_EQ(store->items()[0], before[2]); // same id and date
        EXPECT_EQ(onDisk()[0], before[2]);

        ASSERT_TRUE(store->copy(QString::fromStdString(before[1].id)));
        pasteboard.deliverDeferred();
        ASSERT_TRUE(pasteboard.content().image);
        EXPECT_EQ(pasteboard.content().image->pixelColor(0, 0), QColor(Qt::cyan));

        ASSERT_TRUE(store->copy(QString::fromStdString(before[0].id).toLower()));
        pasteboard.deliverDeferred();
        EXPECT_EQ(pasteboard.content().text, "words");
        EXPECT_EQ(store->items(), before);
        EXPECT_EQ(pasteboard.writes, (std::vector<std::string>{"files", "image", "string"}));

        // The next copy of another program is recorded as usual.
        pasteboard.copy(FakePasteboard::text("next"));
        EXPECT_EQ(store->items().size(), 4u);
        EXPECT_FALSE(store->copy("5F1D2C3B-4A59-4687-9A1B-2C3D4E5F6A7B"));
        EXPECT_EQ(store->items().size(), 4u);
        store->clear();
        pasteboard.writes.clear();
    }
}

TEST_F(ClipboardStoreTest, NavrosOwnCapturesAreRecordedOnceAsFromNavro)
{
    for (const bool deferred : {false, true}) {
        pasteboard.defersOwnChanges = deferred;
        auto store = startStore();
        store->putImage(solidImage(Qt::magenta));
        pasteboard.deliverDeferred();
        store->check();
        store->putFiles({"/tmp/Recording.mp4"});
        pasteboard.deliverDeferred();
        store->check();
        ASSERT_EQ(store->items().size(), 2u);
        EXPECT_EQ(store->items()[0].kind, ClipboardKind::file);
        EXPECT_EQ(store->items()[0].text, "/tmp/Recording.mp4");
        EXPECT_EQ(store->items()[1].kind, ClipboardKind::image);
        EXPECT_EQ(store->items()[1].sourceApp, std::optional<std::string>("Navro"));
        EXPECT_EQ(pasteboard.content().files, QStringList{"/tmp/Recording.mp4"});
        store->clear();
    }
}

TEST_F(ClipboardStoreTest, AnotherProgramsCopyRightAfterACopyBackIsStillRecorded)
{
    pasteboard.defersOwnChanges = true;
    auto store = startStore();
    pasteboard.copy(FakePasteboard::text("old"));
    pasteboard.copy(FakePasteboard::text("newer"));
    ASSERT_TRUE(store->copy(QString::fromStdString(store->items()[1].id)));
    // Another program copies before this store hears of its own write.
    pasteboard.copy(FakePasteboard::text("theirs"));
    pasteboard.deliverDeferred();
    EXPECT_EQ(texts(*store), (std::vector<std::string>{"theirs", "old", "newer"}));
}

TEST_F(ClipboardStoreTest, AnImageWhoseFileIsGoneClearsTheClipboardAndStays)
{
    auto store = startStore();
    pasteboard.copy(FakePasteboard::image(solidImage(Qt::red)));
    pasteboard.copy(FakePasteboard::text("on top"));
    const ClipboardItem image = store->items()[1];
    fs::remove(store->imagesFolder() / *image.imageFile);
    CapturingLogSink log;
    EXPECT_TRUE(store->copy(QString::fromStdString(image.id)));
    EXPECT_EQ(pasteboard.writes, (std::vector<std::string>{"clear"}));
    EXPECT_TRUE(pasteboard.content().types.isEmpty());
    EXPECT_EQ(store->items()[0], image);
    EXPECT_TRUE(log.contains(*image.imageFile));
    pasteboard.copy(FakePasteboard::text("recorded"));
    EXPECT_EQ(store->items().size(), 3u);
}

TEST_F(ClipboardStoreTest, DeleteAndClearRemoveEntriesWithTheirImagesOnDiskToo)
{
    auto store = startStore();
    pasteboard.copy(FakePasteboard::image(solidImage(Qt::red)));
    pasteboard.copy(FakePasteboard::image(solidImage(Qt::blue)));
    copyTexts(2);
    const std::vector<ClipboardItem> before = store->items();

    EXPECT_TRUE(store->remove(QString::fromStdString(before[2].id)));
    EXPECT_FALSE(store->remove(QString::fromStdString(before[2].id)));
    EXPECT_EQ(store->items(), (std::vector<ClipboardItem>{before[0], before[1], before[3]}));
    EXPECT_EQ(onDisk(), store->items());
    EXPECT_EQ(imageFiles(), (std::vector<std::string>{*before[3].imageFile}));

    store->clear();
    EXPECT_TRUE(store->items().empty());
    EXPECT_TRUE(onDisk().empty());
    EXPECT_TRUE(imageFiles().empty());
}

TEST_F(ClipboardStoreTest, TheHistorySurvivesARestartAndIsPrivate)
{
    {
        auto store = startStore();
        frontmost.name = "Browser";
        pasteboard.copy(FakePasteboard::text("https://example.com"));
        pasteboard.copy(FakePasteboard::image(solidImage(Qt::red)));
    }
    auto before = onDisk();
    auto store = startStore();
    EXPECT_EQ(store->items(), before);
    ASSERT_EQ(store->items().size(), 2u);
    EXPECT_EQ(permissionsOf(folder), 0700u);
    EXPECT_EQ(permissionsOf(store->historyFile()), 0600u);
    EXPECT_EQ(permissionsOf(store->imagesFolder()), 0700u);
    EXPECT_EQ(permissionsOf(store->imagesFolder() / *store->items()[0].imageFile), 0600u);
}

// The history read in the background: whatever happens before it arrives neither overwrites
// the file nor gets lost.
TEST_F(ClipboardStoreTest, WhileTheHistoryIsReadNothingIsWrittenAndNothingIsLost)
{
    {
        auto store = startStore();
        pasteboard.copy(FakePasteboard::text("older"));
        pasteboard.copy(FakePasteboard::text("old"));
    }
    std::vector<std::function<void()>> pending;
    ClipboardStore store(settings, clock, pasteboard, frontmost, folder, heldBack(pending));
    int changes = 0;
    QObject::connect(&store, &ClipboardStore::itemsChanged, [&] { ++changes; });
    store.start();
    store.putFiles({"/tmp/Recording.mp4"});
    pasteboard.copy(FakePasteboard::text("copied while reading"));
    EXPECT_FALSE(store.isLoaded());
    EXPECT_EQ(texts(store), std::vector<std::string>{"/tmp/Recording.mp4"});
    EXPECT_EQ(onDisk().size(), 2u) << "the file was written before it was read";

    ASSERT_EQ(pending.size(), 1u);
    pending.front()();
    EXPECT_TRUE(store.isLoaded());
    // Navro's own entry on top of the history, then the copy made meanwhile on top of both.
    const std::vector<std::string> expected{"copied while reading", "/tmp/Recording.mp4", "old",
                                            "older"};
    EXPECT_EQ(texts(store), expected);
    EXPECT_EQ(onDisk(), store.items());
    EXPECT_GE(changes, 2);

    // And it watches from then on.
    pasteboard.copy(FakePasteboard::text("after"));
    EXPECT_EQ(texts(store).front(), "after");
}

TEST_F(ClipboardStoreTest, AStoreGoneBeforeItsHistoryArrivesIsLeftAlone)
{
    std::vector<std::function<void()>> pending;
    {
        ClipboardStore store(settings, clock, pasteboard, frontmost, folder, heldBack(pending));
    }
    ASSERT_EQ(pending.size(), 1u);
    pending.front()(); // would touch the deleted store if it did not know it was gone
    EXPECT_FALSE(fs::exists(folder / "clipboard.plist"));
}

TEST_F(ClipboardStoreTest, AnUnreadableHistoryIsKeptAsideAndTheStoreStartsEmpty)
{
    const std::string unreadable[] = {"garbage", std::string(),
                                      "<?xml version=\"1.0\"?><plist "
                                      "version=\"1.0\"><dict/></plist>"};
    for (const std::string& bytes : unreadable) {
        ASSERT_FALSE(makePrivateFolder(folder));
        ASSERT_FALSE(writeFileAtomically(folder / "clipboard.plist", bytes));
        CapturingLogSink log;
        auto store = startStore();
        EXPECT_TRUE(store->items().empty());
        const std::string backup =
            SafeStorage::backupName("clipboard.plist", applicationVersion(), clock.now());
        EXPECT_EQ(readBytes(folder / backup), bytes);
        EXPECT_TRUE(log.contains("could not read clipboard.plist; kept a copy at " + backup));
        // Still there until the next save replaces it.
        EXPECT_EQ(readBytes(folder / "clipboard.plist"), bytes);
        pasteboard.copy(FakePasteboard::text("fresh"));
        EXPECT_EQ(onDisk().size(), 1u);
        EXPECT_EQ(readBytes(folder / backup), bytes);
        store.reset();
        fs::remove(folder / backup);
        clock.advance(1s);
    }
}

TEST_F(ClipboardStoreTest, BadEntriesAreLeftOutAndWhatACrashLeftIsRemoved)
{
    ClipboardItem good;
    good.id = "5F1D2C3B-4A59-4687-9A1B-2C3D4E5F6A7B";
    good.text = "kept";
    good.kind = ClipboardKind::image;
    good.imageFile = "5F1D2C3B-4A59-4687-9A1B-2C3D4E5F6A7B.png";
    ClipboardItem unsafe = good;
    unsafe.id = "A1B2C3D4-E5F6-4789-8ABC-DEF012345678";
    unsafe.imageFile = "../outside.png";
    ASSERT_FALSE(makePrivateFolder(folder / "ClipboardImages"));
    ASSERT_FALSE(
        writeFileAtomically(folder / "clipboard.plist", encodeClipboardHistory({good, unsafe})));
    const fs::path images = folder / "ClipboardImages";
    for (const char* name : {"5F1D2C3B-4A59-4687-9A1B-2C3D4E5F6A7B.png",
                             "A1B2C3D4-E5F6-4789-8ABC-DEF012345678.png", "notes.png"})
        ASSERT_FALSE(writeFileAtomically(images / name, "png"));
    ASSERT_FALSE(writeFileAtomically(folder / "outside.png", "not mine"));
    ASSERT_FALSE(writeFileAtomically(folder / ".clipboard.plist.Ab12Cd", "cut short"));
    ASSERT_FALSE(writeFileAtomically(images / ".5F1D2C3B.png.Ab12Cd", "cut short"));

    CapturingLogSink log;
    auto store = startStore();
    EXPECT_EQ(store->items(), std::vector<ClipboardItem>{good});
    EXPECT_TRUE(log.contains("left out 1 entries"));
    EXPECT_EQ(imageFiles(),
              (std::vector<std::string>{"5F1D2C3B-4A59-4687-9A1B-2C3D4E5F6A7B.png", "notes.png"}));
    EXPECT_FALSE(fs::exists(folder / ".clipboard.plist.Ab12Cd"));
    store->clear();
    EXPECT_TRUE(fs::exists(folder / "outside.png"));
}

TEST_F(ClipboardStoreTest, AFailedSaveIsShownLoggedOnceAndRetriedUntilItWorks)
{
    auto store = startStore();
    // A folder where the history file belongs: every write is refused.
    fs::create_directories(folder / "clipboard.plist");
    CapturingLogSink log;
    int shown = 0;
    QObject::connect(store.get(), &ClipboardStore::saveFailedChanged, [&] { ++shown; });
    copyTexts(3);
    clock.advance(30s);
    EXPECT_TRUE(store->saveFailed());
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(log.lines.size(), 1u);
    EXPECT_TRUE(log.contains("could not save clipboard.plist"));
    EXPECT_TRUE(clock.pendingCount() > 0) << "a retry is pending";

    fs::remove(folder / "clipboard.plist");
    clock.advance(10min);
    EXPECT_FALSE(store->saveFailed());
    EXPECT_EQ(shown, 2);
    EXPECT_TRUE(log.contains("saved clipboard.plist again"));
    EXPECT_EQ(onDisk(), store->items());
    EXPECT_EQ(clock.pendingCount(), 0u);
}

TEST_F(ClipboardStoreTest, RecordsABurstEachOnceInOrderAndPollsOnlyWithoutChangeEvents)
{
    {
        auto store = startStore();
        EXPECT_EQ(clock.pendingCount(), 0u);
        copyTexts(50);
        EXPECT_EQ(clock.pendingCount(), 0u) << "sleeps between changes";
        ASSERT_EQ(store->items().size(), 50u);
        for (std::size_t i = 0; i < 50; ++i)
            EXPECT_EQ(store->items()[i].text, "text " + std::to_string(49 - i));
        store->check();
        EXPECT_EQ(store->items().size(), 50u);
    }
    pasteboard.announcesChanges = false;
    auto store = startStore();
    store->clear();
    pasteboard.copy(FakePasteboard::text("one"));
    EXPECT_TRUE(store->items().empty());
    clock.advance(ClipboardStore::pollInterval);
    EXPECT_EQ(texts(*store), (std::vector<std::string>{"one"}));
    // Between two looks only the last content can be seen.
    pasteboard.copy(FakePasteboard::text("two"));
    pasteboard.copy(FakePasteboard::text("three"));
    clock.advance(ClipboardStore::pollInterval);
    EXPECT_EQ(texts(*store), (std::vector<std::string>{"three", "one"}));
    // Copying back while polling is not recorded either.
    store->copy(QString::fromStdString(store->items()[1].id));
    clock.advance(ClipboardStore::pollInterval * 3);
    EXPECT_EQ(texts(*store), (std::vector<std::string>{"one", "three"}));
}

TEST_F(ClipboardStoreTest, OddTextIsCleanedOrRefusedWithALogLine)
{
    auto store = startStore();
    pasteboard.copy(FakePasteboard::text(QString::fromUtf8("a\0b", 3)));
    EXPECT_EQ(texts(*store), (std::vector<std::string>{"ab"}));

    CapturingLogSink log;
    pasteboard.copy(FakePasteboard::text(QString(ClipboardStore::maxTextBytes + 1, u'x')));
    EXPECT_EQ(store->items().size(), 1u);
    EXPECT_TRUE(log.contains("not recorded"));
    pasteboard.copy(FakePasteboard::text(QString(ClipboardStore::maxTextBytes, u'x')));
    EXPECT_EQ(store->items().size(), 2u);
}

TEST_F(ClipboardStoreTest, TheHistoryFileStaysWithinItsSizeByGivingUpTheOldestEntries)
{
    // 40 texts of 1 MiB, as another program could have left them.
    std::vector<ClipboardItem> large;
    for (int i = 0; i < 40; ++i) {
        ClipboardItem item;
        item.id = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
        item.text = std::string(ClipboardStore::maxTextBytes - 1, char('a' + i % 26));
        large.push_back(item);
    }
    ASSERT_FALSE(makePrivateFolder(folder));
    ASSERT_FALSE(writeFileAtomically(folder / "clipboard.plist", encodeClipboardHistory(large)));
    settings.setClipboardLimit(500);
    auto store = startStore();
    ASSERT_EQ(store->items().size(), 40u);
    CapturingLogSink log;
    pasteboard.copy(FakePasteboard::text("small"));
    EXPECT_LT(store->items().size(), 40u);
    EXPECT_EQ(store->items()[0].text, "small");
    EXPECT_EQ(store->items()[1], large[0]);
    EXPECT_LE(fs::file_size(store->historyFile()), ClipboardStore::maxHistoryFileBytes);
    EXPECT_TRUE(log.contains("oldest entries"));
    EXPECT_EQ(startStore()->items().size(), store->items().size());
}

} // namespace
} // namespace navro
