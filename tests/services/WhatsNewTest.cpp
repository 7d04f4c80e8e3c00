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

// One launch of a given version on the settings a user has: the versions whose notes it shows.
QStringList launch(FakeSettingsStore& store, std::string_view version)
{
    AppSettings settings(store, [] { return QStringList{QStringLiteral("en-GB")}; });
    WhatsNew whatsNew(settings, shippedNotes(), version);
    const bool shown = whatsNew.checkAtStart();
    QStringList versions;
    for (const QVariant& entry : whatsNew.entries())
        versions << entry.toMap().value(QStringLiteral("version")).toString();
    EXPECT_EQ(shown, !versions.isEmpty());
    return versions;
}

QString lastSeen(const FakeSettingsStore& store)
{
    return std::get<QString>(store.values.at(QStringLiteral("lastSeenVersion")));
}

TEST(WhatsNew, NeverOnAFreshInstallButOnceAfterAnUpdate)
{
    testApplication();
    FakeSettingsStore store;
    const QString running = QString::fromLatin1(applicationVersion());
    EXPECT_EQ(launch(store, applicationVersion()), QStringList());
    EXPECT_EQ(lastSeen(store), running);
    EXPECT_EQ(launch(store, applicationVersion()), QStringList());

    // The user had an older version: this launch shows the window, the next does not.
    store.values[QStringLiteral("lastSeenVersion")] = QStringLiteral("0.0.1");
    const QStringList shown = launch(store, applicationVersion());
    ASSERT_FALSE(shown.isEmpty());
    EXPECT_EQ(shown.front(), running);
    EXPECT_EQ(launch(store, applicationVersion()), QStringList());
}

// After a downgrade only the running version's notes show, once; a version without notes only
// moves the record on.
TEST(WhatsNew, ADowngradeShowsTheRunningVersionsNotesOnce)
{
    testApplication();
    FakeSettingsStore store;
    const QString running = QString::fromLatin1(applicationVersion());
    store.values[QStringLiteral("lastSeenVersion")] = QStringLiteral("99.0");
    EXPECT_EQ(launch(store, applicationVersion()), QStringList{running});
    EXPECT_EQ(lastSeen(store), running);
    EXPECT_EQ(launch(store, applicationVersion()), QStringList());

    store.values[QStringLiteral("lastSeenVersion")] = QStringLiteral("99.0");
    EXPECT_EQ(launch(store, "0.0.2"), QStringList());
    EXPECT_EQ(lastSeen(store), QStringLiteral("0.0.2"));
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
