#include "ui_world.h"

#include "support/wait_until.h"

#include <QDirIterator>

namespace velarc {

namespace {

QStringList screenFiles()
{
    QStringList names;
    QDirIterator files(u":/qt/qml/Velarc"_s, {u"*.qml"_s}, QDir::Files);
    while (files.hasNext()) {
        names.append(QFileInfo(files.next()).baseName());
    }
    names.sort();
    return names;
}

class ScreensTest : public UiWorld
{
};

TEST_F(ScreensTest, everyFileOfTheModuleCanBeMadeWithoutAWarning)
{
    openWindow();
    const QStringList names = screenFiles();
    EXPECT_GT(names.size(), 20);
    for (const QString &name : names) {
        if (name == u"Theme"_s) {
            continue; // a singleton, which the others use
        }
        EXPECT_NO_THROW(delete make(name)) << name.toStdString();
    }
}

TEST_F(ScreensTest, aSheetStandsExactlyWhileItsFieldSaysSo)
{
    openWindow();
    EXPECT_FALSE(shows(u"Usage"_s));
    viewModel->setIsUsagePresented(true);
    settle();
    EXPECT_TRUE(shows(u"Usage"_s));
    viewModel->setIsUsagePresented(false);
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Usage"_s); }));
}

TEST_F(ScreensTest, escapeClosesASheetAndWritesItsFieldBack)
{
    openWindow();
    viewModel->setIsUsagePresented(true);
    settle();
    press(Qt::Key_Escape);
    EXPECT_FALSE(viewModel->isUsagePresented());
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Usage"_s); }));
}

} // namespace

} // namespace velarc
