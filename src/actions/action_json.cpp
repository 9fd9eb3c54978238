#include "actions/action_json.h"

#include "actions/action_defaults.h"
#include "actions/format_rules.h"
#include "base/uuid.h"

#include <utility>

namespace velarc {

namespace {

// How older versions told a system action from a prompt.
enum class LegacyExecutionKind
{
    Llm,
    System
};

std::optional<LegacyExecutionKind> readLegacyExecutionKind(const ObjectReader &object)
{
    const auto spelling = object.text("executionKind");
    if (!spelling) {
        return std::nullopt;
    }
    if (*spelling == u"llm") {
        return LegacyExecutionKind::Llm;
    }
    if (*spelling == u"system") {
        return LegacyExecutionKind::System;
    }
    throw JsonError("executionKind has an unknown spelling");
}

std::optional<SystemDestinationKind> readLegacySystemAction(const ObjectReader &object)
{
    const Json *found = object.find("systemAction");
    if (found == nullptr) {
        return std::nullopt;
    }
    return ObjectReader::required(
        readEnum<SystemDestinationKind>(ObjectReader(*found), "kind"), "kind");
}

// Three keys have told the destination in turn. All are read before any is used: a bad one fails
// the action even where another one decides.
ActionDestination readDestination(const ObjectReader &object)
{
    const Json *present = object.find("actionDestination");
    std::optional<ActionDestination> current;
    if (present != nullptr) {
        current = decodeDestination(*present);
    }
    const auto output = readEnum<OutputDestination>(object, "destination");
    const auto executionKind = readLegacyExecutionKind(object);
    const auto systemAction = readLegacySystemAction(object);

    if (systemAction && executionKind != LegacyExecutionKind::Llm) {
        return ActionDestination::system(*systemAction);
    }
    if (current) {
        return *current;
    }
    return output ? ActionDestination::output(*output) : ActionDestination();
}

std::optional<ActionDestination> readTaggedDestination(const ObjectReader &object)
{
    const auto type = object.text("type");
    if (type && *type != u"output" && *type != u"system") {
        throw JsonError("type has an unknown spelling");
    }
    if (!type || *type == u"output") {
        if (const auto output = readEnum<OutputDestination>(object, "output")) {
            return ActionDestination::output(*output);
        }
    }
    if (!type || *type == u"system") {
        if (const auto kind = readEnum<SystemDestinationKind>(object, "system")) {
            return ActionDestination::system(*kind);
        }
    }
    if (type) {
        throw JsonError("the destination's value is missing");
    }
    return std::nullopt;
}

std::optional<ActionDestination> readBareDestination(const Json &value)
{
    if (!value.is_string()) {
        return std::nullopt;
    }
    const QString spelling = jsonText(value);
    if (const auto output = fromStoredSpelling<OutputDestination>(spelling)) {
        return ActionDestination::output(*output);
    }
    if (const auto kind = fromStoredSpelling<SystemDestinationKind>(spelling)) {
        return ActionDestination::system(*kind);
    }
    return std::nullopt;
}

} // namespace

ActionDestination decodeDestination(const Json &value)
{
    const auto destination =
        value.is_object() ? readTaggedDestination(ObjectReader(value)) : readBareDestination(value);
    if (!destination) {
        throw JsonError("Unsupported destination payload.");
    }
    return *destination;
}

Json encodeDestination(const ActionDestination &destination)
{
    Json object = Json::object();
    if (const auto output = destination.asOutput()) {
        object["type"] = "output";
        object["output"] = jsonFromText(storedSpelling(*output));
    } else if (const auto kind = destination.asSystem()) {
        object["type"] = "system";
        object["system"] = jsonFromText(storedSpelling(*kind));
    }
    return object;
}

AIAction decodeAction(const Json &value)
{
    const ObjectReader object(value);
    AIAction action;
    const auto id = object.uuid("id");
    action.id = id ? *id : newUuid();
    action.name = object.text("name").value_or(defaultActionName());
    action.icon = object.text("icon").value_or(defaultActionIcon());
    action.colorHex = object.text("colorHex").value_or(defaultActionColorHex());
    action.systemPrompt = object.text("systemPrompt").value_or(defaultActionPrompt());
    action.destination = readDestination(object);
    action.provider = readEnum<AIProvider>(object, "provider").value_or(AIProvider::UseDefault);
    action.outputFormat =
        readEnum<OutputFormat>(object, "outputFormat").value_or(OutputFormat::Text);
    action.modelOverrideID = object.text("modelOverrideID");
    action.skills = object.list("skills", decodeText).value_or(QStringList());
    action.isPinned = object.boolean("isPinned").value_or(false);
    action.sortOrder = object.integer("sortOrder").value_or(0);
    action.outputFormat = formatForDestination(action.outputFormat, action.destination);
    return action;
}

Json encodeAction(const AIAction &action)
{
    // Made in one go: assigning key by key would look each one up among the earlier ones.
    Json object = Json::object();
    Json::object_t::Container &members = object.get_ref<Json::object_t &>();
    members.reserve(12);
    const auto add = [&members](const char *key, Json value) {
        members.emplace_back(key, std::move(value));
    };
    add("id", jsonFromText(uuidText(action.id)));
    add("name", jsonFromText(action.name));
    add("icon", jsonFromText(action.icon));
    add("colorHex", jsonFromText(action.colorHex));
    add("systemPrompt", jsonFromText(action.systemPrompt));
    add("provider", jsonFromText(storedSpelling(action.provider)));
    add("outputFormat", jsonFromText(storedSpelling(action.outputFormat)));
    add("actionDestination", encodeDestination(action.destination));
    add("modelOverrideID",
        action.modelOverrideID ? jsonFromText(*action.modelOverrideID) : Json(nullptr));
    Json skills = Json::array();
    for (const QString &skill : action.skills) {
        skills.push_back(jsonFromText(skill));
    }
    add("skills", std::move(skills));
    add("isPinned", action.isPinned);
    add("sortOrder", action.sortOrder);
    return object;
}

QList<AIAction> decodeActions(const Json &value)
{
    if (!value.is_array()) {
        throw JsonError("the library is no array");
    }
    QList<AIAction> actions;
    actions.reserve(static_cast<qsizetype>(value.size()));
    for (const Json &element : value) {
        actions.append(decodeAction(element));
    }
    return actions;
}

Json encodeActions(const QList<AIAction> &actions)
{
    Json array = Json::array();
    array.get_ref<Json::array_t &>().reserve(static_cast<std::size_t>(actions.size()));
    for (const AIAction &action : actions) {
        array.push_back(encodeAction(action));
    }
    return array;
}

QByteArray writeActions(const QList<AIAction> &actions)
{
    QByteArray json = "[";
    for (const AIAction &action : actions) {
        if (json.size() > 1) {
            json += ',';
        }
        json += writeJson(encodeAction(action));
    }
    json += ']';
    return json;
}

} // namespace velarc
