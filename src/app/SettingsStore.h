#pragma once

#include <QString>
#include <utility>

namespace navro {

// What a typed read of one key found. A missing key and a value that cannot be taken as the
// requested type are kept apart from a real value, because the settings fall back to their
// defaults in both cases but only the second one is worth a log line.
template <typename T> class StoreRead {
public:
    enum class State { value, missing, wrongType };

    static StoreRead found(T value) { return StoreRead(State::value, std::move(value)); }
    static StoreRead missing() { return StoreRead(State::missing, T{}); }
    // `stored`: what the store holds instead, as text, when it can tell.
    static StoreRead wrongType(QString stored = {})
    {
        StoreRead read(State::wrongType, T{});
        read.stored_ = std::move(stored);
        return read;
    }

    State state() const { return state_; }
    bool hasValue() const { return state_ == State::value; }
    const T& value() const { return value_; }
    T valueOr(T fallback) const { return hasValue() ? value_ : std::move(fallback); }
    const QString& stored() const { return stored_; }

private:
    StoreRead(State state, T value) : state_(state), value_(std::move(value)) {}

    State state_;
    T value_;
    QString stored_;
};

// The per-user key-value store behind the settings: typed reads that tell a missing key and a
// wrongly typed value from a real one, and typed writes.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;

    virtual StoreRead<bool> readBool(const QString& key) const = 0;
    virtual StoreRead<int> readInt(const QString& key) const = 0;
    virtual StoreRead<double> readDouble(const QString& key) const = 0;
    virtual StoreRead<QString> readString(const QString& key) const = 0;

    virtual void writeBool(const QString& key, bool value) = 0;
    virtual void writeInt(const QString& key, int value) = 0;
    virtual void writeDouble(const QString& key, double value) = 0;
    virtual void writeString(const QString& key, const QString& value) = 0;
};

} // namespace navro
