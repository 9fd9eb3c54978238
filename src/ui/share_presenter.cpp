#include "ui/share_presenter.h"

#include "base/errors.h"
#include "base/text.h"
#include "base/worker.h"
#include "run/app_view_model.h"
#include "ui/file_chooser.h"
#include "ui/saved_file.h"
#include "ui/sharing.h"

#include <QFileInfo>
#include <QPointer>
#include <QStandardPaths>

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

struct SharePresenter::Members
{
    QPointer<SharePresenter> self; // null once the presenter has gone
    AppViewModel *viewModel = nullptr; // outlives the presenter
    std::shared_ptr<Sharing> sharing;
    std::shared_ptr<FileChoosing> dialogs;
    SerialWorker files; // writes what is saved
    std::stop_source stop; // of everything about the shown result
    std::optional<ResultPayload> payload;
    std::optional<QUrl> file; // holds a picture or a PDF
    SharingMeans means;
    QString notice;
    bool isSaveSheetPresented = false;
    QString savePath;
    QString saveProblem;
    bool replacesFile = false;

    void tell(QString text)
    {
        notice = std::move(text);
        Q_EMIT self->noticeChanged();
    }
    void showSheet(QString problem)
    {
        saveProblem = std::move(problem);
        isSaveSheetPresented = true;
        Q_EMIT self->saveSheetChanged();
    }
};

namespace {

using Handle = std::shared_ptr<SharePresenter::Members>;
using Way = QCoro::Task<ShareOutcome> (*)(Handle, std::stop_token);

// Each goes on with the presenter only after it has asked `stop`: it is stopped before that goes.
QCoro::Task<void> findOut(Handle members, TaskScope::Ticket /*membership*/, std::stop_token stop)
{
    try {
        if (members->sharing) {
            members->means = co_await members->sharing->means(stop);
            throwIfStopped(stop);
        }
        if (!std::holds_alternative<TextPayload>(*members->payload)) {
            members->file = co_await members->viewModel->shareableFileURL(stop);
            throwIfStopped(stop);
        }
        Q_EMIT members->self->offerChanged();
    } catch (const CancellationError &) {
        // Another result has taken its place.
    }
}

// The file to hand to other programs: of a text it is made when it is wanted.
QCoro::Task<std::optional<QUrl>> sharedFile(Handle members, std::stop_token stop)
{
    if (members->file) {
        co_return std::optional<QUrl>(members->file);
    }
    co_return co_await members->viewModel->shareableFileURL(stop);
}

QCoro::Task<ShareOutcome> openFile(Handle members, OpenChoice choice, std::stop_token stop)
{
    const std::optional<QUrl> file = co_await sharedFile(members, stop);
    throwIfStopped(stop);
    if (!file) {
        co_return ShareOutcome::Failed;
    }
    co_return co_await members->sharing->open(*file, choice, stop);
}

QCoro::Task<ShareOutcome> openUsually(Handle members, std::stop_token stop)
{
    return openFile(std::move(members), OpenChoice::Usual, std::move(stop));
}

QCoro::Task<ShareOutcome> openAsking(Handle members, std::stop_token stop)
{
    return openFile(std::move(members), OpenChoice::Asked, std::move(stop));
}

QCoro::Task<ShareOutcome> showFile(Handle members, std::stop_token stop)
{
    return members->sharing->showInFolder(members->file.value_or(QUrl()), std::move(stop));
}

QCoro::Task<ShareOutcome> mailResult(Handle members, std::stop_token stop)
{
    SharedMail mail;
    mail.file = members->file;
    if (const auto *text = std::get_if<TextPayload>(&*members->payload)) {
        mail.text = text->text;
    }
    return members->sharing->mail(std::move(mail), std::move(stop));
}

QCoro::Task<void> take(Handle members, TaskScope::Ticket /*membership*/, Way way, QString apology,
    std::stop_token stop)
{
    try {
        const ShareOutcome outcome = co_await way(members, stop);
        throwIfStopped(stop);
        members->tell(outcome == ShareOutcome::Failed ? apology : QString());
    } catch (const UserFacingError &failure) {
        if (!stop.stop_requested()) {
            members->tell(failure.message());
        }
    } catch (const CancellationError &) {
        // Another result has taken its place.
    }
}

QCoro::Task<SaveReport> written(
    Handle members, QString path, Existing existing, std::stop_token stop)
{
    auto work = [payload = *members->payload, path, existing](
                    const std::stop_token &) { return saveResult(payload, path, existing); };
    co_return co_await members->files.run(std::move(work), std::move(stop));
}

QString savedNotice(const QString &path)
{
    const QFileInfo file(path);
    return u"Saved "_s + file.fileName() + u" in "_s + file.path() + u'.';
}

QCoro::Task<void> saveToSheetPath(
    Handle members, TaskScope::Ticket /*membership*/, std::stop_token stop)
{
    const QString path = absolutePath(members->savePath);
    const Existing existing = members->replacesFile ? Existing::Replaced : Existing::Kept;
    try {
        const SaveReport report = co_await written(members, path, existing, stop);
        throwIfStopped(stop);
        members->replacesFile = report.ending == SaveEnding::Exists;
        switch (report.ending) {
        case SaveEnding::Saved:
            members->self->setIsSaveSheetPresented(false);
            members->tell(savedNotice(path));
            break;
        case SaveEnding::Exists:
            members->showSheet(u"There is a file of that name already. Replace it?"_s);
            break;
        case SaveEnding::IsFolder:
            members->showSheet(u"That is a folder. Add a file name."_s);
            break;
        case SaveEnding::Failed:
            members->showSheet(u"Could not save the result: "_s + report.reason);
            break;
        }
    } catch (const CancellationError &) {
        // Another result has taken its place.
    }
}

void showSaveSheet(SharePresenter::Members &members)
{
    members.savePath = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + u'/'
        + suggestedFileName(*members.payload);
    members.replacesFile = false;
    members.showSheet({});
}

QCoro::Task<void> saveWhereAsked(
    Handle members, TaskScope::Ticket /*membership*/, std::stop_token stop)
{
    try {
        QString name = suggestedFileName(*members->payload);
        FileWish wish{FileWish::Purpose::Save, u"Save Result"_s, u"Save"_s, name};
        const FileChoice choice = co_await members->dialogs->choose(std::move(wish), stop);
        throwIfStopped(stop);
        if (choice.outcome == FileChoice::Outcome::Dismissed) {
            co_return;
        }
        if (choice.outcome == FileChoice::Outcome::NoDialog) {
            showSaveSheet(*members);
            co_return;
        }
        const QString path = choice.path;
        const SaveReport report = co_await written(members, path, Existing::Replaced, stop);
        throwIfStopped(stop);
        members->tell(report.ending == SaveEnding::Saved
                ? savedNotice(path)
                : u"Could not save the result: "_s + report.reason);
    } catch (const CancellationError &) {
        // Another result has taken its place.
    }
}

const ResultPayload *payloadOf(const EngineState &state)
{
    const auto *result = std::get_if<EngineResult>(&state);
    return result == nullptr ? nullptr : &result->payload;
}

// Nobody awaits these tasks: they end with the result, or with the scope.
void takeWay(const Handle &members, Way way, QString apology)
{
    if (members->payload) {
        static_cast<void>(take(members, members->viewModel->tasks().enter(members->stop), way,
            std::move(apology), members->stop.get_token()));
    }
}

} // namespace

SharePresenter::SharePresenter(AppViewModel &viewModel, std::shared_ptr<FileChoosing> files,
    std::shared_ptr<Sharing> sharing, QObject *parent)
    : QObject(parent), m_members(std::make_shared<Members>())
{
    m_members->self = this;
    m_members->viewModel = &viewModel;
    m_members->dialogs = std::move(files);
    m_members->sharing = std::move(sharing);
    connect(&viewModel, &AppState::engineStateChanged, this, &SharePresenter::followResult);
    followResult();
}

SharePresenter::~SharePresenter()
{
    m_members->stop.request_stop();
}

void SharePresenter::followResult()
{
    Members &members = *m_members;
    members.stop.request_stop();
    members.stop = std::stop_source();
    const ResultPayload *payload = payloadOf(members.viewModel->engineState());
    members.payload = payload == nullptr ? std::nullopt : std::optional(*payload);
    members.file.reset();
    members.tell({});
    setIsSaveSheetPresented(false);
    Q_EMIT offerChanged();
    if (payload != nullptr) {
        static_cast<void>(findOut(
            m_members, members.viewModel->tasks().enter(members.stop), members.stop.get_token()));
    }
}

bool SharePresenter::isOffered() const
{
    return m_members->payload
        && (std::holds_alternative<TextPayload>(*m_members->payload) || m_members->file);
}

bool SharePresenter::canOpen() const
{
    return m_members->means.opens && isOffered();
}

bool SharePresenter::canShowInFolder() const
{
    return m_members->means.showsInFolder && m_members->file;
}

bool SharePresenter::canMail() const
{
    const bool isText =
        m_members->payload && std::holds_alternative<TextPayload>(*m_members->payload);
    return isOffered() && (isText ? m_members->means.mailsTexts : m_members->means.mailsFiles);
}

QString SharePresenter::notice() const
{
    return m_members->notice;
}

bool SharePresenter::isSaveSheetPresented() const
{
    return m_members->isSaveSheetPresented;
}

void SharePresenter::setIsSaveSheetPresented(bool isPresented)
{
    m_members->isSaveSheetPresented = isPresented;
    Q_EMIT saveSheetChanged();
}

QString SharePresenter::savePath() const
{
    return m_members->savePath;
}

void SharePresenter::setSavePath(const QString &path)
{
    if (path != m_members->savePath) {
        m_members->savePath = path;
        m_members->saveProblem.clear();
        m_members->replacesFile = false;
        Q_EMIT saveSheetChanged();
    }
}

QString SharePresenter::saveProblem() const
{
    return m_members->saveProblem;
}

bool SharePresenter::replacesFile() const
{
    return m_members->replacesFile;
}

void SharePresenter::open()
{
    takeWay(m_members, &openUsually, u"Could not open the result in another program."_s);
}

void SharePresenter::openWith()
{
    takeWay(m_members, &openAsking, u"Could not open the result in another program."_s);
}

void SharePresenter::showInFolder()
{
    takeWay(m_members, &showFile, u"Could not show the file in its folder."_s);
}

void SharePresenter::mail()
{
    takeWay(m_members, &mailResult, u"Could not hand the result to a mail program."_s);
}

void SharePresenter::saveAs()
{
    Members &members = *m_members;
    if (!members.payload) {
        return;
    }
    if (!members.dialogs) {
        showSaveSheet(members);
        return;
    }
    static_cast<void>(saveWhereAsked(
        m_members, members.viewModel->tasks().enter(members.stop), members.stop.get_token()));
}

void SharePresenter::save()
{
    Members &members = *m_members;
    if (!members.payload) {
        return;
    }
    if (isBlank(members.savePath)) {
        members.showSheet(u"Give the file a name."_s);
        return;
    }
    static_cast<void>(saveToSheetPath(
        m_members, members.viewModel->tasks().enter(members.stop), members.stop.get_token()));
}

} // namespace velarc
