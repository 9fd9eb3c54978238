#pragma once

// A window in some state, to be looked at.

#include "ui_world.h"

#include <functional>
#include <map>

namespace velarc {

class PictureWorld final : public UiWorld
{
public:
    void TestBody() override {}

    // What scenes are made of.
    using UiWorld::actionNamed;
    using UiWorld::click;
    using UiWorld::clock;
    using UiWorld::gemini;
    using UiWorld::itemCalled;
    using UiWorld::letRunGoOn;
    using UiWorld::openAI;
    using UiWorld::press;
    using UiWorld::screens;
    using UiWorld::settle;
    using UiWorld::type;
    using UiWorld::viewModel;
    using UiWorld::window;

    [[nodiscard]] QImage make(
        const std::function<void(PictureWorld &)> &scene, Look look, QSize size)
    {
        launch();
        openWindow(size);
        setLook(look);
        screens->appearance()->setTextScale(
            std::max(1.0, qEnvironmentVariable("TEXT_SCALE").toDouble()));
        scene(*this);
        settle();
        return picture();
    }
};

// What brings the window into a state, by the state's name.
using Scenes = std::map<QString, std::function<void(PictureWorld &)>>;

// The settings, and connecting an engine.
[[nodiscard]] Scenes engineScenes();

// The input phase of the home screen, and the sidebar beside it.
[[nodiscard]] Scenes homeScenes();

// The displays of the output phase, and what long texts look like.
[[nodiscard]] Scenes resultScenes();

} // namespace velarc
