#pragma once

#include "app/SettingsStore.h"

#include <QString>
#include <functional>
#include <map>
#include <variant>
#include <vector>

namespace navro {

// An in-memory store with strict types: a value of one type read as another is a wrong type.
// Writes are recorded in order; onWrite runs just before a value is stored.
class FakeSettingsStore final : public SettingsStore {
public:
    using Value = std::variant<bool, int, double, QString>;

    StoreRead<bool> readBool(const QString& key) const override { return read<bool>(key); }
    StoreRead<int> readInt(const QString& key) const override { return read<int>(key); }
    StoreRead<double> readDouble(const QString& key) const override { return read<double>(key); }
    StoreRead<QString> readString(const QString& key) const override { return read<QString>(key); }

    void writeBool(const QString& key, bool value) override { write(key, value); }
    void writeInt(const QString& key, int value) override { write(key, value); }
    void writeDouble(const QString& key, double value) override { write(key, value); }
    void writeString(const QString& key, const QString& value) override { write(key, value); }

    std::map<QString, Value> values;
    std::vector<QString> writtenKeys;
    std::function<void(const QString& key)> onWrite;

private:
    template <typename T> StoreRead<T> read(const QString& key) const
    {
        auto found = values.find(key);
        if (found == values.end())
            return StoreRead<T>::missing();
        if (const T* value = std::get_if<T>(&found->second))
            return StoreRead<T>::found(*value);
        return StoreRead<T>::wrongType();
    }

    void write(const QString& key, Value value)
    {
        if (onWrite)
            onWrite(key);
        values[key] = std::move(value);
        writtenKeys.push_back(key);
    }
};

} // namespace navro
