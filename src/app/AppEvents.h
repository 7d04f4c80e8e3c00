#pragma once

#include <QObject>

namespace navro {

// Application-wide requests that any part may raise without knowing who answers them. The
// composition root owns the one instance and hands it to whoever needs to raise or answer.
class AppEvents final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    void requestOnboarding() { emit showOnboardingRequested(); }

signals:
    // "navro.showOnboarding": bring the onboarding window back.
    void showOnboardingRequested();
};

} // namespace navro
