#include "app/Shell.h"

#include "QtTestApplication.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace navro {
namespace {

class ShellTest : public ::testing::Test {
protected:
    void SetUp() override { testApplication(); }

    // Starts a program through `start` and waits for its answer.
    template <typename T, typename Start> std::optional<T> answer(Start start)
    {
        auto answers = std::make_shared<std::vector<std::optional<T>>>();
        start([answers](std::optional<T> value) { answers->push_back(std::move(value)); });
        EXPECT_TRUE(waitFor([&] { return !answers->empty(); }));
        return answers->empty() ? std::nullopt : answers->front();
    }
    std::optional<QByteArray> run(const QString& path, const QStringList& arguments)
    {
        return answer<QByteArray>([&](auto done) { shell.run(path, arguments, &context, done); });
    }
    std::optional<QString> text(const QString& path, const QStringList& arguments)
    {
        return answer<QString>([&](auto done) { shell.text(path, arguments, &context, done); });
    }

    Shell shell;
    QObject context;
};

// Only a program that exits 0 has an answer: its standard output, untrimmed, without its standard
// error. Its arguments reach it verbatim, without a shell.
TEST_F(ShellTest, OnlyASuccessfulProgramAnswersWithItsStandardOutput)
{
    EXPECT_EQ(run("/bin/sh", {"-c", "echo out; echo err >&2; exit 0"}), QByteArray("out\n"));
    EXPECT_EQ(text("/bin/sh", {"-c", "printf '  padded \\n\\n'"}), QString("  padded \n\n"));
    EXPECT_EQ(run("/bin/true", {}), QByteArray()) << "exit 0 with no output is an empty answer";
    EXPECT_EQ(run("/bin/echo", {"$HOME", "a b", "*", "; exit 1"}),
              QByteArray("$HOME a b * ; exit 1\n"));

    EXPECT_EQ(run("/bin/sh", {"-c", "echo printed; exit 1"}), std::nullopt);
    EXPECT_EQ(text("/bin/sh", {"-c", "echo printed; exit 3"}), std::nullopt);
    EXPECT_EQ(run("/bin/sh", {"-c", "echo printed; kill -KILL $$"}), std::nullopt);
}

TEST_F(ShellTest, UnusablePathsYieldNothing)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    // A missing program, relative paths (never looked up in PATH), nothing, and a folder.
    for (const QString& path : {folder.filePath("no-such-program"), QString("sh"),
                                QString("bin/sh"), QString(), folder.path()})
        EXPECT_EQ(run(path, {"-c", "echo relative"}), std::nullopt) << path.toStdString();
}

TEST_F(ShellTest, InvalidUtf8IsBytesForRunButNothingForText)
{
    EXPECT_EQ(run("/usr/bin/printf", {"ok\\377"}), QByteArray("ok\xff"));
    EXPECT_EQ(text("/usr/bin/printf", {"ok\\377"}), std::nullopt);
    EXPECT_EQ(text("/usr/bin/printf", {"\u0646\u0627\u0641\u0631\u0648"}),
              QString::fromUtf8("\u0646\u0627\u0641\u0631\u0648"));

    EXPECT_EQ(Shell::decodeUtf8(QByteArray()), QString());
    EXPECT_EQ(Shell::decodeUtf8(QByteArray("caf\xc3\xa9")), QString::fromUtf8("caf\xc3\xa9"));
    for (const char* malformed : {"\xc3", "\xc0\xaf", "\xed\xa0\x80"}) // cut, overlong, surrogate
        EXPECT_FALSE(Shell::decodeUtf8(QByteArray(malformed)).has_value()) << malformed;
}

TEST_F(ShellTest, AnswerNeverArrivesInsideTheCallAndLargeOutputIsComplete)
{
    for (const QString& path : {QString("relative"), QString("/no/such/program"), QString("/")}) {
        bool called = false;
        shell.run(path, {}, &context, [&](std::optional<QByteArray>) { called = true; });
        EXPECT_FALSE(called) << "even an immediate refusal is delivered later: "
                             << path.toStdString();
        EXPECT_TRUE(waitFor([&] { return called; }));
    }

    // More than a pipe buffer holds, so the program only exits once we have read it.
    EXPECT_EQ(run("/bin/sh", {"-c", "head -c 1000000 /dev/zero"}).value_or("").size(), 1000000);
}

// True once the process has exited (gone or a zombie): its exit is then waiting for our loop.
bool hasExited(const QString& pid)
{
    QFile stat("/proc/" + pid + "/stat");
    if (!stat.open(QIODevice::ReadOnly)) {
        return true;
    }
    const QByteArray fields = stat.readAll();
    const qsizetype end = fields.lastIndexOf(')');
    return end >= 0 && fields.mid(end + 2, 1) == "Z";
}

TEST_F(ShellTest, CallerThatGoesAwayIsNotCalledBack)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    const QString marker = folder.filePath("pid");
    bool called = false;
    {
        QObject shortLived;
        // The program waits for its go-ahead file, so it is certainly still running when the
        // caller disappears.
        shell.run("/bin/sh",
                  {"-c", QString("while [ ! -e '%1.go' ]; do sleep 0.01; done; echo $$ > '%1.tmp'; "
                                 "mv '%1.tmp' '%1'; echo done")
                             .arg(marker)},
                  &shortLived, [&](std::optional<QByteArray>) { called = true; });
    }
    QFile go(marker + ".go");
    ASSERT_TRUE(go.open(QIODevice::WriteOnly));
    go.close();
    QString pid;
    ASSERT_TRUE(waitFor([&] {
        QFile file(marker);
        if (file.open(QIODevice::ReadOnly)) {
            pid = QString::fromLatin1(file.readAll().trimmed());
        }
        return !pid.isEmpty() && hasExited(pid);
    })) << "the program itself goes on to the end";
    // A later run needs several turns of the loop, and the earlier exit is handled on the first.
    run("/bin/true", {});
    EXPECT_FALSE(called);

    bool refusedCalled = false;
    {
        QObject shortLived;
        shell.run("relative", {}, &shortLived,
                  [&](std::optional<QByteArray>) { refusedCalled = true; });
    }
    run("/bin/true", {});
    EXPECT_FALSE(refusedCalled);
}

} // namespace
} // namespace navro
