#include "app/Shell.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace navro {
namespace {

QCoreApplication& application()
{
    static int argc = 1;
    static char name[] = "shell_tests";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);
    return app;
}

// Turns the event loop until `done` holds or the deadline passes.
template <typename Predicate> bool waitFor(Predicate done, int milliseconds = 10000)
{
    QDeadlineTimer deadline(milliseconds);
    while (!done() && !deadline.hasExpired()) {
        application().processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
    }
    return done();
}

struct BytesResult {
    bool called = false;
    int calls = 0;
    std::optional<QByteArray> value;
};

struct TextResult {
    bool called = false;
    std::optional<QString> value;
};

class ShellTest : public ::testing::Test {
protected:
    void SetUp() override { application(); }

    BytesResult run(const QString& path, const QStringList& arguments)
    {
        auto result = std::make_shared<BytesResult>();
        shell.run(path, arguments, &context, [result](std::optional<QByteArray> bytes) {
            result->called = true;
            ++result->calls;
            result->value = std::move(bytes);
        });
        EXPECT_TRUE(waitFor([&] { return result->called; }));
        return *result;
    }

    TextResult text(const QString& path, const QStringList& arguments)
    {
        auto result = std::make_shared<TextResult>();
        shell.text(path, arguments, &context, [result](std::optional<QString> value) {
            result->called = true;
            result->value = std::move(value);
        });
        EXPECT_TRUE(waitFor([&] { return result->called; }));
        return *result;
    }

    Shell shell;
    QObject context;
};

TEST_F(ShellTest, SuccessfulProgramYieldsStandardOutputOnlyAndNeverStandardError)
{
    const auto result = run("/bin/sh", {"-c", "echo out; echo err >&2; exit 0"});
    ASSERT_TRUE(result.value.has_value());
    EXPECT_EQ(*result.value, QByteArray("out\n"));
    EXPECT_EQ(result.calls, 1);

    const auto text = this->text("/bin/sh", {"-c", "printf '  padded \\n\\n'"});
    ASSERT_TRUE(text.value.has_value());
    EXPECT_EQ(*text.value, QString("  padded \n\n")) << "text is never trimmed";

    const auto silent = run("/bin/true", {});
    ASSERT_TRUE(silent.value.has_value()) << "exit 0 with no output is an empty answer, not none";
    EXPECT_TRUE(silent.value->isEmpty());
}

TEST_F(ShellTest, NonZeroExitOrCrashYieldsNothingEvenAfterPrinting)
{
    EXPECT_FALSE(run("/bin/sh", {"-c", "echo printed; exit 1"}).value.has_value());
    EXPECT_FALSE(text("/bin/sh", {"-c", "echo printed; exit 3"}).value.has_value());
    EXPECT_FALSE(run("/bin/sh", {"-c", "echo printed; kill -KILL $$"}).value.has_value());
}

TEST_F(ShellTest, ArgumentsReachTheProgramVerbatimWithoutAShell)
{
    const auto result = run("/bin/echo", {"$HOME", "a b", "*", "; exit 1"});
    ASSERT_TRUE(result.value.has_value());
    EXPECT_EQ(*result.value, QByteArray("$HOME a b * ; exit 1\n"));
}

TEST_F(ShellTest, UnusablePathsYieldNothing)
{
    QTemporaryDir folder;
    ASSERT_TRUE(folder.isValid());
    EXPECT_FALSE(run(folder.filePath("no-such-program"), {}).value.has_value());
    EXPECT_FALSE(run("sh", {"-c", "echo relative"}).value.has_value())
        << "relative paths are refused, not looked up in PATH";
    EXPECT_FALSE(run("bin/sh", {"-c", "echo relative"}).value.has_value());
    EXPECT_FALSE(run("", {}).value.has_value());
    EXPECT_FALSE(run(folder.path(), {}).value.has_value()) << "a folder is not a program";
}

TEST_F(ShellTest, InvalidUtf8IsBytesForRunButNothingForText)
{
    const auto bytes = run("/usr/bin/printf", {"ok\\377"});
    ASSERT_TRUE(bytes.value.has_value());
    EXPECT_EQ(*bytes.value, QByteArray("ok\xff"));
    EXPECT_FALSE(text("/usr/bin/printf", {"ok\\377"}).value.has_value());

    const auto arabic = text("/usr/bin/printf", {"\u0646\u0627\u0641\u0631\u0648"});
    ASSERT_TRUE(arabic.value.has_value());
    EXPECT_EQ(*arabic.value, QString::fromUtf8("\u0646\u0627\u0641\u0631\u0648"));
}

TEST_F(ShellTest, DecodeUtf8RejectsMalformedSequences)
{
    EXPECT_EQ(Shell::decodeUtf8(QByteArray("plain")), QString("plain"));
    EXPECT_EQ(Shell::decodeUtf8(QByteArray()), QString());
    EXPECT_FALSE(Shell::decodeUtf8(QByteArray("\xc3")).has_value()) << "truncated sequence";
    EXPECT_FALSE(Shell::decodeUtf8(QByteArray("\xc0\xaf")).has_value()) << "overlong encoding";
    EXPECT_FALSE(Shell::decodeUtf8(QByteArray("\xed\xa0\x80")).has_value()) << "surrogate";
    EXPECT_EQ(Shell::decodeUtf8(QByteArray("caf\xc3\xa9")), QString::fromUtf8("caf\xc3\xa9"));
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
    const auto big = run("/bin/sh", {"-c", "head -c 1000000 /dev/zero"});
    ASSERT_TRUE(big.value.has_value());
    EXPECT_EQ(big.value->size(), 1000000);
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
