#include "ui/connect_presenter.h"

#include "base/text.h"
#include "run/app_view_model.h"
#include "ui/provider_cards.h"

#include <QDesktopServices>
#include <QPointer>

#include <algorithm>
#include <array>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

struct Guide
{
    AIProvider provider;
    const char16_t *headline;
    const char16_t *page;
};

constexpr std::array kGuides{
    Guide{AIProvider::OpenAI, u"OpenAI \u2022 ChatGPT and Codex",
        u"https://platform.openai.com/api-keys"},
    Guide{AIProvider::Gemini, u"Gemini \u2022 Google AI Studio API",
        u"https://aistudio.google.com/app/apikey"},
    Guide{AIProvider::Anthropic, u"Anthropic \u2022 Claude and Claude Agent",
        u"https://console.anthropic.com/settings/keys"},
};

constexpr const char16_t *kDocumentation = u"https://platform.openai.com/docs";

const Guide *guideOf(AIProvider provider)
{
    const auto found = std::find_if(kGuides.begin(), kGuides.end(),
        [provider](const Guide &guide) { return guide.provider == provider; });
    return found == kGuides.end() ? nullptr : &*found;
}

} // namespace

QUrl keyPage(AIProvider provider)
{
    const Guide *guide = guideOf(provider);
    return QUrl(QString::fromUtf16(guide == nullptr ? kDocumentation : guide->page));
}

ConnectPresenter::ConnectPresenter(AppViewModel &viewModel, QObject *parent)
    : QObject(parent), m_viewModel(viewModel)
{
    using State = AppState;
    using Self = ConnectPresenter;
    connect(&viewModel, &State::providerConnectSheetProviderChanged, this, &Self::follow);
    connect(&viewModel, &State::providerSettingsChanged, this, &Self::modelLineChanged);
    connect(this, &Self::opened, this, &Self::modelLineChanged);
    follow();
}

void ConnectPresenter::follow()
{
    const auto &provider = m_viewModel.providerConnectSheetProvider();
    const bool isSameSheet = m_isOpen && provider == m_provider;
    m_isOpen = provider.has_value();
    if (isSameSheet) {
        return;
    }
    m_provider = provider.value_or(m_provider);
    startAfresh();
    if (m_isOpen) {
        Q_EMIT opened();
    }
}

void ConnectPresenter::startAfresh()
{
    ++m_opening;
    m_useForEverything = m_provider != AIProvider::Gemini;
    Q_EMIT useForEverythingChanged();
    setIsConnecting(false);
    setErrorText({});
    setPageNotice({});
}

QString ConnectPresenter::title() const
{
    return u"Connect "_s + label(m_provider);
}

QString ConnectPresenter::headline() const
{
    const Guide *guide = guideOf(m_provider);
    return guide == nullptr ? label(m_provider) : QString::fromUtf16(guide->headline);
}

QString ConnectPresenter::introduction() const
{
    return u"Sign in to "_s + label(m_provider)
        + u", create an API key, then paste it here. Keys stay on this device in Keychain."_s;
}

QString ConnectPresenter::guide() const
{
    return u"1. Open the official API key page in your browser.\n"
           "2. Sign in and create a new API key.\n"
           "3. Paste it below and verify.\n"
           "4. Set or change model in Engine Room \u2192 Default Engine."_s;
}

QString ConnectPresenter::modelLine() const
{
    return u"Current default model: "_s
        + defaultModelID(m_viewModel.providerSettings(), m_provider);
}

QString ConnectPresenter::keyLabel() const
{
    return label(m_provider) + u" API Key"_s;
}

QString ConnectPresenter::symbol() const
{
    return providerLook(m_provider).symbol;
}

QString ConnectPresenter::colorHex() const
{
    return providerLook(m_provider).colorHex;
}

bool ConnectPresenter::hasError() const
{
    return !isBlank(m_errorText);
}

void ConnectPresenter::toggleUseForEverything()
{
    m_useForEverything = !m_useForEverything;
    Q_EMIT useForEverythingChanged();
}

void ConnectPresenter::submit(SecretInput *field)
{
    submit(field->secret());
}

void ConnectPresenter::submit(const Secret &apiKey)
{
    if (m_isConnecting) {
        return;
    }
    Secret key = apiKey.trimmed();
    if (key.isEmpty()) {
        setErrorText(u"Paste your API key first."_s);
        return;
    }
    QString modelID =
        trimmed(defaultModelID(m_viewModel.providerSettings(), m_provider)).toString();
    if (modelID.isEmpty()) {
        setErrorText(u"Set a default model for "_s + label(m_provider) + u" in Engine Room."_s);
        return;
    }
    start(std::move(key), std::move(modelID));
}

void ConnectPresenter::start(Secret apiKey, QString modelID)
{
    setErrorText({});
    setIsConnecting(true);
    ConnectRequest request{m_provider, std::move(apiKey), std::move(modelID),
        m_useForEverything ? ConnectFor::Everything : ConnectFor::ThisProviderOnly};
    const auto ended = [self = QPointer<ConnectPresenter>(this), opening = m_opening](
                           const std::optional<QString> &error) {
        if (self && self->m_opening == opening) {
            self->applyOutcome(error);
        }
    };
    m_viewModel.connections().startConnecting(std::move(request), ended);
}

void ConnectPresenter::applyOutcome(const std::optional<QString> &error)
{
    setIsConnecting(false);
    if (error) {
        setErrorText(*error);
    } else {
        close();
    }
}

void ConnectPresenter::openKeyPage()
{
    const QUrl page = keyPage(m_provider);
    setPageNotice(QDesktopServices::openUrl(page)
            ? QString()
            : u"No browser could be opened. The page is "_s + page.toString() + u'.');
}

void ConnectPresenter::copyURL()
{
    m_viewModel.copyText(keyPage(m_provider).toString());
}

void ConnectPresenter::copyError()
{
    m_viewModel.copyText(m_errorText);
}

void ConnectPresenter::close()
{
    m_viewModel.setProviderConnectSheetProvider(std::nullopt);
}

void ConnectPresenter::setErrorText(const QString &text)
{
    m_errorText = text;
    Q_EMIT errorTextChanged();
}

void ConnectPresenter::setIsConnecting(bool isConnecting)
{
    m_isConnecting = isConnecting;
    Q_EMIT isConnectingChanged();
}

void ConnectPresenter::setPageNotice(const QString &notice)
{
    m_pageNotice = notice;
    Q_EMIT pageNoticeChanged();
}

} // namespace velarc
