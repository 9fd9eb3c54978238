#include "ui/canvas_presenter.h"

#include "base/text.h"
#include "base/uuid.h"
#include "run/app_view_model.h"
#include "run/named_files.h"

namespace velarc {

using namespace Qt::StringLiterals;

CanvasPresenter::CanvasPresenter(AppViewModel &viewModel, QObject *parent)
    : QObject(parent), m_viewModel(viewModel)
{
    using State = AppState;
    using Self = CanvasPresenter;
    const auto pass = [this](auto from, auto to) { connect(&m_viewModel, from, this, to); };
    pass(&State::quickInputChanged, &Self::quickInputChanged);
    pass(&State::quickAttachmentsChanged, &Self::refreshAttachments);
    pass(&State::inputAttachmentNoticeChanged, &Self::noticeChanged);
    pass(&State::homeAutomationOptionsChanged, &Self::optionsChanged);
    pass(&State::inputModalTextChanged, &Self::inputModalTextChanged);
    refreshAttachments();
}

void CanvasPresenter::refreshAttachments()
{
    QList<AttachmentChip> chips;
    for (const InputAttachment &attachment : m_viewModel.quickAttachments()) {
        chips.append({uuidText(attachment.id), attachment.filename,
            attachment.kind == InputAttachmentKind::Pdf ? u"doc.richtext"_s : u"photo"_s});
    }
    m_attachments.setRows(std::move(chips));
}

QString CanvasPresenter::quickInput() const
{
    return m_viewModel.quickInput();
}

void CanvasPresenter::setQuickInput(const QString &text)
{
    // A text field writes back what it was given; that is no edit.
    if (m_viewModel.quickInput() != text) {
        m_viewModel.setQuickInput(text);
    }
}

QString CanvasPresenter::notice() const
{
    return trimmed(m_viewModel.inputAttachmentNotice().value_or(QString())).toString();
}

QString CanvasPresenter::pasteLabel() const
{
    return autoRunOnPaste() ? u"Paste + Run"_s : u"Paste"_s;
}

bool CanvasPresenter::autoRunOnPaste() const
{
    return m_viewModel.homeAutomationOptions().autoRunOnPaste;
}

bool CanvasPresenter::autoCopyResult() const
{
    return m_viewModel.homeAutomationOptions().autoCopyResult;
}

QString CanvasPresenter::inputModalText() const
{
    return m_viewModel.inputModalText();
}

void CanvasPresenter::setInputModalText(const QString &text)
{
    if (m_viewModel.inputModalText() != text) {
        m_viewModel.setInputModalText(text);
    }
}

void CanvasPresenter::paste()
{
    m_viewModel.canvas().pasteFromClipboard();
}

void CanvasPresenter::clear()
{
    m_viewModel.canvas().clearQuickInput();
}

void CanvasPresenter::removeAttachment(const QString &attachmentID)
{
    m_viewModel.canvas().removeAttachment(QUuid::fromString(attachmentID));
}

void CanvasPresenter::dropFiles(const QList<QUrl> &urls)
{
    const QList<QUrl> files = withoutRepeatedFiles(urls);
    if (!files.isEmpty()) {
        m_viewModel.canvas().handleDroppedFiles(files);
    }
}

void CanvasPresenter::dropText(const QString &text)
{
    const QUrl file = fileNamedBy(trimmed(text));
    if (text.startsWith(u"file://") && !file.isEmpty()) {
        dropFiles({file});
    }
}

void CanvasPresenter::setIsDropTargeted(bool isTargeted)
{
    if (isTargeted != m_isDropTargeted) {
        m_isDropTargeted = isTargeted;
        Q_EMIT isDropTargetedChanged();
    }
}

void CanvasPresenter::toggleAutoRunOnPaste()
{
    HomeAutomationOptions options = m_viewModel.homeAutomationOptions();
    options.autoRunOnPaste = !options.autoRunOnPaste;
    m_viewModel.setHomeAutomationOptions(options);
    m_viewModel.library().saveAutomationOptions();
}

void CanvasPresenter::toggleAutoCopyResult()
{
    HomeAutomationOptions options = m_viewModel.homeAutomationOptions();
    options.autoCopyResult = !options.autoCopyResult;
    m_viewModel.setHomeAutomationOptions(options);
    m_viewModel.library().saveAutomationOptions();
}

void CanvasPresenter::submitInputModal()
{
    m_viewModel.canvas().submitInputModal();
}

void CanvasPresenter::dismissInputModal()
{
    m_viewModel.canvas().dismissInputModal();
}

} // namespace velarc
