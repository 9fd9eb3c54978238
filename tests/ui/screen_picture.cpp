// Makes a picture of a screen: velarc_screen_picture SCREEN light|dark WIDTHxHEIGHT FILE.
//
// The scale is the one that QT_SCALE_FACTOR names. Without arguments it lists the screens.

#include "ui_world.h"

#include <QGuiApplication>
#include <QTextStream>

#include <functional>
#include <map>

namespace velarc {

namespace {

class PictureWorld final : public UiWorld
{
public:
    void TestBody() override {}

    using Scene = std::function<void(PictureWorld &)>;
    [[nodiscard]] static const std::map<QString, Scene> &scenes();

    int make(const QString &scene, Look look, QSize size, const QString &file)
    {
        launch();
        openWindow(size);
        setLook(look);
        scenes().at(scene)(*this);
        settle();
        const QImage made = picture();
        for (const QString &line : WarningLog::lines()) {
            QTextStream(stderr) << line << '\n';
        }
        return made.save(file) ? 0 : 1;
    }
};

const std::map<QString, PictureWorld::Scene> &PictureWorld::scenes()
{
    using World = PictureWorld;
    static const std::map<QString, Scene> kScenes{
        {u"home"_s, [](World &) {}},
        {u"home-classic"_s,
            [](World &world) { world.viewModel->library().setNewRunExperienceEnabled(false); }},
        {u"processing"_s,
            [](World &world) {
                world.openAI->answer.gate.close();
                world.viewModel->setQuickInput(u"The harbour ferry was late again."_s);
                world.viewModel->runSelectedAction();
                world.settle();
            }},
        {u"result"_s,
            [](World &world) {
                world.viewModel->setQuickInput(u"The harbour ferry was late again."_s);
                world.viewModel->runSelectedAction();
                world.letRunGoOn();
            }},
        {u"more"_s, [](World &world) { world.viewModel->setIsMoreSheetPresented(true); }},
        {u"studio"_s, [](World &world) { world.viewModel->library().newAction(); }},
        {u"input-modal"_s, [](World &world) { world.viewModel->setIsInputModalPresented(true); }},
        {u"library"_s, [](World &world) { world.viewModel->setIsActionLibraryPresented(true); }},
        {u"engine-room"_s, [](World &world) { world.viewModel->setIsEngineRoomPresented(true); }},
        {u"usage"_s, [](World &world) { world.viewModel->setIsUsagePresented(true); }},
        {u"connect"_s,
            [](World &world) {
                world.viewModel->connections().presentConnectSheet(AIProvider::OpenAI);
            }},
        {u"automation"_s, [](World &world) { world.click(u"Automation"_s); }},
    };
    return kScenes;
}

} // namespace

} // namespace velarc

int main(int argc, char **argv)
{
    using namespace velarc;
    setenv("LC_ALL", "en_US.UTF-8", 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::testing::InitGoogleTest(&argc, argv);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    const QStringList extent = arguments.value(3).split(u'x');
    if (arguments.size() != 5 || extent.size() != 2
        || PictureWorld::scenes().count(arguments.at(1)) == 0) {
        for (const auto &[name, scene] : PictureWorld::scenes()) {
            QTextStream(stdout) << name << '\n';
        }
        return 2;
    }
    return PictureWorld().make(arguments.at(1),
        arguments.at(2) == u"dark"_s ? Look::Dark : Look::Light,
        QSize(extent.at(0).toInt(), extent.at(1).toInt()), arguments.at(4));
}
