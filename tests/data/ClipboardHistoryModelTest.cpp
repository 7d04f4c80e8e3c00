#include "data/ClipboardHistoryModel.h"

#include "FakePasteboard.h"
#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "QtTestApplication.h"
#include "TemporaryFolder.h"
#include "app/AppSettings.h"
#include "app/Log.h"
#include "data/ClipboardStore.h"

#include <gtest/gtest.h>

namespace navro {
namespace {

class ClipboardHistoryModelTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        testApplication();
        store = std::make_unique<ClipboardStore>(settings, clock, pasteboard, frontmost,
                                                 folder_.path());
        store->start();
        model = std::make_unique<ClipboardHistoryModel>(*store);

        frontmost.name = "Firefox";
        pasteboard.copy(FakePasteboard::text("https://example.com/Report"));
        frontmost.name = "Text Editor";
        pasteboard.copy(FakePasteboard::text("Quarterly REPORT draft"));
        pasteboard.copy(FakePasteboard::text(
            "\u0645\u0631\u062d\u0628\u0627 \u0628\u0627\u0644\u0639\u0627\u0644\u0645"));
        frontmost.name = "Files";
        pasteboard.copy(FakePasteboard::files({"/home/u/report.pdf", "/home/u/notes.txt"}));
        frontmost.name.reset();
        QImage image(2, 2, QImage::Format_RGB32);
        image.fill(Qt::black);
        pasteboard.copy(FakePasteboard::image(image));
    }

    QStringList shown(int role = ClipboardHistoryModel::previewRole) const
    {
        QStringList values;
        for (int row = 0; row < model->rowCount(); ++row)
            values << model->data(model->index(row), role).toString();
        return values;
    }

    TemporaryFolder folder_;
    FakeSettingsStore settingsStore;
    AppSettings settings{settingsStore, [] { return QStringList{"en-GB"}; }};
    ManualClock clock;
    FakePasteboard pasteboard;
    FakeFrontmostApplication frontmost;
    std::unique_ptr<ClipboardStore> store;
    std::unique_ptr<ClipboardHistoryModel> model;
};

TEST_F(ClipboardHistoryModelTest, EachFilterPassesExactlyItsKindNewestFirst)
{
    struct Case {
        QString filter;
        QStringList kinds;
    };
    const Case cases[] = {
        {"all", {"image", "file", "text", "text", "link"}},
        {"text", {"text", "text"}},
        {"links", {"link"}},
        {"images", {"image"}},
        {"files", {"file"}},
    };
    for (const Case& c : cases) {
        model->setFilter(c.filter);
        EXPECT_EQ(shown(ClipboardHistoryModel::kindRole), c.kinds) << c.filter.toStdString();
        EXPECT_EQ(model->count(), c.kinds.size());
    }
    CapturingLogSink log;
    model->setFilter("videos");
    EXPECT_EQ(model->filter(), "files");
    EXPECT_TRUE(log.contains("\"videos\""));
}

TEST_F(ClipboardHistoryModelTest, SearchLooksInTheTextElseTheSourceIgnoringCaseAndUntrimmed)
{
    struct Case {
        QString query;
        QString filter;
        QStringList sources;
    };
    const Case cases[] = {
        {"", "all", {"", "Files", "Text Editor", "Text Editor", "Firefox"}},
        {"report", "all", {"Files", "Text Editor", "Firefox"}},
        {"REPORT", "links", {"Firefox"}},
        {"firefox", "all", {"Firefox"}}, // only its source names it
        {"editor", "all", {"Text Editor", "Text Editor"}},
        {"\u0628\u0627\u0644\u0639\u0627\u0644\u0645", "all", {"Text Editor"}},
        {" https", "all", {}}, // the link starts with "https"
        {"pdf ", "all", {}},   // "report.pdf" ends a line
        {"REPORT draft", "text", {"Text Editor"}},
        {"notes.txt", "text", {}},
    };
    for (const Case& c : cases) {
        model->setFilter(c.filter);
        model->setQuery(c.query);
        EXPECT_EQ(shown(ClipboardHistoryModel::sourceRole), c.sources) << c.query.toStdString();
    }
}

TEST_F(ClipboardHistoryModelTest, RowsFollowTheStoreAndCarryWhatTheViewShows)
{
    model->setFilter("text");
    int resets = 0;
    QObject::connect(model.get(), &QAbstractItemModel::modelReset, [&] { ++resets; });
    pasteboard.copy(FakePasteboard::text(QString(1000, u'a') + "end"));
    EXPECT_EQ(resets, 1);
    ASSERT_EQ(model->count(), 3);
    EXPECT_EQ(shown()[0], QString(ClipboardHistoryModel::previewLength, u'a'));

    const ClipboardItem& newest = store->items()[0];
    const QModelIndex top = model->index(0);
    EXPECT_EQ(model->data(top, ClipboardHistoryModel::itemIdRole).toString().toStdString(),
              newest.id);
    EXPECT_EQ(model->data(top, ClipboardHistoryModel::dateRole).toDateTime().toMSecsSinceEpoch(),
              newest.date.time_since_epoch().count());

    model->setFilter("images");
    EXPECT_EQ(
        model->data(model->index(0), ClipboardHistoryModel::imageFileRole).toString().toStdString(),
        *store->items()[1].imageFile);

    store->clear();
    EXPECT_EQ(model->count(), 0);
    EXPECT_FALSE(model->data(model->index(0), ClipboardHistoryModel::kindRole).isValid());
}

} // namespace
} // namespace navro
