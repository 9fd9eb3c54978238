#include "ui/provider_cards.h"

#include <array>

namespace velarc {

namespace {

struct LookRow
{
    AIProvider provider;
    const char16_t *symbol;
    const char16_t *colorHex;
};

constexpr std::array kLooks{
    LookRow{AIProvider::UseDefault, u"dial.high.fill", u"#475569"},
    LookRow{AIProvider::AppleIntelligence, u"apple.logo", u"#111827"},
    LookRow{AIProvider::OpenAI, u"cpu.fill", u"#047857"},
    LookRow{AIProvider::Gemini, u"diamond.fill", u"#0EA5E9"},
    LookRow{AIProvider::Anthropic, u"sparkles.rectangle.stack.fill", u"#C2410C"},
    LookRow{AIProvider::LocalFallback, u"bolt.shield.fill", u"#1D4ED8"},
};

// The rows stand in the order of the enum, so that the enum finds them.
static_assert([] {
    for (std::size_t at = 0; at < kLooks.size(); ++at) {
        if (static_cast<std::size_t>(kLooks.at(at).provider) != at) {
            return false;
        }
    }
    return true;
}());

} // namespace

ProviderLook providerLook(AIProvider provider)
{
    const LookRow &row = kLooks.at(static_cast<std::size_t>(provider));
    return {QString::fromUtf16(row.symbol), QString::fromUtf16(row.colorHex)};
}

QList<ProviderCard> providerCards(
    const QList<AIProvider> &providers, AIProvider selection, const ProviderStatusText &statusText)
{
    QList<ProviderCard> cards;
    cards.reserve(providers.size());
    for (const AIProvider provider : providers) {
        const ProviderLook look = providerLook(provider);
        cards.append({storedSpelling(provider), look.symbol, look.colorHex, label(provider),
            cardSubtitle(provider), statusText(provider), provider == selection});
    }
    return cards;
}

} // namespace velarc
