#include "platform/linux/DesktopEntries.h"

#include "TemporaryFolder.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace navro {
namespace {

TEST(DesktopEntryParsing, ReadsTheMainGroupOfApplicationEntries)
{
    const auto entry = parseDesktopEntry(QStringLiteral("org.gnome.Nautilus.desktop"), R"(
# A comment
[Desktop Entry]
Type=Application
Name=Files
Name[ar_EG]=ملفات مصرية
Name[ar]=الملفات
Name[de]=Dateien
Icon=org.gnome.Nautilus
Exec="/usr/bin/nautilus" --new-window %U
StartupWMClass=org.gnome.Nautilus
Comment=Access\sand\\organise files

[Desktop Action new-window]
Name=New Window
Exec=other
)");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->id, QStringLiteral("org.gnome.Nautilus"));
    EXPECT_EQ(entry->displayName(false), QStringLiteral("Files"));
    EXPECT_EQ(entry->displayName(true), QStringLiteral("الملفات"));
    EXPECT_EQ(entry->icon, QStringLiteral("org.gnome.Nautilus"));
    EXPECT_EQ(entry->program, QStringLiteral("nautilus"));
    EXPECT_EQ(entry->windowClass, QStringLiteral("org.gnome.Nautilus"));
}

TEST(DesktopEntryParsing, RegionalArabicAndEscapesAndRefusals)
{
    const auto regional = parseDesktopEntry(
        QStringLiteral("a"), "[Desktop Entry]\nType=Application\nName=A\\sB\nName[ar_SA]=أ\n");
    ASSERT_TRUE(regional);
    EXPECT_EQ(regional->name, QStringLiteral("A B"));
    EXPECT_EQ(regional->displayName(true), QStringLiteral("أ"));

    for (const char* refused : {
             "[Desktop Entry]\nType=Link\nName=Site\n",
             "[Desktop Entry]\nType=Application\nName=Gone\nHidden=true\n",
             "[Desktop Entry]\nType=Application\n",
             "[Other Group]\nType=Application\nName=Elsewhere\n",
             "\xff\xfe garbage without groups",
         })
        EXPECT_FALSE(parseDesktopEntry(QStringLiteral("x"), refused)) << refused;
}

class DesktopEntriesTest : public ::testing::Test {
protected:
    void put(int folder, const QString& relativePath, const QByteArray& text)
    {
        writeBytes((folders_[folder] + QLatin1Char('/') + relativePath).toStdString(),
                   text.toStdString());
    }
    static QByteArray app(const char* name, const char* extra = "")
    {
        return QByteArray("[Desktop Entry]\nType=Application\nName=") + name + "\n" + extra;
    }

    QTemporaryDir root_;
    QStringList folders_{root_.path() + QStringLiteral("/home"),
                         root_.path() + QStringLiteral("/system")};
};

TEST_F(DesktopEntriesTest, IdsAreFoundInTheFirstFolderThatHasThem)
{
    put(0, QStringLiteral("mpv.desktop"), app("My mpv"));
    put(1, QStringLiteral("mpv.desktop"), app("mpv Media Player"));
    put(1, QStringLiteral("kde/okular.desktop"), app("Okular"));
    DesktopEntries entries(folders_);

    EXPECT_EQ(entries.byId(QStringLiteral("mpv"))->name, QStringLiteral("My mpv"));
    EXPECT_EQ(entries.byId(QStringLiteral("mpv.desktop"))->name, QStringLiteral("My mpv"));
    EXPECT_EQ(entries.byId(QStringLiteral("kde-okular"))->name, QStringLiteral("Okular"));
    EXPECT_FALSE(entries.byId(QStringLiteral("vlc")));
    EXPECT_FALSE(entries.byId(QString()));

    // Installed while Navro runs: the next miss finds it.
    put(1, QStringLiteral("vlc.desktop"), app("VLC"));
    EXPECT_EQ(entries.byId(QStringLiteral("vlc"))->name, QStringLiteral("VLC"));
}

TEST_F(DesktopEntriesTest, WindowClassesMatchLikeAWindowManagerDoes)
{
    put(1, QStringLiteral("org.gnome.TextEditor.desktop"), app("Text Editor"));
    put(1, QStringLiteral("code.desktop"),
        app("Code", "StartupWMClass=Code\nExec=/usr/share/code/code\n"));
    put(1, QStringLiteral("firefox-esr.desktop"),
        app("Firefox ESR", "Exec=/usr/lib/firefox-esr/firefox-esr %u\n"));
    put(1, QStringLiteral("xterm.desktop"), app("XTerm", "Exec=xterm\n"));
    put(1, QStringLiteral("uxterm.desktop"), app("UXTerm", "Exec=uxterm\nStartupWMClass=UXTerm\n"));
    DesktopEntries entries(folders_);

    struct Case {
        const char* instance;
        const char* className;
        const char* expected; // empty: no entry
    };
    for (const Case& c : {
             Case{"code", "Code", "Code"},
             Case{"Navigator", "firefox-esr", "Firefox ESR"},
             Case{"gnome-text-editor", "TextEditor", "Text Editor"},
             Case{"xterm", "XTerm", "XTerm"},
             Case{"uxterm", "UXTerm", "UXTerm"},
             Case{"xclip", "Xclip", ""},
             Case{"", "", ""},
         }) {
        const auto entry =
            entries.byWindowClass(QString::fromUtf8(c.instance), QString::fromUtf8(c.className));
        EXPECT_EQ(entry ? entry->name : QString(), QString::fromUtf8(c.expected))
            << c.instance << " " << c.className;
    }
}

} // namespace
} // namespace navro
