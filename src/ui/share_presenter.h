#pragma once

// The ways in which the shown result can be handed on.

#include <QObject>
#include <QtQmlIntegration>

#include <memory>

namespace velarc {

class AppViewModel;
class FileChoosing;
class Sharing;

class SharePresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.share is the one")
    // There is something to share: a text, or a file that holds the result.
    Q_PROPERTY(bool isOffered READ isOffered NOTIFY offerChanged)
    Q_PROPERTY(bool canOpen READ canOpen NOTIFY offerChanged)
    Q_PROPERTY(bool canShowInFolder READ canShowInFolder NOTIFY offerChanged)
    Q_PROPERTY(bool canMail READ canMail NOTIFY offerChanged)
    // What came of the last way that was taken; empty where there is nothing to tell.
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    // The sheet that stands in for a dialog of the desktop.
    Q_PROPERTY(bool isSaveSheetPresented READ isSaveSheetPresented WRITE setIsSaveSheetPresented
            NOTIFY saveSheetChanged)
    Q_PROPERTY(QString savePath READ savePath WRITE setSavePath NOTIFY saveSheetChanged)
    Q_PROPERTY(QString saveProblem READ saveProblem NOTIFY saveSheetChanged)
    Q_PROPERTY(bool replacesFile READ replacesFile NOTIFY saveSheetChanged)

public:
    // Either of the two may be missing.
    SharePresenter(AppViewModel &viewModel, std::shared_ptr<FileChoosing> files,
        std::shared_ptr<Sharing> sharing, QObject *parent = nullptr);
    ~SharePresenter() override;

    [[nodiscard]] bool isOffered() const;
    [[nodiscard]] bool canOpen() const;
    [[nodiscard]] bool canShowInFolder() const; // of a file that lies somewhere
    [[nodiscard]] bool canMail() const;
    [[nodiscard]] QString notice() const;
    [[nodiscard]] bool isSaveSheetPresented() const;
    void setIsSaveSheetPresented(bool isPresented);
    [[nodiscard]] QString savePath() const;
    void setSavePath(const QString &path);
    [[nodiscard]] QString saveProblem() const; // empty where there is none
    [[nodiscard]] bool replacesFile() const; // the user was told, and may do it

    Q_INVOKABLE void open();
    Q_INVOKABLE void openWith();
    Q_INVOKABLE void showInFolder();
    Q_INVOKABLE void mail();
    Q_INVOKABLE void saveAs();
    Q_INVOKABLE void save(); // to savePath

    struct Members;

Q_SIGNALS:
    void offerChanged();
    void noticeChanged();
    void saveSheetChanged();

private:
    std::shared_ptr<Members> m_members; // shared with the frames of its tasks

    void followResult();
};

} // namespace velarc
