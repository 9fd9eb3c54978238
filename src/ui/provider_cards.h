#pragma once

// The engines as cards to choose from, and how each engine looks everywhere.

#include "actions/action.h"
#include "ui/row_model.h"

#include <functional>

namespace velarc {

// A row of a ProviderCardPicker.
struct ProviderCard
{
    Q_GADGET
    Q_PROPERTY(QString provider MEMBER provider)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString colorHex MEMBER colorHex)
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QString subtitle MEMBER subtitle)
    Q_PROPERTY(QString status MEMBER status)
    Q_PROPERTY(bool isSelected MEMBER isSelected)

public:
    QString provider; // the stored spelling, which the picker gives back
    QString symbol;
    QString colorHex; // "#475569"
    QString label;
    QString subtitle;
    QString status;
    bool isSelected = false;

    [[nodiscard]] const QString &key() const { return provider; }
    friend bool operator==(const ProviderCard &, const ProviderCard &) = default;
};

// What a card says of the state of its engine.
using ProviderStatusText = std::function<QString(AIProvider)>;

// The cards of `providers` in their order, with `selection` as the selected one.
[[nodiscard]] QList<ProviderCard> providerCards(
    const QList<AIProvider> &providers, AIProvider selection, const ProviderStatusText &statusText);

struct ProviderLook
{
    QString symbol;
    QString colorHex; // "#475569"
};

[[nodiscard]] ProviderLook providerLook(AIProvider provider);

} // namespace velarc
