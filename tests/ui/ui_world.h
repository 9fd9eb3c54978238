#pragma once

// The screens over a whole program of scripted engines, in a window that nobody sees.

#include "fakes/recorded_sharing.h"
#include "fakes/scripted_file_chooser.h"
#include "support/app_world.h"
#include "ui/screens.h"

#include <QImage>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

namespace velarc {

enum class Look
{
    Light,
    Dark
};

// Notes every warning that is printed while it stands.
class WarningLog
{
public:
    WarningLog();
    ~WarningLog();
    WarningLog(const WarningLog &) = delete;
    WarningLog &operator=(const WarningLog &) = delete;

    [[nodiscard]] static QStringList &lines();

private:
    QtMessageHandler m_before;
};

// A test over it fails on every warning of QML.
class UiWorld : public AppWorld
{
protected:
    WarningLog warnings;
    std::shared_ptr<ScriptedFileChooser> fileChooser; // none: the screens ask for paths
    std::shared_ptr<RecordedSharing> sharing = std::make_shared<RecordedSharing>();
    std::unique_ptr<Screens> screens;
    std::unique_ptr<QQmlEngine> engine;
    std::unique_ptr<QQuickWindow> window;

    ~UiWorld() override;
    void TearDown() override;

    // Starts the program, unless it runs, and shows the whole window.
    QQuickWindow &openWindow(QSize size = {1200, 820});

    // Shows one QML file of the module by its name, such as "HomeScreen", alone in a window.
    QQuickItem &openScreen(const QString &name, QSize size = {860, 620});

    void setLook(Look look) { screens->appearance()->setIsDark(look == Look::Dark); }

    // What the window shows once everything that was posted is done.
    [[nodiscard]] QImage picture();

    // The first visible item that assistive programs know by `name`, in the window or in one of its
    // items; none if there is none.
    [[nodiscard]] QQuickItem *itemCalled(const QString &name, QQuickItem *within = nullptr);
    [[nodiscard]] bool shows(const QString &text) { return itemCalled(text) != nullptr; }

    // What assistive programs call the item that has the keyboard's focus; empty where none has it.
    [[nodiscard]] QString focusedName() const;

    // Clicks in the middle of the item of that name.
    void click(const QString &name, QQuickItem *within = nullptr);
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const QString &text);

    // Lets bindings, focus and popups settle.
    void settle();

    // One file of the module by its name, such as "HomeScreen". Throws what is wrong with it.
    [[nodiscard]] QObject *make(const QString &name, const QVariantMap &properties = {});

private:
    void prepare();
};

} // namespace velarc
