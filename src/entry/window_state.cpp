#include "entry/window_state.h"

#include "base/json.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLargestEdge = 32'767; // of a window, everywhere
constexpr qint64 kLargestFile = 4'096;

bool isEdge(qint64 pixels)
{
    return pixels > 0 && pixels <= kLargestEdge;
}

WindowState decode(const Json &value)
{
    const ObjectReader reader(value);
    WindowState state;
    const qint64 width = reader.integer("width").value_or(0);
    const qint64 height = reader.integer("height").value_or(0);
    if (isEdge(width) && isEdge(height)) {
        state.size = QSize(static_cast<int>(width), static_cast<int>(height));
    }
    state.isDark = reader.boolean("isDark");
    return state;
}

} // namespace

QString windowStatePath()
{
    QString folder = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(folder)) {
        folder = QDir::homePath() + u"/.local/state"_s;
    }
    return folder + u"/velarc/window.json"_s;
}

WindowState loadWindowState(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    try {
        return decode(parseJson(file.read(kLargestFile)));
    } catch (const JsonError &) {
        return {};
    }
}

void saveWindowState(const WindowState &state, const QString &path)
{
    Json value = Json::object();
    if (state.size) {
        value["width"] = state.size->width();
        value["height"] = state.size->height();
    }
    if (state.isDark) {
        value["isDark"] = *state.isDark;
    }
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(writeJson(value));
        file.commit();
    }
}

} // namespace velarc
