#include "app/QSettingsStore.h"

#include "app/AppSettings.h"
#include "app/Log.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace navro {
namespace {

// Every test gets a file of its own: QSettings keeps files it has read in a process-wide cache,
// and a fresh path makes each read go to the text on disk.
class QSettingsStoreTest : public ::testing::Test {
protected:
    QString path() const { return dir_.filePath(QStringLiteral("Navro.conf")); }

    void writeFile(const QByteArray& text)
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QTemporaryDir dir_;
};

TEST_F(QSettingsStoreTest, TellsAMissingKeyFromTextThatIsNotOfTheType)
{
    writeFile("[General]\n"
              "yes=yes\n"
              "one=1\n"
              "half=1.5\n"
              "word=fast\n"
              "list=a, b\n");
    QSettingsStore store(path());

    EXPECT_EQ(store.readBool("absent").state(), StoreRead<bool>::State::missing);
    EXPECT_EQ(store.readBool("yes").state(), StoreRead<bool>::State::wrongType);
    EXPECT_EQ(store.readBool("one").state(), StoreRead<bool>::State::wrongType);
    EXPECT_EQ(store.readInt("half").state(), StoreRead<int>::State::wrongType);
    EXPECT_EQ(store.readInt("word").state(), StoreRead<int>::State::wrongType);
    EXPECT_EQ(store.readDouble("word").state(), StoreRead<double>::State::wrongType);
    EXPECT_EQ(store.readString("list").state(), StoreRead<QString>::State::wrongType);
    EXPECT_EQ(store.readInt("one").value(), 1);
    EXPECT_EQ(store.readDouble("half").value(), 1.5);
    EXPECT_EQ(store.readDouble("one").value(), 1.0);
    EXPECT_EQ(store.readString("one").value(), "1");
}

TEST_F(QSettingsStoreTest, ReadsTheTextAnotherProcessWrote)
{
    writeFile("[General]\n"
              "notchEnabled=false\n"
              "clipboardLimit=50\n"
              "hoverDelay=0.3\n"
              "openMode=click\n"
              "theme=neon\n"
              "adhanAlert=TRUE\n"
              "lastTimerMinutes=nan\n");
    CapturingLogSink log;
    QSettingsStore store(path());
    AppSettings settings(store, [] { return QStringList(); });

    EXPECT_FALSE(settings.notchEnabled());
    EXPECT_EQ(settings.clipboardLimit(), 50);
    EXPECT_EQ(settings.hoverDelay(), 0.3);
    EXPECT_EQ(settings.openMode(), OpenMode::click);
    EXPECT_EQ(settings.theme(), AppTheme::system);
    EXPECT_TRUE(settings.adhanAlert()) << "only exactly true or false is a Bool";
    EXPECT_EQ(settings.lastTimerMinutes(), 25.0);
    EXPECT_TRUE(log.contains("\"adhanAlert\""));
}

TEST_F(QSettingsStoreTest, EveryWrittenValueReadsBackExactlyFromTheFile)
{
    const double awkward = 0.1 + 0.2;
    {
        QSettingsStore store(path());
        store.writeDouble("hoverDelay", 0.15);
        store.writeDouble("awkward", awkward);
        store.writeDouble("tiny", 1e-300);
        store.writeInt("limit", -7);
        store.writeBool("off", false);
        store.writeString("comma", QStringLiteral("Work, deep"));
        store.writeString("at", QStringLiteral("@Variant(x)"));
        store.writeString("arabic", QStringLiteral("وضع التركيز"));
        store.writeString("empty", QString());
        store.sync();
    }
    // A second file with the same contents proves the values survive as text, not only in the
    // cache of the process that wrote them.
    const QString copy = dir_.filePath(QStringLiteral("Copy.conf"));
    ASSERT_TRUE(QFile::copy(path(), copy));
    QSettingsStore store(copy);

    EXPECT_EQ(store.readDouble("hoverDelay").value(), 0.15);
    EXPECT_EQ(store.readDouble("awkward").value(), awkward);
    EXPECT_EQ(store.readDouble("tiny").value(), 1e-300);
    EXPECT_EQ(store.readInt("limit").value(), -7);
    EXPECT_TRUE(store.readBool("off").hasValue());
    EXPECT_FALSE(store.readBool("off").value());
    EXPECT_EQ(store.readString("comma").value(), "Work, deep");
    EXPECT_EQ(store.readString("at").value(), "@Variant(x)");
    EXPECT_EQ(store.readString("arabic").value(), "وضع التركيز");
    EXPECT_TRUE(store.readString("empty").hasValue());
    EXPECT_EQ(store.readString("empty").value(), "");
}

} // namespace
} // namespace navro
