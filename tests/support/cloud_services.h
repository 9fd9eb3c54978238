#pragma once

// The program's real cloud clients over any transport and host.

#include "engines/anthropic_service.h"
#include "engines/gemini_service.h"
#include "engines/openai_service.h"
#include "run/app_view_model.h"

namespace velarc {

// `services` with the three clients, which talk to `host` alone.
[[nodiscard]] inline AppServices overCloudClients(
    AppServices services, const std::shared_ptr<HttpTransport> &transport, const QUrl &host)
{
    services.openAIService = std::make_shared<OpenAIService>(transport, services.clock, host);
    services.geminiService = std::make_shared<GeminiService>(transport, services.clock, host);
    services.anthropicService = std::make_shared<AnthropicService>(transport, services.clock, host);
    return services;
}

} // namespace velarc
