// velarc_drag_source: another program whose files are dragged.
//
// Usage: velarc_drag_source X Y FILE...
//
// Shows a small window at X, Y. A drag that begins in it carries the files. Prints a line "over"
// when the drag has come to somebody who would take them, and "copied" or "refused" when it has
// ended. It runs until it is killed.

#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QUrl>

#include <cstdio>

namespace {

void say(const char *word)
{
    std::puts(word);
    std::fflush(stdout);
}

class Source final : public QRasterWindow
{
public:
    explicit Source(QList<QUrl> files) : m_files(std::move(files)) { setFlags(kFlags); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(QRect({}, size()), Qt::darkGreen);
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (event->buttons() != Qt::LeftButton) {
            return;
        }
        auto *data = new QMimeData;
        data->setUrls(m_files);
        auto *drag = new QDrag(this); // goes when who took the drop has read it
        drag->setMimeData(data);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) {
            if (action == Qt::CopyAction) {
                say("over");
            }
        });
        say(drag->exec(Qt::CopyAction) == Qt::CopyAction ? "copied" : "refused");
    }

private:
    // No window manager is asked where it stands, and none covers it.
    static constexpr Qt::WindowFlags kFlags =
        Qt::Window | Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint;

    QList<QUrl> m_files;
};

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 4) {
        std::fputs("Usage: velarc_drag_source X Y FILE...\n", stderr);
        return 2;
    }
    QList<QUrl> files;
    for (const QString &path : arguments.mid(3)) {
        files.append(QUrl::fromLocalFile(path));
    }
    Source source(files);
    source.setGeometry(arguments.at(1).toInt(), arguments.at(2).toInt(), 40, 40);
    source.show();
    return QGuiApplication::exec();
}
