#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace navro {

// Runs an external program given by absolute path, without a shell, and hands back what it
// wrote to standard output, but only when it exited normally with status 0. Standard error is
// discarded. Nothing blocks: the answer arrives later on the calling thread's event loop, and
// never after `context` is destroyed (the program itself is left to finish on its own).
//
// Services receive a `Shell&` so that tests can pass a subclass that answers from a table.
class Shell {
public:
    using BytesCallback = std::function<void(std::optional<QByteArray>)>;
    using TextCallback = std::function<void(std::optional<QString>)>;

    virtual ~Shell() = default;

    // `callback` always runs later (never inside this call), exactly once unless `context` is
    // destroyed first. A relative path, a program that cannot be started, a crash or a
    // non-zero exit status all give std::nullopt.
    virtual void run(const QString& path, const QStringList& arguments, QObject* context,
                     BytesCallback callback);

    // `run`'s bytes decoded as UTF-8, untrimmed; std::nullopt when run gave nothing or the bytes
    // are not valid UTF-8.
    void text(const QString& path, const QStringList& arguments, QObject* context,
              TextCallback callback);

    // Strict decoding used by `text`: invalid sequences give std::nullopt instead of U+FFFD.
    static std::optional<QString> decodeUtf8(const QByteArray& bytes);
};

} // namespace navro
