#pragma once

#include "app/Clock.h"
#include "services/UpdateFeed.h"

#include <QObject>
#include <QPointer>
#include <QUrl>
#include <chrono>
#include <memory>

class QNetworkAccessManager;
class QNetworkReply;

namespace navro {

class AppSettings;

// Reads the update feed fixed at build time: once a day while autoUpdate is on, and whenever the
// user asks. Without a feed it never makes a request, and a packaged Navro leaves updating to the
// package manager either way: this only tells the user that a newer version exists.
class UpdateChecker final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasFeed READ hasFeed CONSTANT)
    // "idle" (not checked in this run), "checking", "upToDate", "available" or "failed".
    Q_PROPERTY(QString state READ state NOTIFY changed)
    Q_PROPERTY(QString latestVersion READ latestVersion NOTIFY changed)
    Q_PROPERTY(QString notesEnglish READ notesEnglish NOTIFY changed)
    Q_PROPERTY(QString notesArabic READ notesArabic NOTIFY changed)
    Q_PROPERTY(QString link READ link NOTIFY changed)

public:
    static constexpr Duration checkInterval = std::chrono::hours(24);

    UpdateChecker(AppSettings& settings, Clock& clock, QUrl feed, std::string_view runningVersion,
                  std::chrono::milliseconds timeout = std::chrono::seconds(20),
                  QObject* parent = nullptr);
    ~UpdateChecker() override;

    // Plans the daily check (at once when one is due) and follows autoUpdate from now on.
    void start();
    Q_INVOKABLE void checkNow();

    bool hasFeed() const { return !feed_.isEmpty(); }
    QString state() const { return state_; }
    QString latestVersion() const;
    QString notesEnglish() const;
    QString notesArabic() const;
    QString link() const;

signals:
    void changed();

private:
    void planNextCheck();
    void finish(QNetworkReply* reply);
    void setState(const QString& state, std::optional<UpdateOffer> offer);

    AppSettings& settings_;
    Clock& clock_;
    const QUrl feed_;
    const std::optional<VersionNumber> running_;
    const std::chrono::milliseconds timeout_;
    std::unique_ptr<TaskSlot> nextCheck_;
    std::unique_ptr<QNetworkAccessManager> network_;
    QPointer<QNetworkReply> pending_;
    QString state_ = QStringLiteral("idle");
    std::optional<UpdateOffer> offer_;
};

} // namespace navro
