#pragma once

#include "app/Clock.h"
#include "app/IniDocument.h"
#include "app/SettingsStore.h"

#include <QObject>
#include <filesystem>
#include <set>

namespace navro {

// The settings as an INI file, by default ~/.config/Navro/Navro.conf, in the dialect QSettings
// writes (files of earlier versions read the same), kept 0600 in a 0700 folder (a file found
// with looser modes is made so when it is read).
//
// Nothing in the file is trusted. Anything but a regular file of a sensible size is left alone
// and the defaults serve; lines that cannot be read are named in the log and dropped, and before
// such a file is rewritten a copy of it is kept beside it. Changes reach the disk shortly after
// they are made, whole and atomically, merged into what the file holds by then (an edit made by
// hand meanwhile survives). A write that fails is logged once, published as saveProblem for the
// settings window, and tried again until it works; the values stay in memory meanwhile.
//
// An INI file holds text only, so "of another type" means "does not parse as the requested
// type": a Bool is exactly true or false, an Int is a whole decimal number, a Double a finite
// decimal number.
class IniSettingsStore final : public QObject, public SettingsStore {
    Q_OBJECT
    Q_PROPERTY(QString saveProblem READ saveProblem NOTIFY saveProblemChanged)

public:
    // A slider's drag or a run of clicks is one change to the user, and one write to the disk.
    static constexpr Duration saveDelay = std::chrono::milliseconds(250);
    static constexpr Duration firstRetryDelay = std::chrono::seconds(2);
    static constexpr Duration longestRetryDelay = std::chrono::seconds(60);
    // Far more than every setting takes; a larger file is not a settings file.
    static constexpr std::size_t maxFileBytes = 256 * 1024;

    IniSettingsStore(Clock& clock, std::filesystem::path file, QObject* parent = nullptr);
    ~IniSettingsStore() override;

    // "Navro/Navro.conf" in $XDG_CONFIG_HOME, else in ~/.config.
    static std::filesystem::path defaultPath();

    StoreRead<bool> readBool(const QString& key) const override;
    StoreRead<int> readInt(const QString& key) const override;
    StoreRead<double> readDouble(const QString& key) const override;
    StoreRead<QString> readString(const QString& key) const override;

    void writeBool(const QString& key, bool value) override;
    void writeInt(const QString& key, int value) override;
    void writeDouble(const QString& key, double value) override;
    void writeString(const QString& key, const QString& value) override;

    // Writes pending changes at once (at the end of the process). False when they could not be
    // written; that is logged.
    bool saveNow();
    bool hasUnsavedChanges() const { return !changed_.empty(); }

    // Why changes cannot be written at the moment, for the user; empty while they can.
    QString saveProblem() const { return saveProblem_; }
    const std::filesystem::path& path() const { return file_; }

signals:
    void saveProblemChanged();

private:
    // The stored text of `key` when it is one plain string.
    const std::string* text(const QString& key) const;
    template <typename T> StoreRead<T> notOfType(const QString& key) const;
    void load();
    void write(const QString& key, std::string text);
    bool save();
    void keepPrivate();
    bool keepDamagedOriginal();
    void reportSaveFailure(const std::string& reason);

    Clock& clock_;
    std::filesystem::path file_;
    IniValues values_;
    std::set<std::string> changed_;
    std::unique_ptr<TaskSlot> saveTask_;
    Duration retryDelay_ = firstRetryDelay;
    QString saveProblem_;
};

} // namespace navro
