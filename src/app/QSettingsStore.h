#pragma once

#include "app/SettingsStore.h"

#include <QSettings>

namespace navro {

// The settings store of the desktop: QSettings under organization and application "Navro"
// (~/.config/Navro/Navro.conf on Linux), or an INI file at a given path.
//
// An INI file holds text only, so "of another type" means "does not parse as the requested
// type": a Bool is exactly true or false, an Int is a whole decimal number, a Double a finite
// decimal number.
class QSettingsStore final : public SettingsStore {
public:
    QSettingsStore();
    explicit QSettingsStore(const QString& iniPath);

    StoreRead<bool> readBool(const QString& key) const override;
    StoreRead<int> readInt(const QString& key) const override;
    StoreRead<double> readDouble(const QString& key) const override;
    StoreRead<QString> readString(const QString& key) const override;

    void writeBool(const QString& key, bool value) override;
    void writeInt(const QString& key, int value) override;
    void writeDouble(const QString& key, double value) override;
    void writeString(const QString& key, const QString& value) override;

    // Writes pending changes to disk now (QSettings otherwise does so later or on destruction).
    void sync();

private:
    void reportStatus();

    QSettings settings_;
};

} // namespace navro
