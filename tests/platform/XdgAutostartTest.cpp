#include "platform/linux/XdgAutostart.h"

#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"
#include "app/Log.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace navro {
namespace {

class XdgAutostartTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(home.isValid()); }
    QString configHome() const { return home.filePath("config"); }
    QString entry() const { return configHome() + "/autostart/navro.desktop"; }

    QTemporaryDir home;
    XdgAutostart item{"/opt/navro/bin/navro", configHome()};
};

TEST_F(XdgAutostartTest, EnableWritesAnEntryForTheProgramAndDisableRemovesIt)
{
    EXPECT_EQ(item.entryPath(), entry());
    EXPECT_FALSE(item.isEnabled());

    ASSERT_EQ(item.setEnabled(true), std::nullopt);
    EXPECT_TRUE(item.isEnabled());
    const QString contents = QString::fromStdString(readBytes(entry().toStdString()));
    EXPECT_TRUE(contents.startsWith("[Desktop Entry]\n"));
    EXPECT_TRUE(contents.contains("\nType=Application\n"));
    EXPECT_TRUE(contents.contains("\nName=Navro\n"));
    EXPECT_TRUE(contents.contains("\nExec=/opt/navro/bin/navro\n"));
    EXPECT_EQ(QDir(configHome() + "/autostart").entryList(QDir::Files | QDir::Hidden),
              QStringList{"navro.desktop"})
        << "the atomic write leaves no temporary file behind";

    ASSERT_EQ(item.setEnabled(true), std::nullopt) << "enabling twice is harmless";
    ASSERT_EQ(item.setEnabled(false), std::nullopt);
    EXPECT_FALSE(QFile::exists(entry()));
    EXPECT_FALSE(item.isEnabled());
    EXPECT_EQ(item.setEnabled(false), std::nullopt) << "disabling what is absent is no failure";
}

TEST_F(XdgAutostartTest, ConfigHomeComesFromTheEnvironmentWhenAbsolute)
{
    const ScopedEnvironment homeVariable("HOME", home.path().toUtf8().constData());
    const ScopedEnvironment configHomeVariable("XDG_CONFIG_HOME", nullptr);
    const QString fallback = home.path() + "/.config/autostart/navro.desktop";
    for (auto [value, expected] : {std::pair{configHome().toUtf8(), entry()},
                                   {QByteArray("relative/config"), fallback},
                                   {QByteArray(), fallback}}) {
        configHomeVariable.set(value.constData());
        EXPECT_EQ(XdgAutostart("/usr/bin/navro").entryPath(), expected) << value.toStdString();
    }
}

TEST_F(XdgAutostartTest, ExecQuotesAndEscapesReservedCharacters)
{
    EXPECT_EQ(XdgAutostart::execArgument("/usr/bin/navro"), "/usr/bin/navro");
    EXPECT_EQ(XdgAutostart::execArgument("/home/u/My Apps/navro"), "\"/home/u/My Apps/navro\"");
    EXPECT_EQ(XdgAutostart::execArgument("/opt/100%/navro"), "/opt/100%%/navro");
    // Inside quotes $ becomes \$, and the string-value escaping doubles that backslash.
    EXPECT_EQ(XdgAutostart::execArgument("/opt/$x/navro"), "\"/opt/\\\\$x/navro\"");
    EXPECT_EQ(XdgAutostart::execArgument("/opt/a\"b/navro"), "\"/opt/a\\\\\"b/navro\"");
}

TEST_F(XdgAutostartTest, AnEntryTheUserSwitchedOffReadsAsDisabled)
{
    ASSERT_EQ(item.setEnabled(true), std::nullopt);
    for (const auto& [text, enabled] : std::vector<std::pair<std::string, bool>>{
             // Only the main group counts.
             {"[Desktop Entry]\nExec=navro\n[Desktop Action x]\nHidden=true\n", true},
             {"[Desktop Entry]\nExec=navro\nX-GNOME-Autostart-enabled=false\n", false},
             {"[Desktop Entry]\nType=Application\nExec=/usr/bin/navro\nHidden=true\n", false},
         }) {
        writeBytes(entry().toStdString(), text);
        EXPECT_EQ(item.isEnabled(), enabled) << text;
    }
    ASSERT_EQ(item.setEnabled(true), std::nullopt);
    EXPECT_TRUE(item.isEnabled()) << "enabling again rewrites the hidden entry";
}

TEST_F(XdgAutostartTest, UnwritableLocationsFailWithAReasonAndChangeNothing)
{
    // A plain file where the folder should be stops even root, unlike permission bits.
    writeBytes((configHome() + "/autostart").toStdString(), "not a folder");
    const auto failure = item.setEnabled(true);
    ASSERT_TRUE(failure.has_value());
    EXPECT_TRUE(failure->contains(configHome() + "/autostart")) << failure->toStdString();
    EXPECT_EQ(readBytes((configHome() + "/autostart").toStdString()), "not a folder");

    // A folder in place of the entry cannot be removed as a file.
    QTemporaryDir other;
    ASSERT_TRUE(QDir().mkpath(other.filePath("autostart/navro.desktop/inside")));
    EXPECT_TRUE(XdgAutostart("/usr/bin/navro", other.path()).setEnabled(false).has_value());
    EXPECT_TRUE(QDir(other.filePath("autostart/navro.desktop")).exists());
}

TEST_F(XdgAutostartTest, ASpecialFileInPlaceOfTheEntryIsNeitherReadNorTouched)
{
    ASSERT_TRUE(QDir().mkpath(configHome() + "/autostart"));
    ASSERT_EQ(::mkfifo(entry().toUtf8().constData(), 0600), 0);

    // Opening the FIFO for reading would block here.
    EXPECT_FALSE(item.isEnabled());
    const auto enabling = item.setEnabled(true);
    ASSERT_TRUE(enabling.has_value());
    EXPECT_TRUE(enabling->contains("FIFO")) << enabling->toStdString();
    EXPECT_TRUE(item.setEnabled(false).has_value());
    struct stat info {};
    ASSERT_EQ(::lstat(entry().toUtf8().constData(), &info), 0);
    EXPECT_TRUE(S_ISFIFO(info.st_mode)) << "still the FIFO it was";
}

} // namespace
} // namespace navro
