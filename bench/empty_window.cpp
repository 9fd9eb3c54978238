// velarc_empty_window: what a window of Qt Quick costs that shows nothing, on the renderer of ours.

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

int main(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nWindow { width: 1200; height: 820; visible: true }", QUrl());
    const std::unique_ptr<QObject> window(component.create());
    return window ? QGuiApplication::exec() : 1;
}
