#include "ui/studio_presenter.h"

#include "actions/action_color.h"
#include "base/text.h"
#include "run/app_view_model.h"
#include "ui/action_look.h"
#include "ui/studio_rules.h"
#include "ui/symbols.h"

#include <QGuiApplication>
#include <QInputMethod>

#include <algorithm>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// The place of the first of `list` that `matches`; -1 where none does.
template <typename List, typename Predicate> int indexIn(const List &list, Predicate matches)
{
    const auto found = std::find_if(list.begin(), list.end(), matches);
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

template <typename List> bool hasIndex(const List &list, int index)
{
    return index >= 0 && index < list.size();
}

// What a text field of several lines gives back for `text`, which knows one kind of line end.
QString asAnEditorHasIt(QString text)
{
    text.replace(u"\r\n"_s, u"\n"_s);
    for (const QChar lineEnd :
        {QChar(u'\r'), QChar(QChar::ParagraphSeparator), QChar(QChar::LineSeparator)}) {
        text.replace(lineEnd, u'\n');
    }
    return text.replace(QChar(QChar::Nbsp), u' ');
}

} // namespace

StudioPresenter::StudioPresenter(AppViewModel &viewModel, QObject *parent)
    : QObject(parent), m_viewModel(viewModel), m_shown(viewModel.studioDraft())
{
    using State = AppState;
    connect(&viewModel, &State::studioDraftChanged, this, &StudioPresenter::tellChanges);
    connect(&viewModel, &State::isStudioPresentedChanged, this, &StudioPresenter::open);
    connect(&viewModel, &State::providerConnectionsChanged, this, &StudioPresenter::refreshEngines);
    connect(&viewModel, &State::providerSettingsChanged, this, [this] {
        Q_EMIT settingsChanged();
        refreshEngines();
    });
    refreshEngines();
}

const AIAction &StudioPresenter::draft() const
{
    return m_viewModel.studioDraft();
}

bool StudioPresenter::isNew() const
{
    return !m_viewModel.library().editingActionID().has_value();
}

void StudioPresenter::setName(const QString &name)
{
    edit([&](AIAction &draft) { draft.name = name; });
}

void StudioPresenter::setIcon(const QString &icon)
{
    edit([&](AIAction &draft) { draft.icon = icon; });
}

QStringList StudioPresenter::symbolCompletions() const
{
    return velarc::symbolCompletions(icon(), knownSymbols());
}

QString StudioPresenter::displayColor() const
{
    return velarc::displayColor(draft().colorHex);
}

QStringList StudioPresenter::colorNames() const
{
    QStringList names;
    for (const ActionColorOption &option : actionColorPalette()) {
        names.append(option.name);
    }
    return names;
}

QList<QColor> StudioPresenter::colorDots() const
{
    QList<QColor> dots;
    for (const ActionColorOption &option : actionColorPalette()) {
        dots.append(QColor(velarc::displayColor(option.hex)));
    }
    return dots;
}

int StudioPresenter::colorIndex() const
{
    return indexIn(actionColorPalette(),
        [this](const ActionColorOption &option) { return option.hex == draft().colorHex; });
}

QString StudioPresenter::modelTag() const
{
    return velarc::modelTag(draft().provider);
}

QString StudioPresenter::globalDefaultNote() const
{
    return velarc::globalDefaultNote(m_viewModel.providerSettings());
}

QString StudioPresenter::modelTitle() const
{
    return modelPickerTitle(draft().provider);
}

QStringList StudioPresenter::modelNames() const
{
    QStringList names;
    for (const ProviderModelOption &model : providerModels(draft().provider)) {
        names.append(modelRowText(model));
    }
    return names;
}

int StudioPresenter::modelIndex() const
{
    return indexIn(providerModels(draft().provider),
        [this](const ProviderModelOption &model) { return model.id == modelID(); });
}

QString StudioPresenter::modelID() const
{
    return draft().modelOverrideID.value_or(QString());
}

void StudioPresenter::setModelID(const QString &modelID)
{
    edit([&](AIAction &draft) { draft.modelOverrideID = modelID; });
}

void StudioPresenter::setPrompt(const QString &prompt)
{
    // Showing a prompt is no edit of it: the field may hold it with other line ends.
    if (prompt != asAnEditorHasIt(draft().systemPrompt)) {
        edit([&](AIAction &draft) { draft.systemPrompt = prompt; });
    }
}

QStringList StudioPresenter::variables() const
{
    return promptVariables();
}

QStringList StudioPresenter::formatNames() const
{
    QStringList names;
    for (const OutputFormat format : offeredFormats(draft().provider, draft().destination)) {
        names.append(label(format));
    }
    return names;
}

int StudioPresenter::formatIndex() const
{
    return static_cast<int>(
        offeredFormats(draft().provider, draft().destination).indexOf(draft().outputFormat));
}

QString StudioPresenter::formatNote() const
{
    return velarc::formatNote(draft().provider, draft().destination);
}

QStringList StudioPresenter::destinationNames() const
{
    QStringList names;
    for (const ActionDestination &destination : offeredDestinations()) {
        names.append(destination.label());
    }
    return names;
}

QStringList StudioPresenter::destinationGroups() const
{
    QStringList groups;
    for (const ActionDestination &destination : offeredDestinations()) {
        groups.append(destination.isSystem() ? u"Apps"_s : u"Output"_s);
    }
    return groups;
}

int StudioPresenter::destinationIndex() const
{
    return indexIn(offeredDestinations(), [this](const ActionDestination &destination) {
        return destination.identifier() == draft().destination.identifier();
    });
}

void StudioPresenter::setPendingSkill(const QString &skill)
{
    if (skill != m_pendingSkill) {
        m_pendingSkill = skill;
        Q_EMIT pendingSkillChanged();
    }
}

void StudioPresenter::pickColor(int index)
{
    if (hasIndex(actionColorPalette(), index)) {
        edit([&](AIAction &draft) { draft.colorHex = actionColorPalette().at(index).hex; });
    }
}

void StudioPresenter::toggleAdvanced()
{
    setShowsAdvanced(!m_showsAdvanced);
}

void StudioPresenter::pickEngine(const QString &provider)
{
    if (const auto picked = fromStoredSpelling<AIProvider>(provider);
        picked && *picked != draft().provider) {
        edit([&](AIAction &draft) { draft.provider = *picked; });
        settle();
    }
}

void StudioPresenter::pickModel(int index)
{
    const auto &models = providerModels(draft().provider);
    if (hasIndex(models, index)) {
        setModelID(models.at(index).id);
    }
}

void StudioPresenter::addVariable(const QString &variable)
{
    edit([&](AIAction &draft) { draft.systemPrompt = withVariable(draft.systemPrompt, variable); });
}

void StudioPresenter::pickFormat(int index)
{
    const QList<OutputFormat> formats = offeredFormats(draft().provider, draft().destination);
    if (hasIndex(formats, index)) {
        edit([&](AIAction &draft) { draft.outputFormat = formats.at(index); });
    }
}

void StudioPresenter::pickDestination(int index)
{
    const QList<ActionDestination> destinations = offeredDestinations();
    if (hasIndex(destinations, index)) {
        edit([&](AIAction &draft) { draft.destination = destinations.at(index); });
        settle();
    }
}

void StudioPresenter::addSkill()
{
    const QString skill = trimmed(m_pendingSkill).toString();
    if (!skill.isEmpty()) {
        edit([&](AIAction &draft) { draft.skills.append(skill); });
        setPendingSkill({});
    }
}

void StudioPresenter::removeSkill(int index)
{
    if (hasIndex(skills(), index)) {
        edit([&](AIAction &draft) { draft.skills.removeAt(index); });
    }
}

void StudioPresenter::save()
{
    QGuiApplication::inputMethod()->commit(); // what it still composes belongs to the draft
    m_viewModel.library().saveStudioDraft();
}

void StudioPresenter::cancel()
{
    m_viewModel.library().cancelStudio();
}

template <typename Change> void StudioPresenter::edit(Change change)
{
    AIAction changed = draft();
    change(changed);
    m_viewModel.setStudioDraft(std::move(changed));
}

void StudioPresenter::settle()
{
    const AIAction settled = settledDraft(draft(), m_viewModel.providerSettings());
    if (settled != draft()) {
        m_viewModel.setStudioDraft(settled);
    }
}

void StudioPresenter::open()
{
    if (!m_viewModel.isStudioPresented()) {
        return;
    }
    setPendingSkill({});
    setShowsAdvanced(draft().provider != AIProvider::UseDefault);
    settle();
    Q_EMIT opened();
}

void StudioPresenter::tellChanges()
{
    const AIAction before = std::exchange(m_shown, draft());
    const bool isOtherEngine = before.provider != m_shown.provider;
    const bool isOtherPlace = before.destination != m_shown.destination;
    const auto tell = [this](bool isChanged, void (StudioPresenter::*signal)()) {
        if (isChanged) {
            Q_EMIT(this->*signal)();
        }
    };
    if (isOtherEngine) {
        refreshEngines();
    }
    tell(before.name != m_shown.name, &StudioPresenter::nameChanged);
    tell(before.icon != m_shown.icon, &StudioPresenter::iconChanged);
    tell(before.colorHex != m_shown.colorHex, &StudioPresenter::colorChanged);
    tell(isOtherEngine, &StudioPresenter::engineChanged);
    tell(isOtherEngine || before.modelOverrideID != m_shown.modelOverrideID,
        &StudioPresenter::modelChanged);
    tell(before.systemPrompt != m_shown.systemPrompt, &StudioPresenter::promptChanged);
    tell(isOtherEngine || isOtherPlace, &StudioPresenter::offeredFormatsChanged);
    tell(isOtherEngine || isOtherPlace || before.outputFormat != m_shown.outputFormat,
        &StudioPresenter::formatChanged);
    tell(isOtherPlace, &StudioPresenter::destinationChanged);
    tell(before.skills != m_shown.skills, &StudioPresenter::skillsChanged);
}

void StudioPresenter::refreshEngines()
{
    m_engines.setRows(providerCards(allProviders(), draft().provider, [this](AIProvider provider) {
        return engineStatusLine(provider, m_viewModel.connections().providerStatusText(provider));
    }));
}

void StudioPresenter::setShowsAdvanced(bool shows)
{
    if (shows != m_showsAdvanced) {
        m_showsAdvanced = shows;
        Q_EMIT showsAdvancedChanged();
    }
}

} // namespace velarc
