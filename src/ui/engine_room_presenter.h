#pragma once

// The Engine Room: the connections, the default engine and its model, and what is rarely needed.

#include "base/clock.h"
#include "records/provider_settings.h"
#include "ui/provider_cards.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <optional>

namespace velarc {

class AppViewModel;

struct ConnectionRow
{
    Q_GADGET
    Q_PROPERTY(QString provider MEMBER provider)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString subtitle MEMBER subtitle)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString colorHex MEMBER colorHex)
    Q_PROPERTY(bool isConnected MEMBER isConnected)
    Q_PROPERTY(QString badge MEMBER badge)
    Q_PROPERTY(QString status MEMBER status)

public:
    QString provider; // the stored spelling
    QString name;
    QString subtitle;
    QString symbol;
    QString colorHex;
    bool isConnected = false;
    QString badge;
    QString status; // with the time of the last verification

    [[nodiscard]] const QString &key() const { return provider; }
    friend bool operator==(const ConnectionRow &, const ConnectionRow &) = default;
};

// One for each place where the Engine Room stands. Every change of the settings is saved when it is
// made, here or anywhere else, and moves the "Saved" line.
class EngineRoomPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.engineRoom() makes it")
    Q_PROPERTY(QList<QString> sections READ sections CONSTANT)
    Q_PROPERTY(int section READ section NOTIFY sectionChanged)
    Q_PROPERTY(QString savedLine READ savedLine NOTIFY savedLineChanged)
    Q_PROPERTY(QString statusNote READ statusNote NOTIFY statusNoteChanged)
    Q_PROPERTY(velarc::RowModel *connections READ connections CONSTANT)
    Q_PROPERTY(velarc::RowModel *cards READ cards CONSTANT)
    Q_PROPERTY(bool hasModelSelector READ hasModelSelector NOTIFY settingsChanged)
    Q_PROPERTY(QString modelLine READ modelLine NOTIFY settingsChanged)
    Q_PROPERTY(QList<QString> models READ models NOTIFY settingsChanged)
    Q_PROPERTY(int modelIndex READ modelIndex NOTIFY settingsChanged)
    Q_PROPERTY(QString modelID READ modelID WRITE setModelID NOTIFY settingsChanged)
    Q_PROPERTY(QString onDeviceTitle READ onDeviceTitle NOTIFY onDeviceChanged)
    Q_PROPERTY(QString onDeviceDetails READ onDeviceDetails NOTIFY onDeviceChanged)
    Q_PROPERTY(bool isOnDeviceEnabled READ isOnDeviceEnabled NOTIFY settingsChanged)
    Q_PROPERTY(QList<QString> useCases READ useCases CONSTANT)
    Q_PROPERTY(int useCase READ useCase NOTIFY settingsChanged)

public:
    explicit EngineRoomPresenter(AppViewModel &viewModel, QObject *parent = nullptr);

    [[nodiscard]] QStringList sections() const;
    [[nodiscard]] int section() const;
    [[nodiscard]] QString savedLine() const; // empty until something is saved
    [[nodiscard]] QString statusNote() const;
    [[nodiscard]] RowModel *connections() { return &m_connections; }
    [[nodiscard]] RowModel *cards() { return &m_cards; }
    [[nodiscard]] bool hasModelSelector() const;
    [[nodiscard]] QString modelLine() const;
    [[nodiscard]] QStringList models() const;
    [[nodiscard]] int modelIndex() const; // -1 for a model of no list
    [[nodiscard]] QString modelID() const;
    [[nodiscard]] QString onDeviceTitle() const;
    [[nodiscard]] QString onDeviceDetails() const;
    [[nodiscard]] bool isOnDeviceEnabled() const;
    [[nodiscard]] QStringList useCases() const;
    [[nodiscard]] int useCase() const;

    Q_INVOKABLE void pickSection(int index);
    Q_INVOKABLE void connectEngine(const QString &provider);
    Q_INVOKABLE void disconnectEngine(const QString &provider);
    Q_INVOKABLE void pickDefault(const QString &provider);
    Q_INVOKABLE void pickModel(int index);
    void setModelID(const QString &id); // blank: the engine's own default
    Q_INVOKABLE void toggleOnDevice();
    Q_INVOKABLE void pickUseCase(int index);
    Q_INVOKABLE void applyDefaultToAllActions();

Q_SIGNALS:
    void sectionChanged();
    void savedLineChanged();
    void statusNoteChanged();
    void settingsChanged();
    void onDeviceChanged();

private:
    AppViewModel &m_viewModel;
    RowsOf<ConnectionRow> m_connections;
    RowsOf<ProviderCard> m_cards;
    ProviderSettings m_saved; // as they were when they were last saved
    std::optional<Instant> m_savedAt;
    QTimer m_saveSoon;
    QTimer m_minute; // "Verified 1 min. ago" grows old

    [[nodiscard]] AIProvider standard() const;
    void change(ProviderSettings settings);
    void saveIfChanged();
    void noteSaved();
    void refreshRows();
};

} // namespace velarc
