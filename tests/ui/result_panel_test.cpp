#include "ui_world.h"

#include "support/wait_until.h"

#include <QAccessible>
#include <QBuffer>

namespace velarc {

namespace {

class ResultPanelTest : public UiWorld
{
protected:
    ResultPanelTest() { openWindow(); }

    void show(const ResultPayload &payload)
    {
        viewModel->setEngineState(EngineResult{payload, u"OpenAI"_s});
        viewModel->setHomePhase(HomePhase::Output);
        settle();
    }

    void fail(const std::optional<QString> &technical, const QString &message = u"It failed."_s)
    {
        viewModel->setEngineState(EngineError{message, technical});
        viewModel->setHomePhase(HomePhase::Output);
        settle();
    }

    void setInfo(const GenerationDebugInfo &info)
    {
        viewModel->setLatestRunDebugInfo(info);
        settle();
    }

    [[nodiscard]] QQuickItem &longText()
    {
        auto *item = window->findChild<QQuickItem *>(u"longText"_s);
        if (item == nullptr) {
            throw std::runtime_error("there is no text");
        }
        return *item;
    }

    [[nodiscard]] int linesShown()
    {
        return static_cast<int>(longText().height() / longText().property("linePitch").toReal());
    }
};

const QString kTenLines = u"1\n2\n3\n4\n5\n6\n7\n8\n9\n10"_s;

TEST_F(ResultPanelTest, nothingUnseenTakesPlaceInTheCard)
{
    show(TextPayload{u"hello"_s});
    const auto place = [](const QQuickItem &item) {
        return item.mapRectToScene(item.boundingRect());
    };
    QQuickItem *card = itemCalled(u"Copy"_s);
    while (card != nullptr && !card->property("isVeryTall").isValid()) {
        card = card->parentItem();
    }
    ASSERT_NE(card, nullptr);
    EXPECT_EQ(place(*itemCalled(u"Expand"_s)).top() - place(*card).top(), 16);
    EXPECT_EQ(place(*card).bottom() - place(*itemCalled(u"Copy"_s)).bottom(), 16);
}

TEST_F(ResultPanelTest, withoutAResultItTellsHowToGetOne)
{
    viewModel->setHomePhase(HomePhase::Output);
    settle();
    EXPECT_TRUE(shows(u"Result"_s));
    EXPECT_TRUE(shows(u"Choose an action and tap Run."_s));
}

TEST_F(ResultPanelTest, aStepIsShownAsProcessing)
{
    viewModel->setHomePhase(HomePhase::Output);
    viewModel->setEngineState(EngineProcessing{u"Selecting provider"_s});
    settle();
    EXPECT_TRUE(shows(u"Processing"_s));
    EXPECT_TRUE(shows(u"Selecting provider"_s));
}

TEST_F(ResultPanelTest, aTextHasSixLinesUntilItIsExpanded)
{
    show(TextPayload{kTenLines});
    EXPECT_EQ(linesShown(), 6);
    click(u"Expand"_s);
    EXPECT_EQ(linesShown(), 10);
    EXPECT_FALSE(shows(u"Expand"_s));
    click(u"Collapse"_s);
    EXPECT_EQ(linesShown(), 6);
}

TEST_F(ResultPanelTest, refineStandsUnderAnExpandedTextAlone)
{
    show(TextPayload{u"hello"_s});
    EXPECT_FALSE(shows(u"Refine"_s));
    click(u"Expand"_s);
    ASSERT_TRUE(shows(u"Refine"_s));
    EXPECT_FALSE(itemCalled(u"Refine"_s)->isEnabled());
    viewModel->setRefinePrompt(u"shorter"_s);
    EXPECT_TRUE(itemCalled(u"Refine"_s)->isEnabled());
    show(PdfPayload{QUrl(u"file:///tmp/a.pdf"_s), u"hello"_s});
    EXPECT_FALSE(shows(u"Refine"_s));
}

TEST_F(ResultPanelTest, whatWasTypedToRefineComesBackAfterCollapsing)
{
    show(TextPayload{u"hello"_s});
    click(u"Expand"_s);
    itemCalled(u"Refine this output..."_s)->forceActiveFocus();
    type(u"shorter"_s);
    EXPECT_EQ(viewModel->refinePrompt(), u"shorter"_s);
    click(u"Collapse"_s);
    EXPECT_EQ(viewModel->refinePrompt(), u"shorter"_s);
    click(u"Expand"_s);
    EXPECT_EQ(itemCalled(u"Refine this output..."_s)->property("text"), u"shorter"_s);
}

TEST_F(ResultPanelTest, detailsStandOnlyWhereThereIsDebugInfo)
{
    show(TextPayload{u"hello"_s});
    EXPECT_FALSE(shows(u"Details"_s));
    setInfo({u"asked"_s, u"answered"_s, {}});
    ASSERT_TRUE(shows(u"Details"_s));
    EXPECT_FALSE(shows(u"Copy Response"_s));
    click(u"Details"_s);
    EXPECT_TRUE(shows(u"Hide Details"_s));
    EXPECT_TRUE(shows(u"Debug Tab"_s));
    EXPECT_TRUE(shows(u"Response answered"_s));
    EXPECT_TRUE(shows(u"Copy Response"_s));
    click(u"Request"_s);
    EXPECT_TRUE(shows(u"Request asked"_s));
    click(u"Copy Request"_s);
    EXPECT_EQ(copied->texts, QStringList(u"asked"_s));
}

TEST_F(ResultPanelTest, factsAreShownOrThatThereAreNone)
{
    show(TextPayload{u"hello"_s});
    setInfo({{}, {}, {{u"Model"_s, u"four"_s}, {u"Endpoint"_s, u" "_s}}});
    click(u"Details"_s);
    click(u"Info"_s);
    EXPECT_TRUE(shows(u"Model"_s));
    EXPECT_TRUE(shows(u"four"_s));
    EXPECT_TRUE(shows(u"<empty>"_s));
    EXPECT_FALSE(shows(u"No metadata available for this run."_s));
    setInfo({});
    EXPECT_TRUE(shows(u"No metadata available for this run."_s));
}

TEST_F(ResultPanelTest, anErrorHasItsDetailsAndRemedies)
{
    fail(u"because"_s);
    EXPECT_TRUE(shows(u"Error"_s));
    EXPECT_TRUE(shows(u"It failed."_s));
    EXPECT_TRUE(shows(u"Retry"_s));
    EXPECT_FALSE(shows(u"Connect OpenAI"_s));
    click(u"Technical details"_s);
    EXPECT_TRUE(shows(u"Technical details because"_s));
    click(u"Copy Details"_s);
    EXPECT_EQ(copied->texts, QStringList(u"because"_s));
    viewModel->setSuggestedConnectionProvider(AIProvider::OpenAI);
    settle();
    EXPECT_TRUE(shows(u"Connect OpenAI"_s));
    click(u"Restart"_s);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
}

TEST_F(ResultPanelTest, anErrorOf400CharactersIsSeenWhole)
{
    fail(u"because"_s, u"The engine said no. "_s.repeated(20));
    EXPECT_GT(linesShown(), 2);
    EXPECT_FALSE(longText().property("isCut").toBool());
    EXPECT_FALSE(shows(u"Expand"_s));
    window->resize(window->minimumSize());
    settle();
    EXPECT_LE(longText().width(), window->width());
}

TEST_F(ResultPanelTest, anErrorOfPagesLeavesItsRemediesInSightAndCanBeSeenWhole)
{
    fail(u"because"_s, u"The engine said no. "_s.repeated(2'000));
    EXPECT_EQ(linesShown(), 8);
    QQuickItem *retry = itemCalled(u"Retry"_s);
    EXPECT_LT(retry->mapToScene({0, 0}).y(), window->height());
    click(u"Expand"_s);
    EXPECT_GT(linesShown(), 100);
    click(u"Collapse"_s);
    EXPECT_EQ(linesShown(), 8);
}

TEST_F(ResultPanelTest, remediesStandInTheirOrder)
{
    viewModel->setSuggestedConnectionProvider(AIProvider::OpenAI);
    fail(u"because"_s);
    const auto left = [this](const QString &name) {
        return itemCalled(name)->mapToScene({0, 0}).x();
    };
    EXPECT_LT(left(u"Retry"_s), left(u"Connect OpenAI"_s));
    EXPECT_LT(left(u"Connect OpenAI"_s), left(u"Restart"_s));
    click(u"Connect OpenAI"_s);
    EXPECT_EQ(viewModel->providerConnectSheetProvider(), AIProvider::OpenAI);
}

TEST_F(ResultPanelTest, theResultOfASystemActionHasEverythingThatATextHas)
{
    viewModel->library().selectAction(actionNamed(u"Create Calendar Event"_s).id);
    viewModel->setQuickInput(u"lunch tomorrow"_s);
    viewModel->runSelectedAction();
    letRunGoOn();
    settle();
    for (const QString &name : {u"Copy"_s, u"Share"_s, u"Restart"_s, u"Expand"_s}) {
        EXPECT_TRUE(shows(name)) << name.toStdString();
    }
    click(u"Expand"_s);
    EXPECT_TRUE(shows(u"Refine"_s));
}

TEST_F(ResultPanelTest, anErrorWithBlankDetailsHasNoDisclosure)
{
    fail(u" \n"_s);
    EXPECT_TRUE(shows(u"It failed."_s));
    EXPECT_FALSE(shows(u"Technical details"_s));
}

TEST_F(ResultPanelTest, aPictureThatDoesNotDecodeIsApologisedFor)
{
    show(ImagePayload{"no picture"});
    EXPECT_TRUE(waitUntil([this] { return screens->result()->isPictureBroken(); }));
    settle();
    EXPECT_TRUE(shows(u"Image generated, but preview could not be rendered."_s));
    EXPECT_TRUE(shows(u"Copy"_s));
    EXPECT_TRUE(shows(u"Share"_s));
}

TEST_F(ResultPanelTest, aPictureIsShownAtLeast180High)
{
    QImage thin(400, 4, QImage::Format_RGB32);
    thin.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    thin.save(&buffer, "PNG");
    show(ImagePayload{png});
    EXPECT_TRUE(waitUntil([this] { return !screens->result()->picture().isEmpty(); }));
    settle();
    EXPECT_EQ(itemCalled(u"Result image"_s)->parentItem()->height(), 180);
}

TEST_F(ResultPanelTest, aPdfIsShownByItsName)
{
    show(PdfPayload{QUrl(u"file:///tmp/a%20name.pdf"_s), u"text"_s});
    EXPECT_TRUE(shows(u"a name.pdf"_s));
    click(u"Copy"_s);
    EXPECT_EQ(copied->texts, QStringList(u"/tmp/a name.pdf"_s));
    click(u"Show in Folder"_s);
    EXPECT_EQ(sharing->shown.size(), 1);
}

TEST_F(ResultPanelTest, theShareMenuHasWhatTheDesktopHas)
{
    show(TextPayload{u"hello"_s});
    click(u"Share"_s);
    for (const QString &name : {u"Copy"_s, u"Save as…"_s, u"Open with…"_s, u"Send by mail…"_s}) {
        EXPECT_TRUE(shows(name)) << name.toStdString();
    }
    EXPECT_FALSE(shows(u"Show in Folder"_s));
    click(u"Send by mail…"_s);
    ASSERT_EQ(sharing->mails.size(), 1);
    EXPECT_EQ(sharing->mails.first().text, u"hello"_s);
}

TEST_F(ResultPanelTest, withoutADialogOfTheDesktopASheetAsksForTheFile)
{
    show(TextPayload{u"hello"_s});
    click(u"Share"_s);
    click(u"Save as…"_s);
    EXPECT_TRUE(shows(u"Save Result"_s));
    EXPECT_TRUE(waitUntil([this] { return shows(u"File"_s); }));
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Save Result"_s); }));
}

TEST_F(ResultPanelTest, screenReadersAreToldTheResult)
{
    show(TextPayload{u"hello"_s});
    ASSERT_TRUE(shows(u"Result: hello"_s));
    QAccessibleInterface *told =
        QAccessible::queryAccessibleInterface(itemCalled(u"Result: hello"_s));
    EXPECT_EQ(told->role(), QAccessible::AlertMessage);
    fail(u"because"_s);
    EXPECT_TRUE(shows(u"Error: It failed."_s));
}

TEST_F(ResultPanelTest, eachControlCanBePressedThroughAccessibility)
{
    show(TextPayload{kTenLines});
    setInfo({u"asked"_s, u"answered"_s, {}});
    const auto pressCalled = [this](const QString &name) {
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(itemCalled(name));
        face->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        settle();
    };
    pressCalled(u"Expand"_s);
    EXPECT_TRUE(shows(u"Collapse"_s));
    pressCalled(u"Details"_s);
    pressCalled(u"Info"_s);
    EXPECT_TRUE(shows(u"Copy Info"_s));
    pressCalled(u"Copy"_s);
    EXPECT_EQ(copied->texts, QStringList(kTenLines));
    pressCalled(u"Restart"_s);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
}

} // namespace

} // namespace velarc
