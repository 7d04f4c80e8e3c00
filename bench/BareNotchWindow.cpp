// bare_notch_window: the floor that Navro's start-up is read against. The least a Qt Quick program
// can do to put the closed notch on screen: QGuiApplication, a QQuickView of the notch's size at
// the top centre, one black rounded rectangle with a line of text, Qt Quick's software renderer
// (as Navro uses). Runs until it is killed.
#include <QGuiApplication>
#include <QQuickView>
#include <QQuickWindow>
#include <QScreen>

int main(int argc, char* argv[])
{
    QGuiApplication application(argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QQuickView view;
    view.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                  Qt::X11BypassWindowManagerHint);
    view.setColor(Qt::transparent);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.setSource(QUrl(QStringLiteral("qrc:/bare/BareNotch.qml")));
    const QSize size(190, 24);
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    view.setGeometry(screen.x() + (screen.width() - size.width()) / 2, screen.y(), size.width(),
                     size.height());
    view.show();
    return QGuiApplication::exec();
}
