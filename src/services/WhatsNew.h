#pragma once

#include "services/ReleaseNotes.h"

#include <QObject>
#include <QVariantList>

namespace navro {

class AppSettings;

// The what's-new window's content: decided once at start-up from the version that ran last, which
// it then moves on to the running one.
class WhatsNew final : public QObject {
    Q_OBJECT
    // [{version, english: [lines], arabic: [lines]}], newest first.
    Q_PROPERTY(QVariantList entries READ entries CONSTANT)

public:
    WhatsNew(AppSettings& settings, std::vector<ReleaseNotes> notes, std::string_view running,
             QObject* parent = nullptr);

    // True when the window should be shown now, after an update. A fresh install only records
    // the running version.
    bool checkAtStart();

    QVariantList entries() const { return entries_; }

private:
    AppSettings& settings_;
    std::vector<ReleaseNotes> notes_;
    std::string running_;
    QVariantList entries_;
};

} // namespace navro
