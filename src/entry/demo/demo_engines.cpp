#include "entry/demo/demo_engines.h"

#include "base/async.h"
#include "base/uuid.h"
#include "entry/demo/demo_answers.h"

#include <array>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct DemoAction
{
    QStringView name;
    QStringView icon;
    QStringView colorHex;
    QStringView model; // what the engine is to do; see demo_answers.cpp
    AIProvider provider = AIProvider::OpenAI;
    OutputFormat format = OutputFormat::Text;
};

constexpr std::array kActions{
    DemoAction{u"Echo the Input", u"text.quote", u"6366F1", u"echo"},
    DemoAction{u"Answer Slowly", u"timer.circle.fill", u"F59E0B", u"slow"},
    DemoAction{u"Write Half a Page", u"doc.text.fill", u"0EA5E9", u"page"},
    DemoAction{u"Write 1 MB", u"book.closed.fill", u"0EA5E9", u"megabyte"},
    DemoAction{u"Write 5 MB", u"book.closed.fill", u"0EA5E9", u"megabytes"},
    DemoAction{
        u"Draw an Image", u"photo", u"EC4899", u"picture", AIProvider::OpenAI, OutputFormat::Image},
    DemoAction{u"Draw a Broken Image", u"photo", u"EF4444", u"brokenPicture", AIProvider::OpenAI,
        OutputFormat::Image},
    DemoAction{
        u"Make a PDF", u"doc.richtext", u"10B981", u"page", AIProvider::OpenAI, OutputFormat::Pdf},
    DemoAction{u"Fail with a Long Message", u"exclamationmark.triangle.fill", u"EF4444", u"fail"},
    DemoAction{u"Be Off the Network", u"globe", u"EF4444", u"offline"},
    DemoAction{u"Have the Key Refused", u"lock.fill", u"EF4444", u"refuse"},
    DemoAction{u"Miss a Key", u"key.fill", u"F59E0B", u"echo", AIProvider::Anthropic},
    DemoAction{u"Take an Action of a Name That Is Much Longer Than Any Row of the Sidebar",
        u"tag.fill", u"8B5CF6", u"echo"},
};

} // namespace

QList<AIAction> demoActions()
{
    constexpr qint64 kStep = 10; // between two orders
    constexpr qsizetype kPinned = 5;
    QList<AIAction> actions;
    for (const DemoAction &row : kActions) {
        AIAction action;
        action.id = newUuid();
        action.name = row.name.toString();
        action.icon = row.icon.toString();
        action.colorHex = row.colorHex.toString();
        action.systemPrompt = u"{User_Input}"_s;
        action.provider = row.provider;
        action.outputFormat = row.format;
        action.modelOverrideID = row.model.toString();
        action.isPinned = actions.size() < kPinned;
        action.sortOrder = kStep * (actions.size() + 1);
        actions.append(action);
    }
    return actions;
}

namespace {

// What is asked of an engine, whichever it is.
struct Question
{
    AIProvider provider;
    QString model;
    QString prompt;
};

QCoro::Task<GenerationResult> answer(
    std::shared_ptr<Clock> clock, Question question, std::stop_token stop)
{
    co_await clock->pause(question.model == u"slow"_s ? 30'000ms : 600ms, stop);
    throwIfStopped(stop);
    GenerationResult result = demoAnswer(question.provider, question.model, question.prompt);
    co_return GenerationResult(result);
}

} // namespace

QCoro::Task<GenerationResult> DemoEngine::generateText(
    CloudTextRequest request, int /*maxTokens*/, std::stop_token stop)
{
    return answer(m_clock, {m_provider, request.model, request.prompt}, std::move(stop));
}

QCoro::Task<GenerationResult> DemoEngine::generateText(
    CloudTextRequest request, OutputFormat /*outputFormat*/, std::stop_token stop)
{
    return answer(m_clock, {m_provider, request.model, request.prompt}, std::move(stop));
}

QCoro::Task<GenerationResult> DemoEngine::generateImage(
    CloudImageRequest request, std::stop_token stop)
{
    return answer(m_clock, {m_provider, request.model, request.prompt}, std::move(stop));
}

QCoro::Task<std::optional<Secret>> DemoKeys::apiKey(AIProvider provider, std::stop_token)
{
    const auto found = m_keys.find(provider);
    co_return found == m_keys.end() ? std::nullopt : std::optional(found->second);
}

QCoro::Task<void> DemoKeys::saveAPIKey(Secret key, AIProvider provider, std::stop_token)
{
    m_keys.insert_or_assign(provider, std::move(key));
    co_return;
}

QCoro::Task<void> DemoKeys::deleteAPIKey(AIProvider provider, std::stop_token)
{
    m_keys.erase(provider);
    co_return;
}

QList<AIProvider> DemoKeys::providersWithStoredKey(std::chrono::milliseconds)
{
    QList<AIProvider> providers;
    for (const auto &[provider, key] : m_keys) {
        providers.append(provider);
    }
    return providers;
}

void DemoKeys::saveWithoutPrompting(
    const Secret &key, AIProvider provider, std::chrono::milliseconds)
{
    m_keys.insert_or_assign(provider, key);
}

AppServices overDemoEngines(AppServices services)
{
    const auto engine = [&services](AIProvider provider) {
        return std::make_shared<DemoEngine>(provider, services.clock);
    };
    services.openAIService = engine(AIProvider::OpenAI);
    services.geminiService = engine(AIProvider::Gemini);
    services.anthropicService = engine(AIProvider::Anthropic);
    services.credentialStore = std::make_shared<DemoKeys>();
    return services;
}

} // namespace velarc
