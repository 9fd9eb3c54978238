#include "records/home_layout.h"

#include "actions/action_json.h"
#include "base/uuid.h"

namespace velarc {

namespace {

HomeHintState decodeHints(const Json &value)
{
    const ObjectReader object(value);
    const auto hint = [&object](const char *key) {
        return ObjectReader::required(object.boolean(key), key);
    };
    HomeHintState hints;
    hints.hasSeenRunClipboardHint = hint("hasSeenRunClipboardHint");
    hints.hasSeenMoreMenuHint = hint("hasSeenMoreMenuHint");
    hints.hasSeenChangeActionHint = hint("hasSeenChangeActionHint");
    return hints;
}

Json encodeHints(const HomeHintState &hints)
{
    Json object = Json::object();
    object["hasSeenRunClipboardHint"] = hints.hasSeenRunClipboardHint;
    object["hasSeenMoreMenuHint"] = hints.hasSeenMoreMenuHint;
    object["hasSeenChangeActionHint"] = hints.hasSeenChangeActionHint;
    return object;
}

} // namespace

const QList<EngineRoomSection> &allEngineRoomSections()
{
    static const QList<EngineRoomSection> kSections{EngineRoomSection::Connections,
        EngineRoomSection::DefaultEngine, EngineRoomSection::Advanced};
    return kSections;
}

QString storedSpelling(EngineRoomSection section)
{
    switch (section) {
    case EngineRoomSection::Connections:
        return QStringLiteral("connections");
    case EngineRoomSection::DefaultEngine:
        return QStringLiteral("defaultEngine");
    case EngineRoomSection::Advanced:
        return QStringLiteral("advanced");
    }
    Q_UNREACHABLE();
}

template <> std::optional<EngineRoomSection> fromStoredSpelling(QStringView spelling)
{
    for (const EngineRoomSection section : allEngineRoomSections()) {
        if (storedSpelling(section) == spelling) {
            return section;
        }
    }
    return std::nullopt;
}

HomeLayoutState decodeHomeLayout(const Json &value)
{
    const ObjectReader object(value);
    HomeLayoutState layout;
    layout.selectedActionID = object.uuid("selectedActionID");
    if (const Json *hints = object.find("hintState")) {
        layout.hintState = decodeHints(*hints);
    }
    layout.lastEngineRoomSection = readEnum<EngineRoomSection>(object, "lastEngineRoomSection")
                                       .value_or(layout.lastEngineRoomSection);
    layout.recentActionIDs = object.list("recentActionIDs", decodeUuid).value_or(QList<QUuid>());
    return layout;
}

Json encodeHomeLayout(const HomeLayoutState &layout)
{
    Json object = Json::object();
    if (layout.selectedActionID) {
        object["selectedActionID"] = jsonFromText(uuidText(*layout.selectedActionID));
    }
    object["hintState"] = encodeHints(layout.hintState);
    object["lastEngineRoomSection"] = jsonFromText(storedSpelling(layout.lastEngineRoomSection));
    Json recent = Json::array();
    for (const QUuid &id : layout.recentActionIDs) {
        recent.push_back(jsonFromText(uuidText(id)));
    }
    object["recentActionIDs"] = std::move(recent);
    return object;
}

HomeAutomationOptions decodeAutomationOptions(const Json &value)
{
    const ObjectReader object(value);
    HomeAutomationOptions options;
    options.autoRunOnPaste = object.boolean("autoRunOnPaste").value_or(options.autoRunOnPaste);
    options.autoCopyResult = object.boolean("autoCopyResult").value_or(options.autoCopyResult);
    return options;
}

Json encodeAutomationOptions(const HomeAutomationOptions &options)
{
    Json object = Json::object();
    object["autoRunOnPaste"] = options.autoRunOnPaste;
    object["autoCopyResult"] = options.autoCopyResult;
    return object;
}

} // namespace velarc
