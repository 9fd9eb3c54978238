// velarc_empty_window: what a window of Qt Quick costs that shows nothing, on the renderer of ours;
// with an argument, what it costs that shows this one line of text.

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

int main(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick\n"
                      "Window { width: 1200; height: 820; visible: true }",
        QUrl());
    const std::unique_ptr<QObject> window(component.create());
    QQmlComponent line(&engine);
    if (argc > 1) {
        line.setData("import QtQuick\nText {}", QUrl());
        auto *text = qobject_cast<QQuickItem *>(line.create());
        text->setParent(window.get());
        text->setParentItem(qobject_cast<QQuickWindow *>(window.get())->contentItem());
        text->setProperty("text", QString::fromLocal8Bit(argv[1]));
    }
    return window ? QGuiApplication::exec() : 1;
}
