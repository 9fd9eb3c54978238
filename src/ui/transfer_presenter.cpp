#include "ui/transfer_presenter.h"

#include "base/errors.h"
#include "base/text.h"
#include "base/worker.h"
#include "run/action_files.h"
#include "run/app_view_model.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

QString actionCount(qsizetype count)
{
    return count == 1 ? u"1 action"_s : QString::number(count) + u" actions"_s;
}

QString quoted(const QString &name)
{
    return u'\u201c' + name + u'\u201d';
}

// As a shell reads it: "~" is the home folder, and so is what a relative path starts from.
QString absolutePath(const QString &typed)
{
    const QString path = trimmed(typed).toString();
    if (path == u'~' || path.startsWith(u"~/")) {
        return QDir::homePath() + path.mid(1);
    }
    return QDir::home().absoluteFilePath(path);
}

} // namespace

// The waits of the presenter. Their frames may outlive it.
struct TransferTasks
{
    using Self = QPointer<TransferPresenter>;

    static QCoro::Task<void> choose(Self self, std::stop_source stop)
    {
        const TaskScope::Ticket ticket = self->m_viewModel.scope()->enter(stop);
        const std::shared_ptr<FileChoosing> files = self->m_files;
        FileWish wish = self->m_wish;
        FileChoice choice;
        try {
            choice = co_await files->choose(std::move(wish), stop.get_token());
        } catch (const CancellationError &) {
            co_return;
        }
        if (!self || stop.stop_requested()) {
            co_return;
        }
        switch (choice.outcome) {
        case FileChoice::Outcome::Chosen:
            self->useFile(choice.path, IfPresent::Replace); // the dialog has asked
            break;
        case FileChoice::Outcome::Dismissed:
            self->setStage(TransferPresenter::Idle);
            break;
        case FileChoice::Outcome::NoDialog:
            self->askPath();
            break;
        }
    }

    static QCoro::Task<void> write(
        Self self, QString path, IfPresent ifPresent, std::stop_source stop)
    {
        const TaskScope::Ticket ticket = self->m_viewModel.scope()->enter(stop);
        const std::shared_ptr<SerialWorker> worker = self->m_worker;
        const QList<AIAction> actions = self->m_exported;
        bool isWritten = false;
        QString failure;
        try {
            auto work = [path, actions, ifPresent](const std::stop_token &) {
                return saveActionFile(path, actions, ifPresent);
            };
            isWritten = co_await worker->run(std::move(work), stop.get_token());
        } catch (const ActionExportError &error) {
            failure = error.message();
        } catch (const CancellationError &) {
            co_return;
        }
        if (!self || stop.stop_requested()) {
            co_return;
        }
        const QString name = quoted(QFileInfo(path).fileName());
        if (!failure.isEmpty()) {
            self->fail(failure);
        } else if (isWritten) {
            self->succeed(u"Exported "_s + actionCount(actions.size()) + u" to "_s + name + u'.');
        } else {
            self->offerReplacing(name);
        }
    }

    static QCoro::Task<void> read(Self self, QString path, std::stop_source stop)
    {
        const TaskScope::Ticket ticket = self->m_viewModel.scope()->enter(stop);
        const std::shared_ptr<SerialWorker> worker = self->m_worker;
        ActionFile file;
        QString failure;
        try {
            auto work = [path](
                            const std::stop_token &token) { return loadActionFile(path, token); };
            file = co_await worker->run(std::move(work), stop.get_token());
        } catch (const ActionImportError &error) {
            failure = error.message();
        } catch (const CancellationError &) {
            co_return;
        }
        if (!self || stop.stop_requested()) {
            co_return;
        }
        if (failure.isEmpty()) {
            self->showPreview(std::move(file));
        } else {
            self->fail(failure);
        }
    }
};

TransferPresenter::TransferPresenter(
    AppViewModel &viewModel, std::shared_ptr<FileChoosing> files, QObject *parent)
    : QObject(parent)
    , m_viewModel(viewModel)
    , m_files(std::move(files))
    , m_worker(std::make_shared<SerialWorker>())
{
    connect(&viewModel, &AppState::actionsChanged, this, [this] {
        if (m_stage == Previewing) {
            planImport();
        }
    });
    connect(&viewModel, &AppState::isActionLibraryPresentedChanged, this, [this] {
        if (!m_viewModel.isActionLibraryPresented()) {
            cancel();
        }
    });
}

TransferPresenter::~TransferPresenter()
{
    m_stop.request_stop();
}

void TransferPresenter::setPath(const QString &path)
{
    if (path != m_path) {
        m_path = path;
        m_replaces = false;
        Q_EMIT pathChanged();
    }
}

QString TransferPresenter::pathTitle() const
{
    return m_wish.title;
}

QString TransferPresenter::pathCommand() const
{
    return m_replaces ? u"Replace"_s : m_wish.acceptLabel;
}

QString TransferPresenter::previewTitle() const
{
    return u"Import "_s + quoted(m_fileName) + u'?';
}

QString TransferPresenter::previewSummary() const
{
    return importSummary(m_steps, m_file.unreadable.size());
}

bool TransferPresenter::canImport() const
{
    return std::any_of(m_steps.begin(), m_steps.end(),
        [](const ImportStep &step) { return step.change != ImportChange::KeepsAsItIs; });
}

void TransferPresenter::exportAll()
{
    m_exported = m_viewModel.actions();
    ask({FileWish::Purpose::Save, u"Export Actions"_s, u"Export"_s, u"velarc-actions.json"_s});
}

void TransferPresenter::chooseActionToExport()
{
    m_stop = begin(ChoosingAction);
}

void TransferPresenter::exportAction(const QString &actionID)
{
    const QUuid id = QUuid::fromString(actionID);
    const QList<AIAction> &actions = m_viewModel.actions();
    const auto found = std::find_if(
        actions.begin(), actions.end(), [&](const AIAction &action) { return action.id == id; });
    if (found != actions.end()) {
        m_exported = {*found};
        ask({FileWish::Purpose::Save, u"Export "_s + quoted(found->name), u"Export"_s,
            exportFileName(found->name)});
    }
}

void TransferPresenter::importFile()
{
    ask({FileWish::Purpose::Open, u"Import Actions"_s, u"Import"_s, {}});
}

void TransferPresenter::importDropped(const QList<QUrl> &urls)
{
    m_stop = begin(Idle);
    if (urls.size() != 1) {
        fail(u"Drop one file at a time to import it. Nothing was imported."_s);
    } else if (!urls.first().isLocalFile()) {
        fail(u"Only files on this computer can be imported. Nothing was imported."_s);
    } else {
        m_wish.purpose = FileWish::Purpose::Open;
        useFile(urls.first().toLocalFile(), IfPresent::Refuse);
    }
}

void TransferPresenter::acceptPath()
{
    if (m_stage != AskingPath || isBlank(m_path)) {
        return;
    }
    useFile(absolutePath(m_path), m_replaces ? IfPresent::Replace : IfPresent::Refuse);
}

void TransferPresenter::confirmImport()
{
    if (m_stage != Previewing || !canImport()) {
        return;
    }
    const QList<AIAction> taken = changedActions(m_steps);
    const QString summary = previewSummary();
    cancel();
    m_viewModel.library().importActions(taken);
    succeed(u"Imported "_s + quoted(m_fileName) + u": "_s + summary + u'.');
}

void TransferPresenter::cancel()
{
    m_stop = begin(Idle);
    m_exported.clear();
    m_file = {};
    m_steps.clear();
    m_rows.setRows({});
}

void TransferPresenter::dismissMessage()
{
    tell({}, Tone::Plain);
}

std::stop_source TransferPresenter::begin(Stage stage)
{
    m_stop.request_stop();
    tell({}, Tone::Plain);
    setStage(stage);
    return {};
}

void TransferPresenter::setStage(Stage stage)
{
    if (stage != m_stage) {
        m_stage = stage;
        Q_EMIT stageChanged();
    }
}

void TransferPresenter::tell(const QString &message, Tone tone)
{
    m_message = message;
    m_isFailure = tone == Tone::Failure;
    Q_EMIT messageChanged();
}

void TransferPresenter::succeed(const QString &message)
{
    m_exported.clear();
    setStage(Idle);
    tell(message, Tone::Plain);
}

void TransferPresenter::fail(const QString &message)
{
    m_exported.clear();
    setStage(Idle);
    tell(message, Tone::Failure);
}

void TransferPresenter::offerReplacing(const QString &name)
{
    m_replaces = true;
    Q_EMIT pathChanged();
    setStage(AskingPath);
    tell(name + u" exists already. Press Replace to write over it."_s, Tone::Failure);
}

void TransferPresenter::ask(FileWish wish)
{
    m_wish = std::move(wish);
    m_stop = begin(ChoosingFile);
    if (m_files) {
        static_cast<void>(TransferTasks::choose(this, m_stop));
    } else {
        askPath();
    }
}

void TransferPresenter::askPath()
{
    m_path = m_wish.purpose == FileWish::Purpose::Save
        ? QDir::home().absoluteFilePath(m_wish.suggestedName)
        : QDir::homePath() + u'/';
    m_replaces = false;
    Q_EMIT pathChanged();
    setStage(AskingPath);
}

void TransferPresenter::useFile(const QString &path, IfPresent ifPresent)
{
    m_stop = begin(Working);
    if (m_wish.purpose == FileWish::Purpose::Save) {
        static_cast<void>(TransferTasks::write(this, path, ifPresent, m_stop));
    } else {
        m_fileName = QFileInfo(path).fileName();
        static_cast<void>(TransferTasks::read(this, path, m_stop));
    }
}

void TransferPresenter::showPreview(ActionFile file)
{
    m_file = std::move(file);
    planImport();
    setStage(Previewing);
}

void TransferPresenter::planImport()
{
    m_steps = importSteps(m_viewModel.actions(), m_file.actions);
    m_rows.setRows(importRows(m_steps, m_file.unreadable));
    Q_EMIT previewChanged();
}

} // namespace velarc
