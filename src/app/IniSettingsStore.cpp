#include "app/IniSettingsStore.h"

#include "app/FileAccess.h"
#include "app/Log.h"
#include "app/SafeStorage.h"
#include "app/Version.h"

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <sys/stat.h>

namespace navro {
namespace {

// The lines of a damaged file that the log names one by one; the rest are counted.
constexpr std::size_t namedDroppedLines = 5;

std::string keyText(const QString& key)
{
    return key.toStdString();
}

// from_chars takes no leading plus; a hand-edited "+5" is still a number.
std::string_view withoutPlus(std::string_view text)
{
    if (text.size() > 1 && text.front() == '+' && text.at(1) != '-')
        text.remove_prefix(1);
    return text;
}

template <typename Number> std::optional<Number> parseNumber(std::string_view text)
{
    text = withoutPlus(text);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::string describeDamage(const IniDocument& document)
{
    std::string kept;
    for (const auto& [key, value] : document.values)
        kept += (kept.empty() ? "" : ", ") + excerptForLog(key, 40);
    std::string dropped;
    for (std::size_t i = 0; i < document.unreadLines.size() && i < namedDroppedLines; ++i) {
        const IniLine& line = document.unreadLines[i];
        dropped += (i == 0 ? "" : ", ") + std::string("line ") + std::to_string(line.number) +
                   " \"" + line.excerpt + "\"";
    }
    if (document.unreadLines.size() > namedDroppedLines)
        dropped += " and " + std::to_string(document.unreadLines.size() - namedDroppedLines) +
                   " more lines";
    return "kept " + (kept.empty() ? std::string("no settings") : kept) + "; dropped " + dropped +
           ", which could not be read";
}

} // namespace

IniSettingsStore::IniSettingsStore(Clock& clock, std::filesystem::path file, QObject* parent)
    : QObject(parent), clock_(clock), file_(std::move(file)), saveTask_(clock.makeSlot())
{
    load();
}

IniSettingsStore::~IniSettingsStore() = default;

std::filesystem::path IniSettingsStore::defaultPath()
{
    return configHome() / "Navro" / "Navro.conf";
}

void IniSettingsStore::load()
{
    const FileRead read = readRegularFile(file_, maxFileBytes);
    switch (read.status) {
    case FileRead::Status::missing:
        return;
    case FileRead::Status::ok: {
        IniDocument document = parseIni(read.bytes);
        if (!document.unreadLines.empty())
            logLine("settings file " + file_.string() + ": " + describeDamage(document) +
                    "; a copy of the file is kept before it is next written");
        values_ = std::move(document.values);
        keepPrivate();
        return;
    }
    case FileRead::Status::notRegular:
        logLine("settings file " + file_.string() + ": " + read.reason +
                "; using the defaults and leaving it as it is");
        return;
    case FileRead::Status::tooLarge:
    case FileRead::Status::failed:
        logLine("settings file " + file_.string() + " could not be read (" + read.reason +
                "); using the defaults; a copy of the file is kept before it is next written");
        return;
    }
}

const std::string* IniSettingsStore::text(const QString& key) const
{
    const auto found = values_.find(keyText(key));
    if (found == values_.end() || found->second.kind != IniValue::Kind::text)
        return nullptr;
    return &found->second.text;
}

template <typename T> StoreRead<T> IniSettingsStore::notOfType(const QString& key) const
{
    const auto found = values_.find(keyText(key));
    if (found == values_.end())
        return StoreRead<T>::missing();
    return StoreRead<T>::wrongType(QString::fromStdString(found->second.text));
}

StoreRead<bool> IniSettingsStore::readBool(const QString& key) const
{
    if (const std::string* stored = text(key)) {
        if (*stored == "true")
            return StoreRead<bool>::found(true);
        if (*stored == "false")
            return StoreRead<bool>::found(false);
    }
    return notOfType<bool>(key);
}

StoreRead<int> IniSettingsStore::readInt(const QString& key) const
{
    if (const std::string* stored = text(key))
        if (const auto number = parseNumber<int>(*stored))
            return StoreRead<int>::found(*number);
    return notOfType<int>(key);
}

StoreRead<double> IniSettingsStore::readDouble(const QString& key) const
{
    // "nan" and "inf" parse, but no setting is measured in them.
    if (const std::string* stored = text(key))
        if (const auto number = parseNumber<double>(*stored); number && std::isfinite(*number))
            return StoreRead<double>::found(*number);
    return notOfType<double>(key);
}

StoreRead<QString> IniSettingsStore::readString(const QString& key) const
{
    if (const std::string* stored = text(key))
        return StoreRead<QString>::found(QString::fromStdString(*stored));
    return notOfType<QString>(key);
}

void IniSettingsStore::writeBool(const QString& key, bool value)
{
    write(key, value ? "true" : "false");
}

void IniSettingsStore::writeInt(const QString& key, int value)
{
    write(key, std::to_string(value));
}

void IniSettingsStore::writeDouble(const QString& key, double value)
{
    // The shortest text that reads back as the same double.
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    write(key, std::string(buffer, result.ptr));
}

void IniSettingsStore::writeString(const QString& key, const QString& value)
{
    write(key, value.toStdString());
}

void IniSettingsStore::write(const QString& key, std::string text)
{
    const std::string name = keyText(key);
    values_[name] = IniValue::plain(std::move(text));
    changed_.insert(name);
    // Also while a retry waits: a new change is worth an attempt of its own.
    saveTask_->schedule(saveDelay, [this] { save(); });
}

bool IniSettingsStore::saveNow()
{
    saveTask_->cancel();
    if (!hasUnsavedChanges())
        return true;
    if (save())
        return true;
    logLine("the changes to " + std::to_string(changed_.size()) +
            " settings could not be saved: " + saveProblem_.toStdString());
    return false;
}

bool IniSettingsStore::save()
{
    if (!hasUnsavedChanges())
        return true;
    if (const auto error = makePrivateFolder(file_.parent_path())) {
        reportSaveFailure(*error);
        return false;
    }
    // What the file holds now is the base: someone may have edited it since it was read, and only
    // the keys changed here are Navro's to replace.
    IniValues merged = values_;
    const FileRead current = readRegularFile(file_, maxFileBytes);
    if (current.status == FileRead::Status::notRegular) {
        reportSaveFailure(current.reason);
        return false;
    }
    bool damaged =
        current.status == FileRead::Status::tooLarge || current.status == FileRead::Status::failed;
    if (current.ok()) {
        IniDocument document = parseIni(current.bytes);
        damaged = !document.unreadLines.empty();
        merged = std::move(document.values);
    }
    if (damaged && !keepDamagedOriginal()) {
        reportSaveFailure("the file could not be read whole and no copy of it could be kept, so "
                          "it is left as it is");
        return false;
    }
    for (const std::string& key : changed_)
        merged[key] = values_.at(key);
    if (const auto error = writeFileAtomically(file_, writeIni(merged))) {
        reportSaveFailure(*error);
        return false;
    }
    values_ = std::move(merged);
    changed_.clear();
    retryDelay_ = firstRetryDelay;
    if (!saveProblem_.isEmpty()) {
        logLine("settings saved to " + file_.string() + " again");
        saveProblem_.clear();
        emit saveProblemChanged();
    }
    return true;
}

void IniSettingsStore::keepPrivate()
{
    // Files of earlier versions, or made by hand, were readable by everyone.
    std::optional<FileError> error = makePrivateFolder(file_.parent_path());
    struct stat info {};
    if (!error && ::stat(file_.c_str(), &info) == 0 && (info.st_mode & 07777) != 0600 &&
        ::chmod(file_.c_str(), 0600) != 0)
        error = std::strerror(errno);
    if (error)
        logLine("settings file " + file_.string() + " could not be made private: " + *error);
}

bool IniSettingsStore::keepDamagedOriginal()
{
    const WallTime now = clock_.now();
    SafeStorage::backUpUnreadable(file_, now);
    // A copy made earlier in the same second carries the same name and counts as well.
    const std::string copy =
        SafeStorage::backupName(file_.filename().string(), applicationVersion(), now);
    std::error_code ignored;
    return std::filesystem::is_regular_file(file_.parent_path() / copy, ignored);
}

void IniSettingsStore::reportSaveFailure(const std::string& reason)
{
    const QString problem = QString::fromStdString(reason + " (" + file_.string() + ")");
    if (saveProblem_.isEmpty())
        logLine("settings cannot be saved to " + file_.string() + ": " + reason +
                "; they are kept and saved as soon as that works");
    if (problem != saveProblem_) {
        saveProblem_ = problem;
        emit saveProblemChanged();
    }
    saveTask_->schedule(retryDelay_, [this] { save(); });
    retryDelay_ = std::min(retryDelay_ * 2, longestRetryDelay);
}

} // namespace navro
