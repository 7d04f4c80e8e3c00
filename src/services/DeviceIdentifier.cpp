#include "services/DeviceIdentifier.h"

#include "app/FileAccess.h"
#include "app/Log.h"

#include <QByteArray>
#include <QMessageAuthenticationCode>
#include <algorithm>

namespace navro {
namespace {

int hexValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    return -1;
}

QByteArray bytes(const Id128& id)
{
    return QByteArray(reinterpret_cast<const char*>(id.data()), qsizetype(id.size()));
}

} // namespace

std::optional<Id128> parseMachineId(std::string_view text)
{
    if (text.size() == 33 && text.back() == '\n')
        text.remove_suffix(1);
    if (text.size() != 32)
        return std::nullopt;
    Id128 id{};
    for (std::size_t i = 0; i < id.size(); ++i) {
        const int high = hexValue(text[2 * i]);
        const int low = hexValue(text[2 * i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        id[i] = std::uint8_t(high * 16 + low);
    }
    if (std::all_of(id.begin(), id.end(), [](std::uint8_t byte) { return byte == 0; }))
        return std::nullopt;
    return id;
}

Id128 applicationSpecificId(const Id128& machineId, const Id128& applicationId)
{
    const QByteArray digest = QMessageAuthenticationCode::hash(
        bytes(applicationId), bytes(machineId), QCryptographicHash::Sha256);
    Id128 id{};
    std::copy_n(reinterpret_cast<const std::uint8_t*>(digest.constData()), id.size(), id.begin());
    id[6] = std::uint8_t((id[6] & 0x0f) | 0x40); // version 4
    id[8] = std::uint8_t((id[8] & 0x3f) | 0x80); // the RFC 4122 variant
    return id;
}

std::string uuidText(const Id128& id)
{
    static constexpr char hex[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < id.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += '-';
        text += hex[id[i] >> 4];
        text += hex[id[i] & 0xf];
    }
    return text;
}

std::optional<std::string> deviceIdentifier(const std::array<std::filesystem::path, 2>& files,
                                            const Id128& applicationId)
{
    std::string reasons;
    for (const auto& file : files) {
        const FileRead read = readRegularFile(file, 64);
        if (!read.ok()) {
            reasons += (reasons.empty() ? "" : "; ") + file.string() + ": " + read.reason;
            continue;
        }
        if (const auto machineId = parseMachineId(read.bytes))
            return uuidText(applicationSpecificId(*machineId, applicationId));
        reasons += (reasons.empty() ? "" : "; ") + file.string() + " holds no machine id (" +
                   excerptForLog(read.bytes, 40) + ")";
    }
    logLine("no device identifier: " + reasons);
    return std::nullopt;
}

} // namespace navro
