#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>
#include <optional>
#include <string>

namespace navro {

// What the About page shows of this copy of Navro: the device identifier, how it is updated, and
// the licences of Navro and of every third-party file it carries.
class AboutInfo final : public QObject {
    Q_OBJECT
    // Upper-case UUID, or "" when the machine has no machine id.
    Q_PROPERTY(QString deviceIdentifier READ deviceIdentifier CONSTANT)
    // Installed system-wide (by the package manager), not run from a build folder.
    Q_PROPERTY(bool installedByPackage READ installedByPackage CONSTANT)
    // [{name, licence, text}]: Navro's own first, then each bundled third-party set.
    Q_PROPERTY(QVariantList licences READ licences CONSTANT)

public:
    AboutInfo(std::optional<std::string> deviceIdentifier, QString programFolder,
              QObject* parent = nullptr);

    QString deviceIdentifier() const { return deviceIdentifier_; }
    bool installedByPackage() const { return installedByPackage_; }
    QVariantList licences() const;

    Q_INVOKABLE void copyText(const QString& text) const;

private:
    QString deviceIdentifier_;
    bool installedByPackage_;
};

} // namespace navro
