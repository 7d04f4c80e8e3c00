#pragma once

#include "media/ArtworkDownloader.h"
#include "media/NowPlayingWatcher.h"

#include <QStringList>
#include <map>
#include <vector>

namespace navro {

// A watcher the test drives: it says what the service asked of it, and the test plays the
// child process's part (output, standard error, exit).
class FakeNowPlayingWatcher final : public NowPlayingWatcher {
public:
    void start(Handlers handlers) override
    {
        ++starts;
        if (failToStart) {
            handlers.failedToStart(QStringLiteral("No such file or directory"));
            return;
        }
        handlers_ = std::move(handlers);
        running_ = true;
    }
    void stop() override
    {
        running_ = false;
        handlers_ = {};
    }
    bool isRunning() const override { return running_; }
    void send(Command command, const QString& player) override
    {
        commands << QStringLiteral("send %1 %2").arg(int(command)).arg(player);
    }
    void seek(double seconds, const QString& player) override
    {
        commands << QStringLiteral("seek %1 %2").arg(seconds).arg(player);
    }
    void raise(const QString& player, std::function<void(bool)> done) override
    {
        commands << QStringLiteral("raise %1").arg(player);
        done(canRaise);
    }

    // The child process's side.
    void print(const QByteArray& bytes) { handlers_.output(bytes); }
    void printError(const QByteArray& bytes) { handlers_.errorOutput(bytes); }
    void exit()
    {
        running_ = false;
        auto exited = std::move(handlers_.exited);
        handlers_ = {};
        exited();
    }

    int starts = 0;
    bool failToStart = false;
    bool canRaise = true;
    QStringList commands;

private:
    Handlers handlers_;
    bool running_ = false;
};

class FakePlayerApplications final : public PlayerApplications {
public:
    std::optional<Application> find(const QString& id) override
    {
        const auto found = applications.find(id);
        if (found == applications.end())
            return std::nullopt;
        return found->second;
    }
    QImage icon(const QString& id) override
    {
        ++iconLookups;
        const auto found = icons.find(id);
        return found == icons.end() ? QImage() : found->second;
    }
    bool launch(const QString& id) override
    {
        launched << id;
        return applications.count(id) > 0;
    }

    std::map<QString, Application> applications;
    std::map<QString, QImage> icons;
    int iconLookups = 0;
    QStringList launched;
};

// Downloads that the test answers when it likes.
class FakeArtworkDownloader final : public ArtworkDownloader {
public:
    void download(const QUrl& url, QObject*, Done done) override
    {
        requests.push_back({url, std::move(done)});
    }
    void answer(std::size_t index, const QByteArray& body) { requests.at(index).done(body); }
    void fail(std::size_t index) { requests.at(index).done(std::nullopt); }

    struct Request {
        QUrl url;
        Done done;
    };
    std::vector<Request> requests;
};

} // namespace navro
