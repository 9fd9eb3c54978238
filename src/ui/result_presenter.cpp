#include "ui/result_presenter.h"

#include "base/text.h"
#include "run/app_view_model.h"
#include "ui/picture_loader.h"

#include <array>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kMostAnnounced = 300; // characters of a result

// By the alternatives of EngineState.
constexpr std::array kDisplays{ResultPresenter::Ready, ResultPresenter::Processing,
    ResultPresenter::Result, ResultPresenter::Error};
static_assert(std::is_same_v<EngineState,
    std::variant<EngineReady, EngineProcessing, EngineResult, EngineError>>);

// By the alternatives of ResultPayload.
constexpr std::array kBodies{ResultPresenter::Text, ResultPresenter::Picture, ResultPresenter::Pdf};
static_assert(std::is_same_v<ResultPayload, std::variant<TextPayload, ImagePayload, PdfPayload>>);

const ResultPayload *payloadOf(const EngineState &state)
{
    const auto *result = std::get_if<EngineResult>(&state);
    return result == nullptr ? nullptr : &result->payload;
}

const EngineError *errorOf(const EngineState &state)
{
    return std::get_if<EngineError>(&state);
}

QString rowsAsText(const QList<DebugInfoRow> &rows)
{
    QStringList lines;
    for (const DebugInfoRow &row : rows) {
        lines.append(row.key + u": "_s + row.value);
    }
    return lines.join(u'\n');
}

QString nameOf(const PdfPayload &pdf)
{
    return pdf.url.fileName();
}

} // namespace

ResultPresenter::ResultPresenter(
    AppViewModel &viewModel, std::shared_ptr<ShownPicture> shown, QObject *parent)
    : QObject(parent)
    , m_viewModel(viewModel)
    , m_shown(std::move(shown))
    , m_loader(std::make_unique<PictureLoader>(viewModel.tasks()))
{
    watch();
    followResult();
    refreshDebugInfo();
}

ResultPresenter::~ResultPresenter() = default;

void ResultPresenter::watch()
{
    using State = AppState;
    using Self = ResultPresenter;
    const auto pass = [this](auto from, auto to) { connect(&m_viewModel, from, this, to); };
    pass(&State::homePhaseChanged, &Self::followPhase);
    pass(&State::engineStateChanged, &Self::followResult);
    pass(&State::engineStateChanged, &Self::engineStateChanged);
    pass(&State::latestRunDebugInfoChanged, &Self::refreshDebugInfo);
    pass(&State::suggestedConnectionProviderChanged, &Self::suggestedEngineChanged);
    pass(&State::refinePromptChanged, &Self::refinePromptChanged);
}

void ResultPresenter::followPhase()
{
    if (m_viewModel.homePhase() == HomePhase::Output) {
        return;
    }
    m_isExpanded = false;
    m_isDetailsExpanded = false;
    m_isTechnicalExpanded = false;
    Q_EMIT viewChanged();
    setDebugTab(Response);
}

void ResultPresenter::followResult()
{
    m_loader->stop();
    m_shown->clear();
    m_picture.clear();
    m_isPictureBroken = false;
    const ResultPayload *payload = payloadOf(m_viewModel.engineState());
    if (const auto *image = payload == nullptr ? nullptr : std::get_if<ImagePayload>(payload)) {
        m_loader->load(image->png, [this](QImage picture) { showPicture(std::move(picture)); });
    }
    Q_EMIT pictureChanged();
}

void ResultPresenter::showPicture(QImage picture)
{
    m_isPictureBroken = picture.isNull();
    m_picture = m_isPictureBroken ? QUrl() : m_shown->show(std::move(picture));
    Q_EMIT pictureChanged();
}

void ResultPresenter::refreshDebugInfo()
{
    QList<InfoRow> rows;
    if (const auto &info = m_viewModel.latestRunDebugInfo()) {
        for (const DebugInfoRow &row : info->infoRows) {
            rows.append({row.key, isBlank(row.value) ? u"<empty>"_s : row.value});
        }
    }
    m_infoRows.setRows(std::move(rows));
    Q_EMIT debugInfoChanged();
}

ResultPresenter::Display ResultPresenter::display() const
{
    return kDisplays.at(m_viewModel.engineState().index());
}

ResultPresenter::Body ResultPresenter::body() const
{
    const ResultPayload *payload = payloadOf(m_viewModel.engineState());
    return payload == nullptr ? Text : kBodies.at(payload->index());
}

QString ResultPresenter::step() const
{
    const auto *processing = std::get_if<EngineProcessing>(&m_viewModel.engineState());
    return processing == nullptr ? QString() : processing->step;
}

QString ResultPresenter::text() const
{
    const ResultPayload *payload = payloadOf(m_viewModel.engineState());
    const auto *text = payload == nullptr ? nullptr : std::get_if<TextPayload>(payload);
    return text == nullptr ? QString() : text->text;
}

QString ResultPresenter::pdfName() const
{
    const ResultPayload *payload = payloadOf(m_viewModel.engineState());
    const auto *pdf = payload == nullptr ? nullptr : std::get_if<PdfPayload>(payload);
    return pdf == nullptr ? QString() : nameOf(*pdf);
}

QString ResultPresenter::errorMessage() const
{
    const EngineError *error = errorOf(m_viewModel.engineState());
    return error == nullptr ? QString() : error->message;
}

QString ResultPresenter::technical() const
{
    const EngineError *error = errorOf(m_viewModel.engineState());
    const QString text = error == nullptr ? QString() : error->technical.value_or(QString());
    return isBlank(text) ? QString() : text;
}

QString ResultPresenter::announcement() const
{
    switch (display()) {
    case Ready:
    case Processing:
        return {};
    case Error:
        return u"Error: "_s + errorMessage();
    case Result:
        break;
    }
    switch (body()) {
    case Text:
        return u"Result: "_s + characterPrefix(text(), kMostAnnounced).toString();
    case Picture:
        return u"Result: an image"_s;
    case Pdf:
        return u"Result: "_s + pdfName();
    }
    Q_UNREACHABLE();
}

QString ResultPresenter::suggestedEngine() const
{
    const auto &provider = m_viewModel.suggestedConnectionProvider();
    return provider ? label(*provider) : QString();
}

bool ResultPresenter::hasDebugInfo() const
{
    return m_viewModel.latestRunDebugInfo().has_value();
}

QString ResultPresenter::debugText() const
{
    const auto &info = m_viewModel.latestRunDebugInfo();
    if (!info) {
        return {};
    }
    switch (m_debugTab) {
    case Request:
        return info->requestText;
    case Response:
        return info->responseText;
    case Info:
        return rowsAsText(info->infoRows);
    }
    Q_UNREACHABLE();
}

void ResultPresenter::setDebugTab(int tab)
{
    m_debugTab = static_cast<DebugTab>(tab);
    Q_EMIT debugInfoChanged();
}

QString ResultPresenter::refinePrompt() const
{
    return m_viewModel.refinePrompt();
}

void ResultPresenter::setRefinePrompt(const QString &text)
{
    // A text field writes back what it was given; that is no edit.
    if (m_viewModel.refinePrompt() != text) {
        m_viewModel.setRefinePrompt(text);
    }
}

bool ResultPresenter::canRefine() const
{
    return !isBlank(m_viewModel.refinePrompt());
}

void ResultPresenter::copy()
{
    m_viewModel.copyResult();
}

void ResultPresenter::copyText(const QString &text)
{
    m_viewModel.copyText(text);
}

void ResultPresenter::copyDebugTab()
{
    m_viewModel.copyText(debugText());
}

void ResultPresenter::refine()
{
    if (canRefine()) {
        m_viewModel.runRefine();
    }
}

void ResultPresenter::retry()
{
    m_viewModel.retryRun();
}

void ResultPresenter::restart()
{
    m_viewModel.restart();
}

void ResultPresenter::connectSuggestedEngine()
{
    if (const auto &provider = m_viewModel.suggestedConnectionProvider()) {
        m_viewModel.connections().presentConnectSheet(*provider);
    }
}

} // namespace velarc
