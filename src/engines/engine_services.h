#pragma once

// The engines as their callers see them.
//
// Main thread only; each service works one call at a time on a thread of its own and never blocks.
// None logs a prompt, a reply or a key.
//
// Stop:     a stopped token ends the wait with CancellationError; the caller resumes from the event
//           loop, never inside request_stop().
// Errors:   one type a service, a UserFacingError; a transport error passes through unchanged.
// Lifetime: the service must outlive the task; arguments are copied into it.

#include "base/secret.h"
#include "records/run_records.h"

#include <QCoroTask>

#include <stop_token>

namespace velarc {

struct CloudTextRequest
{
    QString prompt;
    QString model; // blank: the client's default
    Secret apiKey;
    QList<InputAttachment> attachments;
};

struct CloudImageRequest
{
    QString prompt;
    QString model;
    Secret apiKey;
};

class OpenAIServing
{
public:
    virtual ~OpenAIServing() = default;
    [[nodiscard]] virtual QCoro::Task<GenerationResult> generateText(
        CloudTextRequest request, int maxOutputTokens, std::stop_token stop) = 0;
    [[nodiscard]] virtual QCoro::Task<GenerationResult> generateImage(
        CloudImageRequest request, std::stop_token stop) = 0;
};

class GeminiServing
{
public:
    virtual ~GeminiServing() = default;
    [[nodiscard]] virtual QCoro::Task<GenerationResult> generateText(
        CloudTextRequest request, OutputFormat outputFormat, std::stop_token stop) = 0;
};

class AnthropicServing
{
public:
    virtual ~AnthropicServing() = default;
    [[nodiscard]] virtual QCoro::Task<GenerationResult> generateText(
        CloudTextRequest request, int maxTokens, std::stop_token stop) = 0;
};

struct OnDeviceTextRequest
{
    QString prompt;
    QString instructions; // blank: none
    QString useCase; // "contentTagging", or anything else for the general one
};

class AppleIntelligenceServing
{
public:
    virtual ~AppleIntelligenceServing() = default;
    // The trimmed text, never empty.
    [[nodiscard]] virtual QCoro::Task<QString> generateText(
        OnDeviceTextRequest request, std::stop_token stop) = 0;
};

class AppleImageServing
{
public:
    virtual ~AppleImageServing() = default;
    // PNG bytes.
    [[nodiscard]] virtual QCoro::Task<QByteArray> generateImage(
        QString prompt, std::stop_token stop) = 0;
};

} // namespace velarc
