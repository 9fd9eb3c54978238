#include "picture_world.h"

namespace velarc {

namespace {

using World = PictureWorld;

void openEngineRoom(World &world, EngineRoomSection section)
{
    world.viewModel->setProviderConnections(
        {{true, world.clock->now() - 2h}, {}, {true, std::nullopt}});
    world.viewModel->library().setEngineRoomSection(section);
    world.viewModel->setIsEngineRoomPresented(true);
    world.settle();
}

void openConnectSheet(World &world, AIProvider provider)
{
    world.viewModel->connections().presentConnectSheet(provider);
    world.settle();
}

void connectWithKey(World &world)
{
    world.type(u"sk-0123456789abcdefghijklmnopqrstuvwxyz"_s);
    world.press(Qt::Key_Return);
}

} // namespace

Scenes engineScenes()
{
    return {
        {u"engine-room"_s,
            [](World &world) { openEngineRoom(world, EngineRoomSection::Connections); }},
        {u"engine-room-default"_s,
            [](World &world) {
                openEngineRoom(world, EngineRoomSection::DefaultEngine);
                world.click(u"Gemini"_s);
            }},
        {u"engine-room-advanced"_s,
            [](World &world) { openEngineRoom(world, EngineRoomSection::Advanced); }},
        {u"connect"_s, [](World &world) { openConnectSheet(world, AIProvider::OpenAI); }},
        {u"connect-busy"_s,
            [](World &world) {
                world.openAI->answer.gate.close();
                openConnectSheet(world, AIProvider::OpenAI);
                connectWithKey(world);
            }},
        {u"connect-error"_s,
            [](World &world) {
                world.gemini->answer.failure = std::make_exception_ptr(std::runtime_error(
                    QString(u"The provider answered that the key is not valid. "_s)
                        .repeated(9)
                        .first(400)
                        .toStdString()));
                openConnectSheet(world, AIProvider::Gemini);
                connectWithKey(world);
            }},
    };
}

} // namespace velarc
