#include "ui/usage_presenter.h"

#include "run/app_view_model.h"

#include <limits>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

QString sumOf(const QList<ProviderUsageEntry> &entries, qint64 ProviderUsageEntry::*figure)
{
    qint64 sum = 0;
    for (const ProviderUsageEntry &entry : entries) {
        if (__builtin_add_overflow(sum, entry.*figure, &sum)) {
            return QString::number(std::numeric_limits<qint64>::max());
        }
    }
    return QString::number(sum);
}

} // namespace

UsageFigures usageFigures(const DailyUsageLedger &ledger)
{
    return {sumOf(ledger.entries, &ProviderUsageEntry::inputTokens),
        sumOf(ledger.entries, &ProviderUsageEntry::outputTokens),
        sumOf(ledger.entries, &ProviderUsageEntry::totalTokens)};
}

QList<UsageRow> usageRows(const DailyUsageLedger &ledger)
{
    QList<UsageRow> rows;
    for (const ProviderUsageEntry &entry : ledger.entries) {
        rows.append({label(entry.provider), QString::number(entry.totalTokens) + u" tokens"_s,
            entry.modelID,
            u"In "_s + QString::number(entry.inputTokens) + u" \u2022 Out "_s
                + QString::number(entry.outputTokens)});
    }
    return rows;
}

UsagePresenter::UsagePresenter(AppViewModel &viewModel, QObject *parent)
    : QObject(parent), m_viewModel(viewModel)
{
    connect(&viewModel, &AppState::dailyUsageLedgerChanged, this, &UsagePresenter::refresh);
    refresh();
}

void UsagePresenter::reset()
{
    m_viewModel.resetUsage();
}

void UsagePresenter::refresh()
{
    const DailyUsageLedger &ledger = m_viewModel.dailyUsageLedger();
    m_figures = usageFigures(ledger);
    m_rows.setRows(usageRows(ledger));
    Q_EMIT figuresChanged();
}

} // namespace velarc
