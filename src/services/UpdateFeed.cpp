#include "services/UpdateFeed.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUrl>
#include <charconv>

namespace navro {

std::optional<VersionNumber> VersionNumber::parse(std::string_view text)
{
    VersionNumber version;
    std::size_t start = 0;
    while (true) {
        const std::size_t end = std::min(text.find('.', start), text.size());
        const std::string_view part = text.substr(start, end - start);
        unsigned value = 0;
        // Digits only, at most six of them: no sign, no space, no suffix.
        if (part.empty() || part.size() > 6 ||
            part.find_first_not_of("0123456789") != std::string_view::npos)
            return std::nullopt;
        std::from_chars(part.data(), part.data() + part.size(), value);
        version.parts_.push_back(value);
        if (version.parts_.size() > 4)
            return std::nullopt;
        if (end == text.size())
            return version;
        start = end + 1;
    }
}

std::string VersionNumber::text() const
{
    std::string text;
    for (std::size_t i = 0; i < parts_.size(); ++i)
        text += (i ? "." : "") + std::to_string(parts_[i]);
    return text;
}

int VersionNumber::compare(const VersionNumber& other) const
{
    const std::size_t length = std::max(parts_.size(), other.parts_.size());
    for (std::size_t i = 0; i < length; ++i) {
        const unsigned mine = i < parts_.size() ? parts_[i] : 0;
        const unsigned theirs = i < other.parts_.size() ? other.parts_[i] : 0;
        if (mine != theirs)
            return mine < theirs ? -1 : 1;
    }
    return 0;
}

namespace {

UpdateFeedReading failure(std::string why)
{
    return {std::nullopt, std::move(why)};
}

// A string member, or nothing when it is present with another type.
std::optional<std::string> optionalText(const QJsonObject& object, const QString& key)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined() || value.isNull())
        return std::string();
    if (!value.isString())
        return std::nullopt;
    return value.toString().toStdString();
}

} // namespace

UpdateFeedReading parseUpdateFeed(std::string_view bytes)
{
    if (bytes.size() > maxUpdateFeedBytes)
        return failure("the feed is larger than " + std::to_string(maxUpdateFeedBytes) + " bytes");
    QJsonParseError error;
    const QJsonDocument document =
        QJsonDocument::fromJson(QByteArray(bytes.data(), qsizetype(bytes.size())), &error);
    if (error.error != QJsonParseError::NoError)
        return failure("not JSON (" + error.errorString().toStdString() + " at byte " +
                       std::to_string(error.offset) + ")");
    if (!document.isObject())
        return failure("not a JSON object");
    const QJsonObject feed = document.object();

    const QJsonValue versionValue = feed.value(QStringLiteral("version"));
    if (!versionValue.isString())
        return failure("no \"version\" text");
    const std::string versionText = versionValue.toString().toStdString();
    const auto version = VersionNumber::parse(versionText);
    if (!version)
        return failure("\"version\" is no version number");

    const QJsonValue linkValue = feed.value(QStringLiteral("link"));
    if (!linkValue.isString())
        return failure("no \"link\" text");
    const QUrl link(linkValue.toString(), QUrl::StrictMode);
    if (!link.isValid() || link.host().isEmpty() ||
        (link.scheme() != QLatin1String("https") && link.scheme() != QLatin1String("http")))
        return failure("\"link\" is not an http(s) address");

    const auto date = optionalText(feed, QStringLiteral("date"));
    if (!date)
        return failure("\"date\" is not text");
    static const QRegularExpression datePattern(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}$"));
    if (!date->empty() && !datePattern.match(QString::fromStdString(*date)).hasMatch())
        return failure("\"date\" is not YYYY-MM-DD");

    UpdateOffer offer{*version, *date, {}, {}, link.toString(QUrl::FullyEncoded).toStdString()};
    const QJsonValue notes = feed.value(QStringLiteral("notes"));
    if (notes.isObject()) {
        const auto english = optionalText(notes.toObject(), QStringLiteral("en"));
        const auto arabic = optionalText(notes.toObject(), QStringLiteral("ar"));
        if (!english || !arabic)
            return failure("a note is not text");
        offer.notesEnglish = *english;
        offer.notesArabic = *arabic;
    } else if (!notes.isUndefined() && !notes.isNull()) {
        return failure("\"notes\" is not an object");
    }
    return {std::move(offer), {}};
}

} // namespace navro
