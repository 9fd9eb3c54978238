#pragma once

// The two calls of OpenAIService: how their bodies are built and their replies read. Any thread.

#include "engines/cloud_client.h"
#include "engines/engine_services.h"

#include <QUrl>

namespace velarc {

// Both: OpenAIServiceError for a blank key.
[[nodiscard]] CloudCall responsesCall(
    const QUrl &host, CloudTextRequest request, int maxOutputTokens);
[[nodiscard]] CloudCall imagesCall(const QUrl &host, CloudImageRequest request);

// The header that carries the key. Errors: OpenAIServiceError for a blank one.
[[nodiscard]] HttpSecretHeader bearerHeader(const Secret &key);

} // namespace velarc
