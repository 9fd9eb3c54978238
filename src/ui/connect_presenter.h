#pragma once

// The sheet in which the user gives the key of an engine.

#include "actions/action.h"
#include "base/secret.h"
#include "ui/secret_input.h"

#include <QObject>
#include <QUrl>

namespace velarc {

class AppViewModel;

// Where an engine gives out its keys.
[[nodiscard]] QUrl keyPage(AIProvider provider);

// The connect sheet stands while AppState names its engine. Each time it opens it starts afresh,
// and what was begun in an earlier one goes on without it.
class ConnectPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.connectSheet is the one")
    Q_PROPERTY(QString title READ title NOTIFY opened)
    Q_PROPERTY(QString headline READ headline NOTIFY opened)
    Q_PROPERTY(QString introduction READ introduction NOTIFY opened)
    Q_PROPERTY(QString guide READ guide CONSTANT)
    Q_PROPERTY(QString modelLine READ modelLine NOTIFY modelLineChanged)
    Q_PROPERTY(QString keyLabel READ keyLabel NOTIFY opened)
    Q_PROPERTY(QString symbol READ symbol NOTIFY opened)
    Q_PROPERTY(QString colorHex READ colorHex NOTIFY opened)
    Q_PROPERTY(bool useForEverything READ useForEverything NOTIFY useForEverythingChanged)
    Q_PROPERTY(bool isConnecting READ isConnecting NOTIFY isConnectingChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorTextChanged)
    Q_PROPERTY(bool hasError READ hasError NOTIFY errorTextChanged)
    Q_PROPERTY(QString pageNotice READ pageNotice NOTIFY pageNoticeChanged)

public:
    explicit ConnectPresenter(AppViewModel &viewModel, QObject *parent = nullptr);

    [[nodiscard]] QString title() const;
    [[nodiscard]] QString headline() const;
    [[nodiscard]] QString introduction() const;
    [[nodiscard]] QString guide() const;
    [[nodiscard]] QString modelLine() const;
    [[nodiscard]] QString keyLabel() const;
    [[nodiscard]] QString symbol() const;
    [[nodiscard]] QString colorHex() const;
    [[nodiscard]] bool useForEverything() const { return m_useForEverything; }
    [[nodiscard]] bool isConnecting() const { return m_isConnecting; }
    [[nodiscard]] QString errorText() const { return m_errorText; } // empty where there is none
    [[nodiscard]] bool hasError() const; // one that is not blank
    [[nodiscard]] QString pageNotice() const { return m_pageNotice; } // where no browser opened

    Q_INVOKABLE void toggleUseForEverything();

    // Verifies the key and connects. Closes the sheet, or shows what went wrong. Does nothing while
    // an earlier key is verified.
    Q_INVOKABLE void submit(velarc::SecretInput *field);
    void submit(const Secret &apiKey);

    Q_INVOKABLE void openKeyPage();
    Q_INVOKABLE void copyURL();
    Q_INVOKABLE void copyError();
    Q_INVOKABLE void close();

Q_SIGNALS:
    void opened(); // for an engine, with nothing typed
    void modelLineChanged();
    void useForEverythingChanged();
    void isConnectingChanged();
    void errorTextChanged();
    void pageNoticeChanged();

private:
    AppViewModel &m_viewModel;
    AIProvider m_provider = AIProvider::UseDefault; // stays while the sheet goes
    bool m_isOpen = false;
    int m_opening = 0; // counts how often it opened: a late answer is for that opening alone
    bool m_useForEverything = true;
    bool m_isConnecting = false;
    QString m_errorText;
    QString m_pageNotice;

    void follow();
    void startAfresh();
    void start(Secret apiKey, QString modelID);
    void applyOutcome(const std::optional<QString> &error);
    void setErrorText(const QString &text);
    void setIsConnecting(bool isConnecting);
    void setPageNotice(const QString &notice);
};

} // namespace velarc
