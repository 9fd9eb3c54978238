#pragma once

// Today's tokens, as the usage sheet shows them.

#include "records/usage_ledger.h"
#include "ui/row_model.h"

#include <QObject>

namespace velarc {

class AppViewModel;

struct UsageRow
{
    Q_GADGET
    Q_PROPERTY(QString engine MEMBER engine)
    Q_PROPERTY(QString total MEMBER total)
    Q_PROPERTY(QString modelID MEMBER modelID)
    Q_PROPERTY(QString details MEMBER details)

public:
    QString engine;
    QString total; // "150 tokens"
    QString modelID;
    QString details; // "In 100 • Out 50"

    [[nodiscard]] QString key() const { return engine + u'\n' + modelID; }
    friend bool operator==(const UsageRow &, const UsageRow &) = default;
};

struct UsageFigures
{
    QString input;
    QString output;
    QString total;

    friend bool operator==(const UsageFigures &, const UsageFigures &) = default;
};

// Plain decimal numbers. A sum beyond the largest integer shows as that integer.
[[nodiscard]] UsageFigures usageFigures(const DailyUsageLedger &ledger);
[[nodiscard]] QList<UsageRow> usageRows(const DailyUsageLedger &ledger);

class UsagePresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.usage is the one")
    Q_PROPERTY(QString input READ input NOTIFY figuresChanged)
    Q_PROPERTY(QString output READ output NOTIFY figuresChanged)
    Q_PROPERTY(QString total READ total NOTIFY figuresChanged)
    Q_PROPERTY(velarc::RowModel *rows READ rows CONSTANT)

public:
    explicit UsagePresenter(AppViewModel &viewModel, QObject *parent = nullptr);

    [[nodiscard]] const QString &input() const { return m_figures.input; }
    [[nodiscard]] const QString &output() const { return m_figures.output; }
    [[nodiscard]] const QString &total() const { return m_figures.total; }
    [[nodiscard]] RowModel *rows() { return &m_rows; }

    Q_INVOKABLE void reset();

Q_SIGNALS:
    void figuresChanged();

private:
    AppViewModel &m_viewModel;
    UsageFigures m_figures;
    RowsOf<UsageRow> m_rows;

    void refresh();
};

} // namespace velarc
