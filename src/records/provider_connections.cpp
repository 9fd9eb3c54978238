#include "records/provider_connections.h"

#include "records/json_date.h"

namespace velarc {

namespace {

ProviderConnectionInfo readInfo(const ObjectReader &state, const char *engine)
{
    const Json *found = state.find(engine);
    if (found == nullptr) {
        return {};
    }
    const ObjectReader object(*found);
    ProviderConnectionInfo info;
    info.isConnected = ObjectReader::required(object.boolean("isConnected"), "isConnected");
    info.lastVerifiedAt = readDate(object, "lastVerifiedAt");
    return info;
}

Json encodeInfo(const ProviderConnectionInfo &info)
{
    Json object = Json::object();
    object["isConnected"] = info.isConnected;
    if (info.lastVerifiedAt) {
        object["lastVerifiedAt"] = encodeDate(*info.lastVerifiedAt);
    }
    return object;
}

} // namespace

ProviderConnectionState decodeProviderConnections(const Json &value)
{
    const ObjectReader object(value);
    ProviderConnectionState state;
    state.openAI = readInfo(object, "openAI");
    state.gemini = readInfo(object, "gemini");
    state.anthropic = readInfo(object, "anthropic");
    return state;
}

Json encodeProviderConnections(const ProviderConnectionState &state)
{
    Json object = Json::object();
    object["openAI"] = encodeInfo(state.openAI);
    object["gemini"] = encodeInfo(state.gemini);
    object["anthropic"] = encodeInfo(state.anthropic);
    return object;
}

} // namespace velarc
