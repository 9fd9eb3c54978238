#pragma once

// The input of the home screen: its text, its attachments, and the options of running on it.

#include "ui/row_model.h"

#include <QObject>
#include <QUrl>

namespace velarc {

class AppViewModel;

struct AttachmentChip
{
    Q_GADGET
    Q_PROPERTY(QString attachmentID MEMBER attachmentID)
    Q_PROPERTY(QString fileName MEMBER fileName)
    Q_PROPERTY(QString symbol MEMBER symbol)

public:
    QString attachmentID;
    QString fileName;
    QString symbol;

    [[nodiscard]] const QString &key() const { return attachmentID; }
    friend bool operator==(const AttachmentChip &, const AttachmentChip &) = default;
};

class CanvasPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.canvas is the one")
    Q_PROPERTY(QString quickInput READ quickInput WRITE setQuickInput NOTIFY quickInputChanged)
    Q_PROPERTY(velarc::RowModel *attachments READ attachments CONSTANT)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    Q_PROPERTY(QString pasteLabel READ pasteLabel NOTIFY optionsChanged)
    Q_PROPERTY(bool autoRunOnPaste READ autoRunOnPaste NOTIFY optionsChanged)
    Q_PROPERTY(bool autoCopyResult READ autoCopyResult NOTIFY optionsChanged)
    Q_PROPERTY(QString inputModalText READ inputModalText WRITE setInputModalText NOTIFY
            inputModalTextChanged)
    Q_PROPERTY(bool isDropTargeted READ isDropTargeted WRITE setIsDropTargeted NOTIFY
            isDropTargetedChanged)

public:
    explicit CanvasPresenter(AppViewModel &viewModel, QObject *parent = nullptr);

    [[nodiscard]] QString quickInput() const;
    void setQuickInput(const QString &text);
    [[nodiscard]] RowModel *attachments() { return &m_attachments; }
    [[nodiscard]] QString notice() const; // trimmed; empty where there is none
    [[nodiscard]] QString pasteLabel() const;
    [[nodiscard]] bool autoRunOnPaste() const;
    [[nodiscard]] bool autoCopyResult() const;
    [[nodiscard]] QString inputModalText() const;
    void setInputModalText(const QString &text);
    [[nodiscard]] bool isDropTargeted() const { return m_isDropTargeted; } // a drop hovers
    void setIsDropTargeted(bool isTargeted);

    Q_INVOKABLE void paste();
    Q_INVOKABLE void clear();
    Q_INVOKABLE void removeAttachment(const QString &attachmentID);
    Q_INVOKABLE void dropFiles(const QList<QUrl> &urls); // each file once
    Q_INVOKABLE void dropText(const QString &text); // takes the address of a file
    Q_INVOKABLE void toggleAutoRunOnPaste(); // and saves
    Q_INVOKABLE void toggleAutoCopyResult(); // and saves
    Q_INVOKABLE void submitInputModal();
    Q_INVOKABLE void dismissInputModal();

Q_SIGNALS:
    void quickInputChanged();
    void noticeChanged();
    void optionsChanged();
    void inputModalTextChanged();
    void isDropTargetedChanged();

private:
    AppViewModel &m_viewModel;
    RowsOf<AttachmentChip> m_attachments;
    bool m_isDropTargeted = false;

    void refreshAttachments();
};

} // namespace velarc
