#pragma once

#include <QObject>
#include <QPointer>
#include <QUrl>

class QQmlEngine;
class QQuickWindow;

namespace navro {

// One window written in QML, created the first time it is shown (most sessions never open the
// settings or onboarding, so they cost nothing until then) and kept afterwards.
class QmlWindowHost final : public QObject {
    Q_OBJECT

public:
    QmlWindowHost(QQmlEngine& engine, QUrl source, QObject* parent = nullptr);
    ~QmlWindowHost() override;

    // Shows the window and brings it to the front with keyboard focus.
    void show();
    void close();
    bool isShown() const;
    // Creates the window if needed; null when its QML failed to load.
    QQuickWindow* window();

signals:
    void shownChanged();
    void deactivated();

private:
    QQmlEngine& engine_;
    QUrl source_;
    QPointer<QQuickWindow> window_;
};

} // namespace navro
