#pragma once

// Export and import of actions, as the library sheet leads through them.

#include "run/action_files.h"
#include "ui/file_chooser.h"
#include "ui/import_rows.h"
#include "ui/row_model.h"

#include <QList>
#include <QObject>
#include <QUrl>

#include <memory>

namespace velarc {

class AppViewModel;
class SerialWorker;

// One thing at a time: beginning another ends what went on, and so does closing the library. Files
// are read and written off the main thread. Nothing of a file is taken over before confirmImport().
class TransferPresenter : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Screens.transfer is the one")
    Q_PROPERTY(Stage stage READ stage NOTIFY stageChanged)
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
    Q_PROPERTY(bool isFailure READ isFailure NOTIFY messageChanged)
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(QString pathTitle READ pathTitle NOTIFY pathChanged)
    Q_PROPERTY(QString pathCommand READ pathCommand NOTIFY pathChanged)
    Q_PROPERTY(QString previewTitle READ previewTitle NOTIFY previewChanged)
    Q_PROPERTY(QString previewSummary READ previewSummary NOTIFY previewChanged)
    Q_PROPERTY(bool canImport READ canImport NOTIFY previewChanged)
    Q_PROPERTY(velarc::RowModel *previewRows READ previewRows CONSTANT)

public:
    enum Stage
    {
        Idle,
        ChoosingAction, // the next action that is pressed is exported
        ChoosingFile, // in the desktop's dialog
        AskingPath, // in a field of our own, where the desktop has no dialog
        Working,
        Previewing
    };
    Q_ENUM(Stage)

    // Without `files` a path is always asked for in the sheet.
    explicit TransferPresenter(
        AppViewModel &viewModel, std::shared_ptr<FileChoosing> files, QObject *parent = nullptr);
    ~TransferPresenter() override;

    [[nodiscard]] Stage stage() const { return m_stage; }
    [[nodiscard]] const QString &message() const { return m_message; } // what came of the last
    [[nodiscard]] bool isFailure() const { return m_isFailure; }
    [[nodiscard]] const QString &path() const { return m_path; }
    void setPath(const QString &path);
    [[nodiscard]] QString pathTitle() const;
    [[nodiscard]] QString pathCommand() const;
    [[nodiscard]] QString previewTitle() const;
    [[nodiscard]] QString previewSummary() const;
    [[nodiscard]] bool canImport() const; // there is something new in it
    [[nodiscard]] RowModel *previewRows() { return &m_rows; }

    Q_INVOKABLE void exportAll();
    Q_INVOKABLE void chooseActionToExport();
    Q_INVOKABLE void exportAction(const QString &actionID);
    Q_INVOKABLE void importFile();
    Q_INVOKABLE void importDropped(const QList<QUrl> &urls);
    Q_INVOKABLE void acceptPath();
    Q_INVOKABLE void confirmImport();
    Q_INVOKABLE void cancel(); // back to the list
    Q_INVOKABLE void dismissMessage();

Q_SIGNALS:
    void stageChanged();
    void messageChanged();
    void pathChanged();
    void previewChanged();

private:
    friend struct TransferTasks;
    enum class Tone
    {
        Plain,
        Failure,
    };

    AppViewModel &m_viewModel;
    std::shared_ptr<FileChoosing> m_files;
    std::shared_ptr<SerialWorker> m_worker;
    std::stop_source m_stop; // of what goes on
    Stage m_stage = Idle;
    QString m_message;
    bool m_isFailure = false;
    FileWish m_wish;
    QList<AIAction> m_exported;
    QString m_path;
    bool m_replaces = false; // the user has been told that a file stands at the path
    QString m_fileName; // of the import
    ActionFile m_file;
    QList<ImportStep> m_steps;
    RowsOf<ImportRow> m_rows;

    [[nodiscard]] std::stop_source begin(Stage stage);
    void setStage(Stage stage);
    void tell(const QString &message, Tone tone);
    void succeed(const QString &message);
    void fail(const QString &message);
    void ask(FileWish wish);
    void askPath();
    void useFile(const QString &path, IfPresent ifPresent);
    void offerReplacing(const QString &name);
    void showPreview(ActionFile file);
    void planImport();
};

} // namespace velarc
