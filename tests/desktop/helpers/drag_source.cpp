// A window that starts a drag of the files named on its command line when it is pressed, the way
// a file manager does: text/uri-list over the X drag-and-drop protocol, through Qt's own source.
// Prints "shown" once it is on screen and the drop action once the drag ends.
#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QUrl>
#include <cstdio>

namespace {

class DragSource final : public QRasterWindow {
public:
    explicit DragSource(QList<QUrl> urls) : urls_(std::move(urls)) {}

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter(this).fillRect(QRect(QPoint(), size()), QColor(0x30c060));
    }
    void exposeEvent(QExposeEvent* event) override
    {
        QRasterWindow::exposeEvent(event);
        if (isExposed() && !shown_) {
            shown_ = true;
            std::puts("shown");
            std::fflush(stdout);
        }
    }
    void mousePressEvent(QMouseEvent*) override
    {
        auto* drag = new QDrag(this);
        auto* data = new QMimeData;
        data->setUrls(urls_);
        drag->setMimeData(data);
        const Qt::DropAction action = drag->exec(Qt::CopyAction | Qt::LinkAction);
        std::printf("dropped %d\n", int(action));
        std::fflush(stdout);
    }

private:
    QList<QUrl> urls_;
    bool shown_ = false;
};

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    QList<QUrl> urls;
    for (int i = 1; i < argc; ++i)
        urls.append(QUrl::fromLocalFile(QString::fromLocal8Bit(argv[i])));
    DragSource window(urls);
    window.setTitle(QStringLiteral("drag source"));
    window.setGeometry(100, 500, 200, 120);
    window.show();
    return application.exec();
}
