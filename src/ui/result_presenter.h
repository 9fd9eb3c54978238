#pragma once

// What a run has left to see: its result or its error, and on demand how it came about.

#include "ui/result_picture.h"
#include "ui/row_model.h"

#include <QObject>
#include <QUrl>

#include <memory>

namespace velarc {

class AppViewModel;
class PictureLoader;

// A labelled fact about a run.
struct InfoRow
{
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString value MEMBER value)

public:
    QString name;
    QString value; // "<empty>" where there is none

    [[nodiscard]] const QString &key() const { return name; }
    friend bool operator==(const InfoRow &, const InfoRow &) = default;
};

// What is expanded, and the tab, are as they were at first whenever the output leaves the screen.
class ResultPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.result is the one")
    Q_PROPERTY(Display display READ display NOTIFY engineStateChanged)
    Q_PROPERTY(Body body READ body NOTIFY engineStateChanged)
    Q_PROPERTY(QString step READ step NOTIFY engineStateChanged)
    Q_PROPERTY(QString text READ text NOTIFY engineStateChanged)
    Q_PROPERTY(QUrl picture READ picture NOTIFY pictureChanged)
    Q_PROPERTY(bool isPictureBroken READ isPictureBroken NOTIFY pictureChanged)
    Q_PROPERTY(QString pdfName READ pdfName NOTIFY engineStateChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY engineStateChanged)
    Q_PROPERTY(QString technical READ technical NOTIFY engineStateChanged)
    Q_PROPERTY(QString announcement READ announcement NOTIFY engineStateChanged)
    Q_PROPERTY(QString suggestedEngine READ suggestedEngine NOTIFY suggestedEngineChanged)
    Q_PROPERTY(bool hasDebugInfo READ hasDebugInfo NOTIFY debugInfoChanged)
    Q_PROPERTY(QString debugText READ debugText NOTIFY debugInfoChanged)
    Q_PROPERTY(velarc::RowModel *infoRows READ infoRows CONSTANT)
    Q_PROPERTY(bool isExpanded MEMBER m_isExpanded NOTIFY viewChanged)
    Q_PROPERTY(bool isDetailsExpanded MEMBER m_isDetailsExpanded NOTIFY viewChanged)
    Q_PROPERTY(bool isTechnicalExpanded MEMBER m_isTechnicalExpanded NOTIFY viewChanged)
    Q_PROPERTY(int debugTab READ debugTab WRITE setDebugTab NOTIFY debugInfoChanged)
    Q_PROPERTY(
        QString refinePrompt READ refinePrompt WRITE setRefinePrompt NOTIFY refinePromptChanged)
    Q_PROPERTY(bool canRefine READ canRefine NOTIFY refinePromptChanged)

public:
    enum Display
    {
        Ready,
        Processing,
        Result,
        Error
    };
    Q_ENUM(Display)
    enum Body
    {
        Text, // also where there is no result
        Picture,
        Pdf
    };
    Q_ENUM(Body)
    enum DebugTab
    {
        Request,
        Response,
        Info
    };
    Q_ENUM(DebugTab)

    // `shown` takes the decoded picture of a result to the screen.
    ResultPresenter(
        AppViewModel &viewModel, std::shared_ptr<ShownPicture> shown, QObject *parent = nullptr);
    ~ResultPresenter() override;

    [[nodiscard]] Display display() const;
    [[nodiscard]] Body body() const;
    [[nodiscard]] QString step() const;
    [[nodiscard]] QString text() const;
    [[nodiscard]] QUrl picture() const { return m_picture; } // empty until it is decoded
    [[nodiscard]] bool isPictureBroken() const { return m_isPictureBroken; }
    [[nodiscard]] QString pdfName() const;
    [[nodiscard]] QString errorMessage() const;
    [[nodiscard]] QString technical() const; // empty where there is nothing to tell
    [[nodiscard]] QString announcement() const; // for who does not see the screen
    [[nodiscard]] QString suggestedEngine() const; // its label; empty where none is suggested
    [[nodiscard]] bool hasDebugInfo() const;
    [[nodiscard]] QString debugText() const; // of the request or the response, by the tab
    [[nodiscard]] RowModel *infoRows() { return &m_infoRows; }
    [[nodiscard]] int debugTab() const { return m_debugTab; }
    void setDebugTab(int tab);
    [[nodiscard]] QString refinePrompt() const;
    void setRefinePrompt(const QString &text);
    [[nodiscard]] bool canRefine() const;

    Q_INVOKABLE void copy();
    Q_INVOKABLE void copyText(const QString &text);
    Q_INVOKABLE void copyDebugTab();
    Q_INVOKABLE void refine();
    Q_INVOKABLE void retry();
    Q_INVOKABLE void restart();
    Q_INVOKABLE void connectSuggestedEngine();

Q_SIGNALS:
    void engineStateChanged();
    void pictureChanged();
    void suggestedEngineChanged();
    void debugInfoChanged();
    void viewChanged();
    void refinePromptChanged();

private:
    AppViewModel &m_viewModel;
    std::shared_ptr<ShownPicture> m_shown;
    std::unique_ptr<PictureLoader> m_loader;
    RowsOf<InfoRow> m_infoRows;
    bool m_isExpanded = false;
    bool m_isDetailsExpanded = false;
    bool m_isTechnicalExpanded = false;
    DebugTab m_debugTab = Response;
    QUrl m_picture;
    bool m_isPictureBroken = false;

    void watch();
    void followPhase();
    void followResult();
    void showPicture(QImage picture); // null: the bytes do not decode
    void refreshDebugInfo();
};

} // namespace velarc
