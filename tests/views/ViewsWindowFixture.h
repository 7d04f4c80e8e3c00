#pragma once

#include "ViewsFixture.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QQuickItem>
#include <QQuickWindow>

namespace navro {

// The views' own controls in a window of their own, as the notch holds them.
class ViewsWindowFixture : public ViewsFixture {
protected:
    // Makes `qml` (a type of the views and its settings) and puts it in the window.
    QQuickItem* place(const char* qml)
    {
        QQmlComponent component(&engine);
        component.setData(QByteArray("import QtQuick\nimport Navro\n") + qml, QUrl());
        auto* item = qobject_cast<QQuickItem*>(component.create());
        EXPECT_TRUE(item) << component.errorString().toStdString();
        if (!item)
            return nullptr;
        item->setParent(&window);
        item->setParentItem(window.contentItem());
        return item;
    }

    void press(int key, bool autoRepeat = false)
    {
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, QString(), autoRepeat);
        QCoreApplication::sendEvent(&window, &down);
        QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, QString(), autoRepeat);
        QCoreApplication::sendEvent(&window, &up);
    }

    void click(QPointF at)
    {
        QMouseEvent down(QEvent::MouseButtonPress, at, window.mapToGlobal(at), Qt::LeftButton,
                         Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &down);
        QMouseEvent up(QEvent::MouseButtonRelease, at, window.mapToGlobal(at), Qt::LeftButton,
                       Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &up);
    }

    void moveTo(QPointF at)
    {
        QMouseEvent move(QEvent::MouseMove, at, window.mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &move);
    }

    void showWindow(QSize size = QSize(200, 100))
    {
        window.resize(size);
        window.show();
        window.requestActivate();
        ASSERT_TRUE(waitFor([this] { return window.isActive(); }));
    }

    QQuickWindow window;
};

} // namespace navro
