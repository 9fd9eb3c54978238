#include "ui_world.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQmlComponent>

#include <stdexcept>

// Exported for tests, without a header of its own.
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow *window, QEvent::Type type, int key,
    Qt::KeyboardModifiers modifiers, const QString &text = {}, bool isRepeat = false,
    ushort count = 1);

namespace velarc {

namespace {

void noteMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg) {
        WarningLog::lines().append(QString::fromUtf8(context.category) + u": "_s + message);
    }
}

QQuickItem *findCalled(QQuickItem &item, const QString &name)
{
    if (!item.isVisible()) {
        return nullptr;
    }
    if (QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&item); face != nullptr
        && !face->state().invisible && face->role() != QAccessible::Client
        && face->text(QAccessible::Name) == name) {
        return &item;
    }
    // Popups stand above the rest, so the latest is asked first.
    const auto children = item.childItems();
    for (auto child = children.crbegin(); child != children.crend(); ++child) {
        if (QQuickItem *found = findCalled(**child, name)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

WarningLog::WarningLog() : m_before(qInstallMessageHandler(&noteMessage))
{
    lines().clear();
}

WarningLog::~WarningLog()
{
    qInstallMessageHandler(m_before);
}

QStringList &WarningLog::lines()
{
    static QStringList lines;
    return lines;
}

UiWorld::~UiWorld()
{
    scope->finish();
    window.reset();
    engine.reset();
    screens.reset();
}

void UiWorld::TearDown()
{
    window.reset();
    engine.reset();
    EXPECT_EQ(WarningLog::lines().join(u'\n').toStdString(), std::string());
}

void UiWorld::prepare()
{
    if (!viewModel) {
        launch();
    }
    if (!engine) {
        screens = std::make_unique<Screens>(*viewModel, fileChooser, sharing);
        engine = std::make_unique<QQmlEngine>();
        screens->attachTo(*engine);
        screens->appearance()->setReducesMotion(true); // nothing to wait for
    }
}

QObject *UiWorld::make(const QString &name, const QVariantMap &properties)
{
    QQmlComponent component(engine.get(), QUrl(u"qrc:/qt/qml/Velarc/"_s + name + u".qml"_s));
    if (!component.isReady()) {
        throw std::runtime_error(component.errorString().toStdString());
    }
    return component.createWithInitialProperties(properties);
}

QQuickWindow &UiWorld::openWindow(QSize size)
{
    prepare();
    window.reset(qobject_cast<QQuickWindow *>(make(u"Main"_s, {{u"startSize"_s, size}})));
    window->show();
    window->requestActivate();
    settle();
    return *window;
}

QQuickItem &UiWorld::openScreen(const QString &name, QSize size)
{
    prepare();
    auto *item = qobject_cast<QQuickItem *>(make(name, {}));
    window = std::make_unique<QQuickWindow>();
    window->resize(size);
    item->setParent(window.get());
    item->setParentItem(window->contentItem());
    item->setSize(size);
    window->show();
    window->requestActivate();
    settle();
    return *item;
}

QImage UiWorld::picture()
{
    settle();
    return window->grabWindow();
}

QQuickItem *UiWorld::itemCalled(const QString &name, QQuickItem *within)
{
    return findCalled(within == nullptr ? *window->contentItem() : *within, name);
}

QString UiWorld::focusedName() const
{
    QQuickItem *item = window->activeFocusItem();
    QAccessibleInterface *face =
        item == nullptr ? nullptr : QAccessible::queryAccessibleInterface(item);
    return face == nullptr ? QString() : face->text(QAccessible::Name);
}

void UiWorld::click(const QString &name, QQuickItem *within)
{
    QQuickItem *item = itemCalled(name, within);
    ASSERT_NE(item, nullptr) << "nothing is called " << name.toStdString();
    const QPointF at = item->mapToScene({item->width() / 2, item->height() / 2});
    const auto send = [&](QEvent::Type type, Qt::MouseButtons held) {
        QMouseEvent event(type, at, window->mapToGlobal(at),
            type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, held, Qt::NoModifier);
        QCoreApplication::sendEvent(window.get(), &event);
    };
    send(QEvent::MouseMove, Qt::NoButton);
    send(QEvent::MouseButtonPress, Qt::LeftButton);
    send(QEvent::MouseButtonRelease, Qt::NoButton);
    settle();
}

void UiWorld::press(int key, Qt::KeyboardModifiers modifiers)
{
    // The way of a key from the window system, through shortcuts too.
    qt_handleKeyEvent(window.get(), QEvent::KeyPress, key, modifiers);
    qt_handleKeyEvent(window.get(), QEvent::KeyRelease, key, modifiers);
    settle();
}

void UiWorld::type(const QString &text)
{
    for (const QChar character : text) {
        QKeyEvent down(QEvent::KeyPress, 0, Qt::NoModifier, character);
        QCoreApplication::sendEvent(window.get(), &down);
    }
    settle();
}

void UiWorld::settle()
{
    constexpr int kTurns = 3; // what is laid out asks for more
    for (int turn = 0; turn < kTurns; ++turn) {
        turnEventLoop();
        QCoreApplication::processEvents(); // what the window system tells
        if (window) {
            window->grabWindow(); // polishes and lays out
        }
    }
}

} // namespace velarc
