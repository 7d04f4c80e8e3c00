#include "services/WhatsNew.h"

#include "FakeSettingsStore.h"
#include "QtTestApplication.h"
#include "app/AppSettings.h"
#include "app/Version.h"

#include <QFile>
#include <gtest/gtest.h>

namespace navro {
namespace {

std::vector<ReleaseNotes> shippedNotes()
{
    QFile file(QStringLiteral(":/services/ReleaseNotes.json"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return parseReleaseNotes(file.readAll().toStdString());
}

// One launch of a given version on the settings a user has.
bool launch(FakeSettingsStore& store, std::string_view version, QVariantList* entries = nullptr)
{
    AppSettings settings(store, [] { return QStringList{QStringLiteral("en-GB")}; });
    WhatsNew whatsNew(settings, shippedNotes(), version);
    const bool shown = whatsNew.checkAtStart();
    if (entries)
        *entries = whatsNew.entries();
    return shown;
}

TEST(WhatsNew, NeverOnAFreshInstallButOnceAfterAnUpdate)
{
    testApplication();
    FakeSettingsStore store;
    const std::string running(applicationVersion());
    EXPECT_FALSE(launch(store, running));
    EXPECT_EQ(std::get<QString>(store.values.at(QStringLiteral("lastSeenVersion"))),
              QString::fromStdString(running));
    EXPECT_FALSE(launch(store, running));

    // The user had an older version: this launch shows the window, the next does not.
    store.values[QStringLiteral("lastSeenVersion")] = QStringLiteral("0.0.1");
    QVariantList entries;
    EXPECT_TRUE(launch(store, running, &entries));
    ASSERT_FALSE(entries.isEmpty());
    EXPECT_EQ(entries.front().toMap().value(QStringLiteral("version")).toString(),
              QString::fromStdString(running));
    EXPECT_FALSE(launch(store, running));
}

TEST(WhatsNew, ADowngradeShowsTheRunningVersionsNotesOnce)
{
    testApplication();
    FakeSettingsStore store;
    const std::string running(applicationVersion());
    store.values[QStringLiteral("lastSeenVersion")] = QStringLiteral("99.0");
    QVariantList entries;
    EXPECT_TRUE(launch(store, running, &entries));
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(entries.front().toMap().value(QStringLiteral("version")).toString(),
              QString::fromStdString(running));
    EXPECT_EQ(std::get<QString>(store.values.at(QStringLiteral("lastSeenVersion"))),
              QString::fromStdString(running));
    EXPECT_FALSE(launch(store, running));
}

TEST(WhatsNew, AVersionWithoutNotesOnlyMovesTheRecordOn)
{
    testApplication();
    FakeSettingsStore store;
    store.values[QStringLiteral("lastSeenVersion")] = QStringLiteral("99.0");
    EXPECT_FALSE(launch(store, "0.0.2"));
    EXPECT_EQ(std::get<QString>(store.values.at(QStringLiteral("lastSeenVersion"))),
              QStringLiteral("0.0.2"));
}

TEST(WhatsNew, TheShippedNotesCoverThisVersionInBothLanguages)
{
    testApplication();
    const auto notes = shippedNotes();
    ASSERT_FALSE(notes.empty()) << "the release notes resource is missing or unreadable";
    const auto running = VersionNumber::parse(applicationVersion());
    ASSERT_TRUE(running);
    EXPECT_EQ(notes.front().version, *running) << "no release notes for this version";
    for (const ReleaseNotes& entry : notes) {
        EXPECT_FALSE(entry.english.empty()) << entry.version.text();
        EXPECT_EQ(entry.english.size(), entry.arabic.size()) << entry.version.text();
    }
}

} // namespace
} // namespace navro
