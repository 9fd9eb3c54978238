#include "records/share_records.h"

#include "base/uuid.h"
#include "records/json_date.h"

namespace velarc {

ShareHandoffRequest decodeShareHandoffRequest(const Json &value)
{
    const ObjectReader object(value);
    ShareHandoffRequest request;
    request.actionID = object.uuid("actionID");
    request.inputText = ObjectReader::required(object.text("inputText"), "inputText");
    request.sourceApp = object.text("sourceApp");
    request.createdAt = ObjectReader::required(readDate(object, "createdAt"), "createdAt");
    return request;
}

ShareResult decodeShareResult(const Json &value)
{
    const ObjectReader object(value);
    ShareResult result;
    result.actionID = object.uuid("actionID");
    result.actionName = ObjectReader::required(object.text("actionName"), "actionName");
    result.output = ObjectReader::required(object.text("output"), "output");
    result.createdAt = ObjectReader::required(readDate(object, "createdAt"), "createdAt");
    return result;
}

Json encodeShareHandoffRequest(const ShareHandoffRequest &request)
{
    Json object = Json::object();
    if (request.actionID) {
        object["actionID"] = jsonFromText(uuidText(*request.actionID));
    }
    object["inputText"] = jsonFromText(request.inputText);
    if (request.sourceApp) {
        object["sourceApp"] = jsonFromText(*request.sourceApp);
    }
    object["createdAt"] = encodeDate(request.createdAt);
    return object;
}

Json encodeShareResult(const ShareResult &result)
{
    Json object = Json::object();
    if (result.actionID) {
        object["actionID"] = jsonFromText(uuidText(*result.actionID));
    }
    object["actionName"] = jsonFromText(result.actionName);
    object["output"] = jsonFromText(result.output);
    object["createdAt"] = encodeDate(result.createdAt);
    return object;
}

} // namespace velarc
