#include "app/QmlWindowHost.h"

#include "app/Log.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

namespace navro {

QmlWindowHost::QmlWindowHost(QQmlEngine& engine, QUrl source, QObject* parent)
    : QObject(parent), engine_(engine), source_(std::move(source))
{
}

QmlWindowHost::~QmlWindowHost()
{
    delete window_.data();
}

QQuickWindow* QmlWindowHost::window()
{
    if (window_)
        return window_;
    QQmlComponent component(&engine_, source_);
    QObject* object = component.create();
    auto* window = qobject_cast<QQuickWindow*>(object);
    if (!window) {
        logLine("window " + source_.toString().toStdString() +
                " failed to load: " + component.errorString().toStdString());
        delete object;
        return nullptr;
    }
    window_ = window;
    connect(window, &QWindow::visibleChanged, this, &QmlWindowHost::shownChanged);
    connect(window, &QWindow::activeChanged, this, [this] {
        if (window_ && !window_->isActive())
            emit deactivated();
    });
    return window;
}

void QmlWindowHost::show()
{
    QQuickWindow* window = this->window();
    if (!window)
        return;
    window->show();
    window->raise();
    window->requestActivate();
}

void QmlWindowHost::close()
{
    if (window_)
        window_->hide();
}

bool QmlWindowHost::isShown() const
{
    return window_ && window_->isVisible();
}

} // namespace navro
