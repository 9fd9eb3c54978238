#pragma once

// The editor of one action: its draft as the sheet shows it, and what is typed into it.

#include "actions/action.h"
#include "ui/provider_cards.h"
#include "ui/row_model.h"

#include <QColor>
#include <QObject>

namespace velarc {

class AppViewModel;

// Edits the published draft directly; all else that it holds starts anew at each opening. Lists are
// told before the place of the choice in them.
class StudioPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.studio is the one")
    Q_PROPERTY(bool isNew READ isNew NOTIFY opened)

    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString icon READ icon WRITE setIcon NOTIFY iconChanged)
    Q_PROPERTY(QList<QString> symbolCompletions READ symbolCompletions NOTIFY iconChanged)
    Q_PROPERTY(QString displayColor READ displayColor NOTIFY colorChanged)
    Q_PROPERTY(QList<QString> colorNames READ colorNames CONSTANT)
    Q_PROPERTY(QList<QColor> colorDots READ colorDots CONSTANT)
    Q_PROPERTY(int colorIndex READ colorIndex NOTIFY colorChanged)

    Q_PROPERTY(QString modelTag READ modelTag NOTIFY engineChanged)
    Q_PROPERTY(QString globalDefaultNote READ globalDefaultNote NOTIFY settingsChanged)
    Q_PROPERTY(bool showsAdvanced READ showsAdvanced NOTIFY showsAdvancedChanged)
    Q_PROPERTY(velarc::RowModel *engines READ engines CONSTANT)
    Q_PROPERTY(QString modelTitle READ modelTitle NOTIFY engineChanged)
    Q_PROPERTY(QList<QString> modelNames READ modelNames NOTIFY engineChanged)
    Q_PROPERTY(int modelIndex READ modelIndex NOTIFY modelChanged)
    Q_PROPERTY(QString modelID READ modelID WRITE setModelID NOTIFY modelChanged)

    Q_PROPERTY(QString prompt READ prompt WRITE setPrompt NOTIFY promptChanged)
    Q_PROPERTY(QList<QString> variables READ variables CONSTANT)

    Q_PROPERTY(QList<QString> formatNames READ formatNames NOTIFY offeredFormatsChanged)
    Q_PROPERTY(int formatIndex READ formatIndex NOTIFY formatChanged)
    Q_PROPERTY(QString formatNote READ formatNote NOTIFY offeredFormatsChanged)
    Q_PROPERTY(QList<QString> destinationNames READ destinationNames CONSTANT)
    Q_PROPERTY(QList<QString> destinationGroups READ destinationGroups CONSTANT)
    Q_PROPERTY(int destinationIndex READ destinationIndex NOTIFY destinationChanged)

    Q_PROPERTY(QList<QString> skills READ skills NOTIFY skillsChanged)
    Q_PROPERTY(
        QString pendingSkill READ pendingSkill WRITE setPendingSkill NOTIFY pendingSkillChanged)

public:
    explicit StudioPresenter(AppViewModel &viewModel, QObject *parent = nullptr);

    [[nodiscard]] bool isNew() const; // the draft is of no action of the library yet

    [[nodiscard]] const QString &name() const { return draft().name; }
    void setName(const QString &name);
    [[nodiscard]] const QString &icon() const { return draft().icon; }
    void setIcon(const QString &icon);
    [[nodiscard]] QStringList symbolCompletions() const;
    [[nodiscard]] QString displayColor() const; // "#2563eb"
    [[nodiscard]] QStringList colorNames() const;
    [[nodiscard]] QList<QColor> colorDots() const;
    [[nodiscard]] int colorIndex() const; // -1 for a colour outside the palette

    [[nodiscard]] QString modelTag() const;
    [[nodiscard]] QString globalDefaultNote() const;
    [[nodiscard]] bool showsAdvanced() const { return m_showsAdvanced; }
    [[nodiscard]] RowModel *engines() { return &m_engines; }
    [[nodiscard]] QString modelTitle() const; // empty where the engine has no models to pick
    [[nodiscard]] QStringList modelNames() const;
    [[nodiscard]] int modelIndex() const; // -1 for a model that is not listed
    [[nodiscard]] QString modelID() const;
    void setModelID(const QString &modelID);

    [[nodiscard]] const QString &prompt() const { return draft().systemPrompt; }
    void setPrompt(const QString &prompt);
    [[nodiscard]] QStringList variables() const;

    [[nodiscard]] QStringList formatNames() const;
    [[nodiscard]] int formatIndex() const;
    [[nodiscard]] QString formatNote() const;
    [[nodiscard]] QStringList destinationNames() const;
    [[nodiscard]] QStringList destinationGroups() const; // of each name, its group
    [[nodiscard]] int destinationIndex() const;

    [[nodiscard]] const QStringList &skills() const { return draft().skills; }
    [[nodiscard]] const QString &pendingSkill() const { return m_pendingSkill; }
    void setPendingSkill(const QString &skill);

    Q_INVOKABLE void pickColor(int index);
    Q_INVOKABLE void toggleAdvanced();
    Q_INVOKABLE void pickEngine(const QString &provider);
    Q_INVOKABLE void pickModel(int index);
    Q_INVOKABLE void addVariable(const QString &variable);
    Q_INVOKABLE void pickFormat(int index);
    Q_INVOKABLE void pickDestination(int index);
    Q_INVOKABLE void addSkill();
    Q_INVOKABLE void removeSkill(int index);
    Q_INVOKABLE void save();
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void opened();
    void nameChanged();
    void iconChanged();
    void colorChanged();
    void settingsChanged();
    void showsAdvancedChanged();
    void engineChanged();
    void modelChanged();
    void promptChanged();
    void offeredFormatsChanged();
    void formatChanged();
    void destinationChanged();
    void skillsChanged();
    void pendingSkillChanged();

private:
    AppViewModel &m_viewModel;
    AIAction m_shown; // the draft as the screen was last told
    RowsOf<ProviderCard> m_engines;
    bool m_showsAdvanced = false;
    QString m_pendingSkill;

    [[nodiscard]] const AIAction &draft() const;
    template <typename Change> void edit(Change change);
    void settle();
    void open();
    void tellChanges();
    void refreshEngines();
    void setShowsAdvanced(bool shows);
};

} // namespace velarc
