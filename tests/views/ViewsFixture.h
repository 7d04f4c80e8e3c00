#pragma once

#include "FakeSettingsStore.h"
#include "QtTestApplication.h"
#include "app/AppSettings.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <gtest/gtest.h>
#include <memory>

namespace navro {

// The views' shared objects (the Theme and Format singletons) as the views see them: on an engine
// with the settings object the application hands to QML.
class ViewsFixture : public ::testing::Test {
protected:
    ViewsFixture()
    {
        // The module sits at the root of the resources (qrc:/Navro).
        engine.addImportPath(QStringLiteral("qrc:/"));
        engine.rootContext()->setContextProperty(QStringLiteral("settings"), &settings);
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nimport Navro\n"
                          "QtObject { readonly property QtObject theme: Theme;"
                          " readonly property QtObject format: Format;"
                          " function callFormat(name, value, option) {"
                          "  return option === undefined ? Format[name](value)"
                          "                              : Format[name](value, option) } }",
                          QUrl());
        root.reset(component.create());
        EXPECT_TRUE(root && singleton("theme") && singleton("format"))
            << component.errorString().toStdString();
    }

    QObject* singleton(const char* name) const
    {
        return root ? root->property(name).value<QObject*>() : nullptr;
    }

    // Before the engine: a QML engine needs the application object.
    QCoreApplication& application = testApplication();
    FakeSettingsStore store;
    AppSettings settings{store, [] { return QStringList(); }};
    QQmlEngine engine;
    std::unique_ptr<QObject> root;
};

} // namespace navro
