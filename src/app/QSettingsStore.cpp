#include "app/QSettingsStore.h"

#include "app/Log.h"

#include <QLocale>
#include <cmath>
#include <limits>

namespace navro {

QSettingsStore::QSettingsStore() : settings_(QStringLiteral("Navro"), QStringLiteral("Navro"))
{
    reportStatus();
}

QSettingsStore::QSettingsStore(const QString& iniPath) : settings_(iniPath, QSettings::IniFormat)
{
    reportStatus();
}

void QSettingsStore::reportStatus()
{
    if (settings_.status() == QSettings::FormatError)
        logLine(QStringLiteral("settings file %1 could not be read; using the defaults")
                    .arg(settings_.fileName())
                    .toStdString());
    else if (settings_.status() == QSettings::AccessError)
        logLine(QStringLiteral("settings file %1 is not accessible; changes may not be kept")
                    .arg(settings_.fileName())
                    .toStdString());
}

// A value read back in the process that wrote it keeps its type; one read from the file is text.
// Both are accepted, and text must be exactly a value of the requested type.

StoreRead<bool> QSettingsStore::readBool(const QString& key) const
{
    if (!settings_.contains(key))
        return StoreRead<bool>::missing();
    const QVariant value = settings_.value(key);
    if (value.typeId() == QMetaType::Bool)
        return StoreRead<bool>::found(value.toBool());
    if (value.typeId() == QMetaType::QString) {
        const QString text = value.toString();
        if (text == QLatin1String("true"))
            return StoreRead<bool>::found(true);
        if (text == QLatin1String("false"))
            return StoreRead<bool>::found(false);
    }
    return StoreRead<bool>::wrongType();
}

StoreRead<int> QSettingsStore::readInt(const QString& key) const
{
    if (!settings_.contains(key))
        return StoreRead<int>::missing();
    const QVariant value = settings_.value(key);
    if (value.typeId() == QMetaType::Int)
        return StoreRead<int>::found(value.toInt());
    // Native stores (property lists) may hand back any whole number as 64 bits.
    if (value.typeId() == QMetaType::LongLong) {
        const qlonglong wide = value.toLongLong();
        if (wide >= std::numeric_limits<int>::min() && wide <= std::numeric_limits<int>::max())
            return StoreRead<int>::found(int(wide));
    }
    if (value.typeId() == QMetaType::QString) {
        bool ok = false;
        const int number = value.toString().toInt(&ok, 10);
        if (ok)
            return StoreRead<int>::found(number);
    }
    return StoreRead<int>::wrongType();
}

StoreRead<double> QSettingsStore::readDouble(const QString& key) const
{
    if (!settings_.contains(key))
        return StoreRead<double>::missing();
    const QVariant value = settings_.value(key);
    bool ok = false;
    double number = 0;
    if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Int ||
        value.typeId() == QMetaType::LongLong)
        number = value.toDouble(&ok);
    else if (value.typeId() == QMetaType::QString)
        number = QLocale::c().toDouble(value.toString(), &ok);
    // "nan" and "inf" parse, but no setting is measured in them.
    if (ok && std::isfinite(number))
        return StoreRead<double>::found(number);
    return StoreRead<double>::wrongType();
}

StoreRead<QString> QSettingsStore::readString(const QString& key) const
{
    if (!settings_.contains(key))
        return StoreRead<QString>::missing();
    const QVariant value = settings_.value(key);
    // Text with an unquoted comma reads back as a list, which is no single string.
    if (value.typeId() == QMetaType::QString)
        return StoreRead<QString>::found(value.toString());
    return StoreRead<QString>::wrongType();
}

void QSettingsStore::writeBool(const QString& key, bool value)
{
    settings_.setValue(key, value);
}

void QSettingsStore::writeInt(const QString& key, int value)
{
    settings_.setValue(key, value);
}

void QSettingsStore::writeDouble(const QString& key, double value)
{
    // QSettings writes a double as its shortest text that reads back to the same value.
    settings_.setValue(key, value);
}

void QSettingsStore::writeString(const QString& key, const QString& value)
{
    settings_.setValue(key, value);
}

void QSettingsStore::sync()
{
    settings_.sync();
}

} // namespace navro
