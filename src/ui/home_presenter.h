#pragma once

// The home screen around its input: the pill, the action to run, the running step, notes and the
// toast.

#include "actions/action.h"
#include "records/run_records.h"
#include "ui/row_model.h"

#include <QObject>

namespace velarc {

class AppViewModel;

struct ActionChip
{
    Q_GADGET
    Q_PROPERTY(QString actionID MEMBER actionID)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString colorHex MEMBER colorHex)
    Q_PROPERTY(bool isSelected MEMBER isSelected)

public:
    QString actionID;
    QString name;
    QString symbol;
    QString colorHex;
    bool isSelected = false;

    [[nodiscard]] const QString &key() const { return actionID; }
    friend bool operator==(const ActionChip &, const ActionChip &) = default;
};

// The first four pinned actions; where none is pinned, the first four in display order.
[[nodiscard]] QList<AIAction> stripActions(const QList<AIAction> &actions);

// "Running", "Result", "Issue" or "Ready", and the engine behind it unless it is "None".
[[nodiscard]] QString pillText(const EngineState &state, const QString &providerLabel);

class HomePresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.home is the one")
    Q_PROPERTY(Phase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(Status status READ status NOTIFY engineStateChanged)
    Q_PROPERTY(QString pillText READ pillText NOTIFY pillTextChanged)
    Q_PROPERTY(QString step READ step NOTIFY engineStateChanged)
    Q_PROPERTY(QString statusNote READ statusNote NOTIFY statusNoteChanged)
    Q_PROPERTY(QString toast READ toast NOTIFY toastChanged)
    Q_PROPERTY(bool isNewRunExperience READ isNewRunExperience NOTIFY isNewRunExperienceChanged)
    Q_PROPERTY(bool hasAction READ hasAction NOTIFY actionChanged)
    Q_PROPERTY(QString actionName READ actionName NOTIFY actionChanged)
    Q_PROPERTY(QString actionSymbol READ actionSymbol NOTIFY actionChanged)
    Q_PROPERTY(QString actionColorHex READ actionColorHex NOTIFY actionChanged)
    Q_PROPERTY(QString actionSummary READ actionSummary NOTIFY actionChanged)
    Q_PROPERTY(velarc::RowModel *strip READ strip CONSTANT)
    Q_PROPERTY(QString suggestedEngine READ suggestedEngine NOTIFY suggestedEngineChanged)

public:
    enum Phase
    {
        Input,
        Processing,
        Output
    };
    Q_ENUM(Phase)
    enum Status
    {
        Ready,
        Running,
        Result,
        Issue
    };
    Q_ENUM(Status)

    explicit HomePresenter(AppViewModel &viewModel, QObject *parent = nullptr);

    [[nodiscard]] Phase phase() const;
    [[nodiscard]] Status status() const;
    [[nodiscard]] QString pillText() const;
    [[nodiscard]] QString step() const; // "Generating response" where no step is told
    [[nodiscard]] QString statusNote() const; // empty where there is none
    [[nodiscard]] QString toast() const; // empty where none is shown
    [[nodiscard]] bool isNewRunExperience() const;
    [[nodiscard]] bool hasAction() const { return m_action.has_value(); }
    [[nodiscard]] QString actionName() const;
    [[nodiscard]] QString actionSymbol() const;
    [[nodiscard]] QString actionColorHex() const;
    [[nodiscard]] QString actionSummary() const;
    [[nodiscard]] RowModel *strip() { return &m_strip; }
    [[nodiscard]] QString suggestedEngine() const; // its label; empty where none is suggested

    Q_INVOKABLE void run();
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void back();
    Q_INVOKABLE void selectAction(const QString &actionID);
    Q_INVOKABLE void openActionLibrary();
    Q_INVOKABLE void openEngineRoom();
    Q_INVOKABLE void openMoreSheet();
    Q_INVOKABLE void connectSuggestedEngine();

Q_SIGNALS:
    void phaseChanged();
    void engineStateChanged();
    void pillTextChanged();
    void statusNoteChanged();
    void toastChanged();
    void isNewRunExperienceChanged();
    void actionChanged();
    void suggestedEngineChanged();

private:
    AppViewModel &m_viewModel;
    std::optional<AIAction> m_action; // the one that Run runs
    RowsOf<ActionChip> m_strip;

    void watch();
    void refreshAction();
    void refreshStrip();
};

} // namespace velarc
