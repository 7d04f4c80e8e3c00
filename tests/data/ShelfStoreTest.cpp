#include "data/ShelfStore.h"

#include "FakeDesktopFiles.h"
#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "TemporaryFolder.h"
#include "app/AppSettings.h"
#include "app/Log.h"
#include "app/Version.h"
#include "data/ShelfFile.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono;
using namespace std::chrono_literals;

const WallTime startTime{milliseconds(1'780'000'000'000)};

class ShelfStoreTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        fs::create_directories(root_ / "files" / "folder");
        for (const char* file : {"a.txt", "b.png", "c.pdf"})
            writeBytes(root_ / "files" / file, file);
    }

    ShelfStore& start()
    {
        store_ = std::make_unique<ShelfStore>(clock, settings, files, folder_);
        return *store_;
    }
    ShelfStore& store() { return *store_; }

    std::vector<ShelfSection> onDisk() const
    {
        const auto decoded = decodeShelf(readBytes(folder_ / "shelf.json"), clock.now(), [] {
            return std::string("00000000-0000-4000-8000-000000000000");
        });
        EXPECT_TRUE(decoded.sections) << decoded.error;
        return decoded.sections.value_or(std::vector<ShelfSection>{});
    }
    QString file(const char* name) const
    {
        return QString::fromStdString((root_ / "files" / name).string());
    }
    QVariantMap item(int section, int index)
    {
        const QVariantList items =
            store().sectionList().at(section).toMap().value("items").toList();
        return items.at(index).toMap();
    }

    FakeSettingsStore settingsStore;
    AppSettings settings{settingsStore, [] { return QStringList{"en-US"}; }};
    ManualClock clock{startTime};
    FakeDesktopFiles files;
    TemporaryFolder root_;
    const fs::path folder_ = root_ / "Navro";
    std::unique_ptr<ShelfStore> store_;
};

TEST_F(ShelfStoreTest, AFreshShelfHasOneSectionNamedInTheInterfaceLanguageAndWritesNothing)
{
    start();
    ASSERT_EQ(store().shelf().sections().size(), 1u);
    EXPECT_EQ(store().shelf().sections()[0].name, "Shelf");
    EXPECT_FALSE(fs::exists(folder_ / "shelf.json"));
    store_.reset();

    settings.setLanguage(AppLanguage::arabic);
    start();
    EXPECT_EQ(store().shelf().sections()[0].name, "الرف");
}

TEST_F(ShelfStoreTest, DroppedFilesLandInTheSectionAndSurviveARestart)
{
    start();
    int changed = 0;
    QObject::connect(&store(), &ShelfStore::sectionsChanged, [&] { ++changed; });
    const QList<QUrl> urls{QUrl::fromLocalFile(file("a.txt")), QUrl::fromLocalFile(file("folder")),
                           QUrl(QStringLiteral("https://example.org/page")),
                           QUrl::fromLocalFile(file("a.txt") + "/../a.txt")};
    EXPECT_EQ(store().addUrls({}, urls), 2); // the first section; web pages and repeats skipped
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(store().addUrls({}, {QUrl::fromLocalFile(file("a.txt"))}), 0);
    EXPECT_EQ(changed, 1);

    const auto sections = onDisk();
    ASSERT_EQ(sections.size(), 1u);
    ASSERT_EQ(sections[0].items.size(), 2u);
    EXPECT_EQ(sections[0].items[0].path, file("a.txt").toStdString());
    EXPECT_EQ(sections[0].items[0].added, startTime);
    EXPECT_FALSE(sections[0].items[0].isFolder);
    EXPECT_TRUE(sections[0].items[1].isFolder);
    EXPECT_EQ(permissionsOf(folder_ / "shelf.json"), 0600u);

    const QString work = store().addSection(QStringLiteral("Work"));
    EXPECT_EQ(store().addPaths(work, {file("b.png")}), 1);
    store_.reset();
    start();
    EXPECT_EQ(store().shelf().sections(), onDisk());
    EXPECT_EQ(store().itemCount(), 3);
}

TEST_F(ShelfStoreTest, TheViewsSeeNamesIconsAndWhichFilesAreGone)
{
    start();
    store().addPaths({}, {file("a.txt"), file("b.png"), file("folder"), file("c.pdf")});
    struct Expected {
        const char* name;
        bool isImage, isFolder;
        const char* icon;
    };
    const Expected expected[] = {{"a.txt", false, false, "text-plain"},
                                 {"b.png", true, false, "image-png"},
                                 {"folder", false, true, "folder"},
                                 {"c.pdf", false, false, "application-pdf"}};
    for (int i = 0; i < 4; ++i) {
        const QVariantMap map = item(0, i);
        EXPECT_EQ(map.value("name").toString(), expected[i].name);
        EXPECT_EQ(map.value("isImage").toBool(), expected[i].isImage) << expected[i].name;
        EXPECT_EQ(map.value("isFolder").toBool(), expected[i].isFolder) << expected[i].name;
        EXPECT_EQ(map.value("icon").toString(), expected[i].icon) << expected[i].name;
        EXPECT_TRUE(map.value("exists").toBool()) << expected[i].name;
        EXPECT_EQ(map.value("url").toUrl(), QUrl::fromLocalFile(file(expected[i].name)));
    }
    fs::remove(root_ / "files" / "c.pdf");
    int changed = 0;
    QObject::connect(&store(), &ShelfStore::sectionsChanged, [&] { ++changed; });
    store().refresh();
    EXPECT_EQ(changed, 1);
    EXPECT_FALSE(item(0, 3).value("exists").toBool());
    store().refresh(); // nothing new: no signal
    EXPECT_EQ(changed, 1);
}

TEST_F(ShelfStoreTest, OpeningShowingAndChoosingGoThroughTheDesktop)
{
    start();
    store().addPaths({}, {file("a.txt")});
    const QString id = item(0, 0).value("id").toString();
    store().open(id);
    store().showInFolder(id);
    store().open(QStringLiteral("unknown"));
    EXPECT_EQ(files.opened, QStringList{file("a.txt")});
    EXPECT_EQ(files.shown, QStringList{file("a.txt")});

    const QString work = store().addSection(QStringLiteral("Work"));
    store().chooseFiles(work);
    EXPECT_EQ(files.pickerTitle, "Add to Shelf");
    ASSERT_TRUE(files.answerPicker);
    files.answerPicker({file("b.png"), file("c.pdf")});
    EXPECT_EQ(store().shelf().sections()[1].items.size(), 2u);
    EXPECT_EQ(onDisk()[1].items.size(), 2u);
}

TEST_F(ShelfStoreTest, EveryEditIsWrittenAtOnce)
{
    start();
    const QString work = store().addSection(QStringLiteral("Work"));
    EXPECT_TRUE(store().addSection(QStringLiteral("  ")).isEmpty());
    store().addPaths(work, {file("a.txt"), file("b.png")});
    const QString a = item(1, 0).value("id").toString();
    const std::string first = store().shelf().sections()[0].id;

    EXPECT_TRUE(store().renameSection(work, QStringLiteral("Projects")));
    EXPECT_EQ(onDisk()[1].name, "Projects");
    EXPECT_TRUE(store().moveItem(a, {}, 0));
    EXPECT_EQ(onDisk()[0].items.size(), 1u);
    EXPECT_TRUE(store().moveSection(work, 0));
    EXPECT_EQ(onDisk()[0].name, "Projects");
    EXPECT_FALSE(store().moveSection(work, -1));
    EXPECT_TRUE(store().removeItem(a));
    EXPECT_TRUE(onDisk()[1].items.empty());
    EXPECT_TRUE(store().removeSection(QString::fromStdString(first)));
    EXPECT_FALSE(store().removeSection(work)); // the last one
    EXPECT_EQ(onDisk().size(), 1u);
}

TEST_F(ShelfStoreTest, AnUnreadableFileIsKeptAsideAndTheShelfStartsOver)
{
    const std::string bytes = R"({"sections":[{"name":"Lost?","items":{}}]})";
    writeBytes(folder_ / "shelf.json", bytes);
    writeBytes(folder_ / "shelf.plist", "never read while shelf.json is there");
    CapturingLogSink log;
    start();
    ASSERT_EQ(store().shelf().sections().size(), 1u);
    EXPECT_EQ(store().shelf().sections()[0].name, "Shelf");
    const std::string backup =
        "shelf.unreadable-" + std::string(applicationVersion()) + "-" +
        std::to_string(duration_cast<std::chrono::seconds>(startTime.time_since_epoch()).count()) +
        ".json";
    EXPECT_TRUE(log.contains("shelf.json is damaged: section 1: \"items\" is not a list"));
    EXPECT_TRUE(log.contains("could not read shelf.json; kept a copy at " + backup));
    EXPECT_EQ(readBytes(folder_ / backup), bytes);
    EXPECT_EQ(readBytes(folder_ / "shelf.json"), bytes); // until the next change
    EXPECT_FALSE(log.contains("shelf.plist"));
}

TEST_F(ShelfStoreTest, TheOlderPropertyListIsReadOnceAndTheShelfWrittenAsJson)
{
    const std::string plist = R"(<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><array><dict><key>name</key><string>Old</string><key>items</key><array>
<dict><key>path</key><string>/home/u/a.txt</string></dict></array></dict></array></plist>)";
    writeBytes(folder_ / "shelf.plist", plist);
    CapturingLogSink log;
    start();
    ASSERT_EQ(store().shelf().sections().size(), 1u);
    EXPECT_EQ(store().shelf().sections()[0].name, "Old");
    EXPECT_EQ(onDisk(), store().shelf().sections());
    EXPECT_TRUE(log.contains("moved the shelf from shelf.plist to shelf.json"));
    EXPECT_EQ(readBytes(folder_ / "shelf.plist"), plist); // left as it was

    // From now on the JSON file is the shelf, whatever the older file says.
    store().renameSection(QString::fromStdString(store().shelf().sections()[0].id), "New");
    store_.reset();
    start();
    EXPECT_EQ(store().shelf().sections()[0].name, "New");

    // An unreadable older file is kept aside like any other.
    fs::remove(folder_ / "shelf.json");
    writeBytes(folder_ / "shelf.plist", "<plist><dict>");
    CapturingLogSink again;
    store_.reset();
    start();
    EXPECT_TRUE(again.contains("shelf.plist is damaged"));
    EXPECT_TRUE(again.contains("could not read shelf.plist; kept a copy at shelf.unreadable-"));
    EXPECT_FALSE(fs::exists(folder_ / "shelf.json"));
}

TEST_F(ShelfStoreTest, AFailedWriteIsShownLoggedOnceAndRetriedUntilItWorks)
{
    // A folder where the file should be: nothing can be written there.
    fs::create_directories(folder_ / "shelf.json" / "x");
    CapturingLogSink log;
    start();
    int errorChanged = 0;
    QObject::connect(&store(), &ShelfStore::saveErrorChanged, [&] { ++errorChanged; });
    store().addPaths({}, {file("a.txt")});
    store().addPaths({}, {file("b.png")});
    EXPECT_FALSE(store().saveError().isEmpty());
    EXPECT_EQ(errorChanged, 1);
    const auto failures = std::count_if(log.lines.begin(), log.lines.end(), [](auto& line) {
        return line.find("could not save shelf.json") != std::string::npos;
    });
    EXPECT_EQ(failures, 1);

    clock.advance(ShelfStore::firstRetry * 3);
    fs::remove_all(folder_ / "shelf.json");
    clock.advance(ShelfStore::longestRetry);
    EXPECT_TRUE(store().saveError().isEmpty());
    EXPECT_TRUE(log.contains("saved shelf.json again"));
    EXPECT_EQ(onDisk()[0].items.size(), 2u); // nothing of the changes was lost
}

} // namespace
} // namespace navro
