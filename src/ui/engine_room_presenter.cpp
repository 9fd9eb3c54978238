#include "ui/engine_room_presenter.h"

#include "base/locale_text.h"
#include "records/provider_models.h"
#include "run/app_view_model.h"

#include <algorithm>
#include <array>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QList<AIProvider> &defaultChoices()
{
    static const QList<AIProvider> kChoices{AIProvider::AppleIntelligence, AIProvider::OpenAI,
        AIProvider::Gemini, AIProvider::Anthropic, AIProvider::LocalFallback};
    return kChoices;
}

struct UseCase
{
    const char16_t *id;
    const char16_t *label;
};

constexpr std::array kUseCases{
    UseCase{u"general", u"General"}, // what holds for every unknown one
    UseCase{u"contentTagging", u"Content Tagging"},
};

const ProviderConnectionInfo &infoOf(const ProviderConnectionState &state, AIProvider provider)
{
    return provider == AIProvider::OpenAI ? state.openAI
        : provider == AIProvider::Gemini  ? state.gemini
                                          : state.anthropic;
}

QList<ConnectionRow> connectionRows(const AppViewModel &viewModel)
{
    QList<ConnectionRow> rows;
    for (const AIProvider provider : cloudProviders()) {
        const ProviderConnectionInfo &info = infoOf(viewModel.providerConnections(), provider);
        const ProviderLook look = providerLook(provider);
        rows.append({storedSpelling(provider), label(provider), cardSubtitle(provider), look.symbol,
            look.colorHex, info.isConnected, info.isConnected ? u"Connected"_s : u"Not Connected"_s,
            viewModel.connections().connectionStatusText(info)});
    }
    return rows;
}

} // namespace

EngineRoomPresenter::EngineRoomPresenter(AppViewModel &viewModel, QObject *parent)
    : QObject(parent), m_viewModel(viewModel), m_saved(viewModel.providerSettings())
{
    using State = AppState;
    using Self = EngineRoomPresenter;
    const auto pass = [this](auto from, auto to) { connect(&m_viewModel, from, this, to); };
    pass(&State::engineRoomSectionChanged, &Self::sectionChanged);
    pass(&State::statusNoteChanged, &Self::statusNoteChanged);
    pass(&State::appleIntelligenceStatusChanged, &Self::onDeviceChanged);
    pass(&State::appleIntelligenceStatusChanged, &Self::refreshRows);
    pass(&State::providerConnectionsChanged, &Self::refreshRows);
    pass(&State::providerSettingsChanged, &Self::refreshRows);
    pass(&State::providerSettingsChanged, &Self::settingsChanged);

    // Who writes a field may write more behind it: what came of it is looked at a turn later.
    m_saveSoon.setSingleShot(true);
    connect(&m_viewModel, &State::providerSettingsChanged, &m_saveSoon,
        [this] { m_saveSoon.start(0ms); });
    connect(&m_saveSoon, &QTimer::timeout, this, &Self::saveIfChanged);

    connect(&m_minute, &QTimer::timeout, this, &Self::refreshRows);
    m_minute.start(1min);

    m_viewModel.connections().refreshAppleIntelligenceStatus();
    refreshRows();
}

AIProvider EngineRoomPresenter::standard() const
{
    return m_viewModel.providerSettings().defaultProvider;
}

void EngineRoomPresenter::refreshRows()
{
    m_connections.setRows(connectionRows(m_viewModel));
    m_cards.setRows(providerCards(defaultChoices(), standard(), [this](AIProvider provider) {
        return m_viewModel.connections().providerStatusText(provider);
    }));
}

void EngineRoomPresenter::change(ProviderSettings settings)
{
    if (settings != m_viewModel.providerSettings()) {
        m_viewModel.setProviderSettings(std::move(settings));
        saveIfChanged();
    }
}

void EngineRoomPresenter::saveIfChanged()
{
    if (m_saved != m_viewModel.providerSettings()) {
        m_saved = m_viewModel.providerSettings();
        m_viewModel.connections().saveProviderSettings();
        noteSaved();
    }
}

void EngineRoomPresenter::noteSaved()
{
    m_savedAt = m_viewModel.now();
    Q_EMIT savedLineChanged();
}

QStringList EngineRoomPresenter::sections() const
{
    return {u"Connections"_s, u"Default Engine"_s, u"Advanced"_s};
}

int EngineRoomPresenter::section() const
{
    return static_cast<int>(allEngineRoomSections().indexOf(m_viewModel.engineRoomSection()));
}

QString EngineRoomPresenter::savedLine() const
{
    return m_savedAt ? u"Saved "_s + shortTime(*m_savedAt) : QString();
}

QString EngineRoomPresenter::statusNote() const
{
    return m_viewModel.statusNote().value_or(QString());
}

bool EngineRoomPresenter::hasModelSelector() const
{
    return cloudProviders().contains(standard());
}

QString EngineRoomPresenter::modelLine() const
{
    return u"Default "_s + label(standard()) + u" model"_s;
}

QStringList EngineRoomPresenter::models() const
{
    QStringList rows;
    for (const ProviderModelOption &model : providerModels(standard())) {
        rows.append(model.title + u" - "_s + model.subtitle);
    }
    return rows;
}

int EngineRoomPresenter::modelIndex() const
{
    const QList<ProviderModelOption> &models = providerModels(standard());
    const auto found = std::find_if(models.begin(), models.end(),
        [id = modelID()](const ProviderModelOption &model) { return model.id == id; });
    return found == models.end() ? -1 : static_cast<int>(found - models.begin());
}

QString EngineRoomPresenter::modelID() const
{
    return defaultModelID(m_viewModel.providerSettings(), standard());
}

QString EngineRoomPresenter::onDeviceTitle() const
{
    return m_viewModel.appleIntelligenceStatus().title;
}

QString EngineRoomPresenter::onDeviceDetails() const
{
    return m_viewModel.appleIntelligenceStatus().details;
}

bool EngineRoomPresenter::isOnDeviceEnabled() const
{
    return m_viewModel.providerSettings().enableAppleIntelligence;
}

QStringList EngineRoomPresenter::useCases() const
{
    QStringList labels;
    for (const UseCase &useCase : kUseCases) {
        labels.append(QString::fromUtf16(useCase.label));
    }
    return labels;
}

int EngineRoomPresenter::useCase() const
{
    const QString &id = m_viewModel.providerSettings().appleUseCase;
    const auto found = std::find_if(kUseCases.begin(), kUseCases.end(),
        [&](const UseCase &useCase) { return id == QStringView(useCase.id); });
    return found == kUseCases.end() ? 0 : static_cast<int>(found - kUseCases.begin());
}

void EngineRoomPresenter::pickSection(int index)
{
    m_viewModel.library().setEngineRoomSection(allEngineRoomSections().at(index));
}

void EngineRoomPresenter::connectEngine(const QString &provider)
{
    if (const auto engine = fromStoredSpelling<AIProvider>(provider)) {
        m_viewModel.connections().presentConnectSheet(*engine);
    }
}

void EngineRoomPresenter::disconnectEngine(const QString &provider)
{
    if (const auto engine = fromStoredSpelling<AIProvider>(provider)) {
        // A key that could not be removed leaves the row as it is.
        m_viewModel.connections().startDisconnecting(*engine, [](const auto & /*sentence*/) {});
    }
}

void EngineRoomPresenter::pickDefault(const QString &provider)
{
    if (const auto engine = fromStoredSpelling<AIProvider>(provider)) {
        ProviderSettings settings = m_viewModel.providerSettings();
        settings.defaultProvider = *engine;
        change(std::move(settings));
    }
}

void EngineRoomPresenter::pickModel(int index)
{
    setModelID(providerModels(standard()).value(index).id);
}

void EngineRoomPresenter::setModelID(const QString &id)
{
    change(setDefaultModelID(m_viewModel.providerSettings(), standard(), id));
}

void EngineRoomPresenter::toggleOnDevice()
{
    ProviderSettings settings = m_viewModel.providerSettings();
    settings.enableAppleIntelligence = !settings.enableAppleIntelligence;
    change(std::move(settings));
}

void EngineRoomPresenter::pickUseCase(int index)
{
    ProviderSettings settings = m_viewModel.providerSettings();
    settings.appleUseCase = QString::fromUtf16(kUseCases.at(static_cast<std::size_t>(index)).id);
    change(std::move(settings));
}

void EngineRoomPresenter::applyDefaultToAllActions()
{
    m_viewModel.library().applyDefaultEngineToAllActions();
    noteSaved();
}

} // namespace velarc
