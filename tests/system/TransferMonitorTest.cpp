#include "system/TransferMonitor.h"

#include "FakeDeviceSources.h"
#include "ManualClock.h"

#include <gtest/gtest.h>
#include <map>

namespace navro {
namespace {

class FakeFolder final : public WatchedFolder {
public:
    bool start(std::function<void()> changed) override
    {
        changed_ = std::move(changed);
        return exists;
    }
    std::vector<std::string> names() const override
    {
        std::vector<std::string> result;
        for (const auto& [name, size] : files)
            result.push_back(name);
        return result;
    }
    std::optional<std::uint64_t> size(const std::string& name) const override
    {
        ++sizeLookups;
        const auto it = files.find(name);
        return it == files.end() ? std::nullopt : std::optional(it->second);
    }
    void watchFiles(const std::vector<std::string>& names) override { watched = names; }
    std::string path() const override { return "/home/u/Downloads"; }

    void change() { changed_(); }

    bool exists = true;
    std::map<std::string, std::uint64_t> files;
    std::vector<std::string> watched;
    mutable int sizeLookups = 0;

private:
    std::function<void()> changed_;
};

using FakeWirelessSource = FakeSourceOf<WirelessTransferSource, std::vector<WirelessTransfer>>;

struct TransferMonitorTest : ::testing::Test {
    ManualClock clock;
    FakeFolder folder;
    FakeWirelessSource wireless;
    struct Finished {
        QString name;
        QString path;
        bool overBluetooth = false;
    };
    std::vector<Finished> finished;
    std::unique_ptr<TransferMonitor> monitor;

    void start()
    {
        monitor = std::make_unique<TransferMonitor>(clock, &folder, &wireless);
        QObject::connect(monitor.get(), &TransferMonitor::finished,
                         [this](const QString& name, const QString& path, bool overBluetooth) {
                             finished.push_back({name, path, overBluetooth});
                         });
        monitor->start();
    }
};

TEST_F(TransferMonitorTest, ADownloadGrowsAndFinishesWhenRenamed)
{
    folder.files = {{"old.pdf", 10}};
    start();
    EXPECT_TRUE(monitor->isEmpty());

    folder.files["film.mkv"] = 0;
    folder.files["film.mkv.part"] = 100;
    folder.change();
    folder.change(); // a burst of writes: one look
    EXPECT_TRUE(monitor->isEmpty()) << "looks once the writes settle";
    clock.advance(std::chrono::milliseconds(250));
    ASSERT_FALSE(monitor->isEmpty());
    EXPECT_EQ(folder.watched, std::vector<std::string>{"film.mkv.part"});
    const auto first = monitor->transfers().at(0).toMap();
    EXPECT_EQ(first["name"].toString(), "film.mkv");
    EXPECT_EQ(first["bytes"].toDouble(), 100.0);
    EXPECT_EQ(monitor->progress(), -1.0); // browsers give no total

    folder.files.erase("film.mkv.part");
    folder.files["film.mkv"] = 500;
    folder.change();
    clock.advance(std::chrono::milliseconds(250));
    EXPECT_TRUE(monitor->isEmpty());
    ASSERT_EQ(finished.size(), 1u);
    EXPECT_EQ(finished[0].name, "film.mkv");
    EXPECT_EQ(finished[0].path, "/home/u/Downloads/film.mkv");
    EXPECT_FALSE(finished[0].overBluetooth);
    EXPECT_TRUE(folder.watched.empty());
}

TEST_F(TransferMonitorTest, LooksAgainOnlyWhileADownloadIsListed)
{
    folder.files = {{"a.zip.crdownload", 100}};
    start();
    ASSERT_FALSE(monitor->isEmpty());
    folder.files["a.zip.crdownload"] = 1100; // written without the folder saying so
    clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(monitor->transfers().at(0).toMap()["bytes"].toDouble(), 1100.0);

    folder.files.clear(); // cancelled
    clock.advance(std::chrono::seconds(1));
    EXPECT_TRUE(monitor->isEmpty());
    EXPECT_TRUE(finished.empty());
    EXPECT_EQ(clock.pendingCount(), 0u) << "nothing wakes an idle monitor";
}

TEST_F(TransferMonitorTest, OnlyPartialFilesAndKnownFinalNamesAreMeasured)
{
    for (int i = 0; i < 100; ++i)
        folder.files["photo" + std::to_string(i) + ".jpg"] = 1;
    folder.files["x.part"] = 5;
    start();
    EXPECT_EQ(folder.sizeLookups, 1);
}

TEST_F(TransferMonitorTest, AMissingFolderIsNoDownloads)
{
    folder.exists = false;
    folder.files = {{"a.part", 1}};
    start();
    EXPECT_TRUE(monitor->isEmpty());
}

TEST_F(TransferMonitorTest, BluetoothTransfersProgressAndFinishOnce)
{
    start();
    WirelessTransfer photo{"/t/1", "photo.jpg", "/home/u/photo.jpg",
                           0,      1000,        WirelessTransfer::Status::queued};
    wireless.report(std::vector<WirelessTransfer>{photo});
    photo.status = WirelessTransfer::Status::active;
    photo.bytes = 250;
    wireless.report(std::vector<WirelessTransfer>{photo});
    EXPECT_DOUBLE_EQ(monitor->progress(), 0.25);
    photo.status = WirelessTransfer::Status::complete;
    photo.bytes = 1000;
    wireless.report(std::vector<WirelessTransfer>{photo});
    wireless.report(std::vector<WirelessTransfer>{photo});
    EXPECT_TRUE(monitor->isEmpty());
    ASSERT_EQ(finished.size(), 1u);
    EXPECT_EQ(finished[0].path, "/home/u/photo.jpg");
    EXPECT_TRUE(finished[0].overBluetooth);

    // One that failed goes without a word; one already complete when first seen is old news.
    WirelessTransfer failed{"/t/2", "b", "", 5, 10, WirelessTransfer::Status::active};
    wireless.report(std::vector<WirelessTransfer>{failed});
    failed.status = WirelessTransfer::Status::error;
    wireless.report(std::vector<WirelessTransfer>{failed});
    wireless.report(
        std::vector<WirelessTransfer>{{"/t/3", "c", "", 1, 1, WirelessTransfer::Status::complete}});
    EXPECT_EQ(finished.size(), 1u);
    EXPECT_TRUE(monitor->isEmpty());
}

TEST_F(TransferMonitorTest, ProgressIsUnknownWhenAnyTotalIs)
{
    start();
    wireless.report(std::vector<WirelessTransfer>{
        {"/t/1", "a", "", 10, 100, WirelessTransfer::Status::active},
        {"/t/2", "b", "", 10, std::nullopt, WirelessTransfer::Status::active}});
    EXPECT_EQ(monitor->progress(), -1.0);
    wireless.report(std::vector<WirelessTransfer>{
        {"/t/1", "a", "", 10, 100, WirelessTransfer::Status::active},
        {"/t/2", "b", "", 290, 300, WirelessTransfer::Status::active}});
    EXPECT_DOUBLE_EQ(monitor->progress(), 0.75);
}

} // namespace
} // namespace navro
