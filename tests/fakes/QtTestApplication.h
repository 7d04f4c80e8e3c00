#pragma once

#include <QGuiApplication>
#include <memory>

namespace navro {

// One QGuiApplication for the test programs that need screens or windows, created on first use
// (the tests run on Qt's offscreen platform).
class QtTestApplication {
public:
    static QGuiApplication& ensure()
    {
        static int argc = 1;
        static char name[] = "window_tests";
        static char* argv[] = {name, nullptr};
        static auto* application = new QGuiApplication(argc, argv);
        return *application;
    }
};

} // namespace navro
