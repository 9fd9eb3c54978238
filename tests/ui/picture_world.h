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

    [[nodiscard]] QImage make(
        const std::function<void(PictureWorld &)> &scene, Look look, QSize size)
    {
        launch();
        openWindow(size);
        setLook(look);
        scene(*this);
        settle();
        return picture();
    }
};

// What brings the window into a state, by the state's name.
using Scenes = std::map<QString, std::function<void(PictureWorld &)>>;

// The settings, and connecting an engine.
[[nodiscard]] Scenes engineScenes();

// The displays of the output phase, and what long texts look like.
[[nodiscard]] Scenes resultScenes();

} // namespace velarc
