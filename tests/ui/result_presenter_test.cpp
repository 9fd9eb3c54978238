#include "support/app_world.h"
#include "support/fixture.h"
#include "support/wait_until.h"
#include "ui/result_presenter.h"

#include <QBuffer>
#include <QImage>

namespace velarc {

namespace {

QByteArray pngOf(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    return bytes;
}

GenerationDebugInfo someInfo()
{
    return {
        u"the request"_s, u"the response"_s, {{u"Model"_s, u"four"_s}, {u"Endpoint"_s, u"  "_s}}};
}

class ResultPresenterTest : public AppWorld
{
protected:
    std::shared_ptr<ShownPicture> shown = std::make_shared<ShownPicture>();
    std::unique_ptr<ResultPresenter> presenter;

    ResultPresenterTest()
    {
        launch();
        presenter = std::make_unique<ResultPresenter>(*viewModel, shown);
    }

    ~ResultPresenterTest() override
    {
        presenter.reset();
        scope->finish();
    }

    void show(const ResultPayload &payload)
    {
        viewModel->setEngineState(EngineResult{payload, u"OpenAI"_s});
        viewModel->setHomePhase(HomePhase::Output);
    }

    void fail(const QString &message, const std::optional<QString> &technical)
    {
        viewModel->setEngineState(EngineError{message, technical});
        viewModel->setHomePhase(HomePhase::Output);
    }

    [[nodiscard]] QStringList infoLines()
    {
        QStringList lines;
        RowModel &rows = *presenter->infoRows();
        for (int row = 0; row < rows.rowCount({}); ++row) {
            lines.append(rows.data(rows.index(row), Qt::UserRole).toString() + u'='
                + rows.data(rows.index(row), Qt::UserRole + 1).toString());
        }
        return lines;
    }
};

TEST_F(ResultPresenterTest, eachStateOfTheEngineHasItsDisplay)
{
    EXPECT_EQ(presenter->display(), ResultPresenter::Ready);
    viewModel->setEngineState(EngineProcessing{u"Selecting provider"_s});
    EXPECT_EQ(presenter->display(), ResultPresenter::Processing);
    EXPECT_EQ(presenter->step(), u"Selecting provider"_s);
    show(TextPayload{u"hello"_s});
    EXPECT_EQ(presenter->display(), ResultPresenter::Result);
    EXPECT_EQ(presenter->text(), u"hello"_s);
    fail(u"It failed."_s, std::nullopt);
    EXPECT_EQ(presenter->display(), ResultPresenter::Error);
    EXPECT_EQ(presenter->errorMessage(), u"It failed."_s);
}

TEST_F(ResultPresenterTest, eachPayloadHasItsBody)
{
    show(TextPayload{u"hello"_s});
    EXPECT_EQ(presenter->body(), ResultPresenter::Text);
    show(ImagePayload{pngOf({4, 4})});
    EXPECT_EQ(presenter->body(), ResultPresenter::Picture);
    show(PdfPayload{QUrl(u"file:///tmp/a%20name.pdf"_s), u"text"_s});
    EXPECT_EQ(presenter->body(), ResultPresenter::Pdf);
    EXPECT_EQ(presenter->pdfName(), u"a name.pdf"_s);
}

TEST_F(ResultPresenterTest, theResultOfASystemActionCanBeCopiedAndRefinedAsAnyText)
{
    viewModel->library().selectAction(actionNamed(u"Create Calendar Event"_s).id);
    viewModel->setQuickInput(u"lunch tomorrow"_s);
    viewModel->runSelectedAction();
    letRunGoOn();
    ASSERT_EQ(presenter->display(), ResultPresenter::Result);
    EXPECT_EQ(presenter->body(), ResultPresenter::Text);
    presenter->copy();
    EXPECT_EQ(copied->texts, QStringList{presenter->text()});
    presenter->setRefinePrompt(u"an hour later"_s);
    EXPECT_TRUE(presenter->canRefine());
    presenter->refine();
    letRunGoOn();
    EXPECT_EQ(systemActions->texts.size(), 2);
}

TEST_F(ResultPresenterTest, aResultWithoutDebugInfoHasNoDetails)
{
    show(TextPayload{u"hello"_s});
    EXPECT_FALSE(presenter->hasDebugInfo());
    viewModel->setLatestRunDebugInfo(someInfo());
    EXPECT_TRUE(presenter->hasDebugInfo());
}

TEST_F(ResultPresenterTest, collapsingKeepsTheRefineText)
{
    show(TextPayload{u"hello"_s});
    presenter->setProperty("isExpanded", true);
    presenter->setRefinePrompt(u"shorter"_s);
    presenter->setProperty("isExpanded", false);
    EXPECT_EQ(viewModel->refinePrompt(), u"shorter"_s);
    presenter->setProperty("isExpanded", true);
    EXPECT_EQ(presenter->refinePrompt(), u"shorter"_s);
}

TEST_F(ResultPresenterTest, anErrorWithABlankTechnicalTextHasNoneToShow)
{
    fail(u"It failed."_s, u" \n\t "_s);
    EXPECT_EQ(presenter->technical(), QString());
    fail(u"It failed."_s, std::nullopt);
    EXPECT_EQ(presenter->technical(), QString());
    fail(u"It failed."_s, u" because \n"_s);
    EXPECT_EQ(presenter->technical(), u" because \n"_s);
}

TEST_F(ResultPresenterTest, aNewRunBeginsWithEverythingCollapsedAndTheResponseInFront)
{
    show(TextPayload{u"hello"_s});
    for (const char *field : {"isExpanded", "isDetailsExpanded", "isTechnicalExpanded"}) {
        presenter->setProperty(field, true);
    }
    presenter->setDebugTab(ResultPresenter::Info);
    viewModel->setHomePhase(HomePhase::Processing); // without passing through the input
    show(TextPayload{u"hello again"_s});
    for (const char *field : {"isExpanded", "isDetailsExpanded", "isTechnicalExpanded"}) {
        EXPECT_FALSE(presenter->property(field).toBool()) << field;
    }
    EXPECT_EQ(presenter->debugTab(), ResultPresenter::Response);
}

TEST_F(ResultPresenterTest, theTabsShowAndCopyTheirTexts)
{
    viewModel->setLatestRunDebugInfo(someInfo());
    EXPECT_EQ(presenter->debugText(), u"the response"_s);
    presenter->copyDebugTab();
    presenter->setDebugTab(ResultPresenter::Request);
    presenter->copyDebugTab();
    presenter->setDebugTab(ResultPresenter::Info);
    presenter->copyDebugTab();
    EXPECT_EQ(copied->texts,
        (QStringList{u"the response"_s, u"the request"_s, u"Model: four\nEndpoint:   "_s}));
}

TEST_F(ResultPresenterTest, aBlankFactIsShownAsEmpty)
{
    viewModel->setLatestRunDebugInfo(someInfo());
    EXPECT_EQ(infoLines(), (QStringList{u"Model=four"_s, u"Endpoint=<empty>"_s}));
}

TEST_F(ResultPresenterTest, factsOfOneNameAreAllShown)
{
    viewModel->setLatestRunDebugInfo(
        GenerationDebugInfo{{}, {}, {{u"Try"_s, u"1"_s}, {u"Try"_s, u"2"_s}, {u"Try"_s, u"2"_s}}});
    EXPECT_EQ(infoLines(), (QStringList{u"Try=1"_s, u"Try=2"_s, u"Try=2"_s}));
}

TEST_F(ResultPresenterTest, aBlankRefineTextStartsNothing)
{
    show(TextPayload{u"hello"_s});
    presenter->setRefinePrompt(u" \n "_s);
    EXPECT_FALSE(presenter->canRefine());
    presenter->refine();
    letRunGoOn();
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Output);
    EXPECT_EQ(viewModel->refinePrompt(), u" \n "_s);
}

TEST_F(ResultPresenterTest, restartAndConnectDoWhatTheySay)
{
    fail(u"OpenAI is not connected."_s, u"Add your API key to continue."_s);
    viewModel->setSuggestedConnectionProvider(AIProvider::OpenAI);
    EXPECT_EQ(presenter->suggestedEngine(), u"OpenAI"_s);
    presenter->connectSuggestedEngine();
    EXPECT_EQ(viewModel->providerConnectSheetProvider(), AIProvider::OpenAI);
    presenter->restart();
    EXPECT_EQ(presenter->display(), ResultPresenter::Ready);
    EXPECT_EQ(presenter->suggestedEngine(), QString());
}

TEST_F(ResultPresenterTest, retryRunsTheSameInputAgain)
{
    openAI->answer.failure = failureOf(ProviderConnectionRequiredError(AIProvider::OpenAI));
    AIAction action = testAction(u"Sort"_s);
    action.provider = AIProvider::OpenAI;
    keys->keys[AIProvider::OpenAI] = "sk-x";
    viewModel->startRun(action, ExplicitInput{{u"hello"_s, {}}});
    letRunGoOn();
    ASSERT_EQ(presenter->display(), ResultPresenter::Error);
    openAI->answer.failure = nullptr;
    presenter->retry();
    letRunGoOn();
    EXPECT_EQ(presenter->text(), u"from OpenAI"_s);
}

TEST_F(ResultPresenterTest, aPictureIsDecodedOffTheMainThread)
{
    show(ImagePayload{pngOf({300, 200})});
    EXPECT_TRUE(presenter->picture().isEmpty());
    EXPECT_TRUE(waitUntil([this] { return !presenter->picture().isEmpty(); }));
    EXPECT_FALSE(presenter->isPictureBroken());
    EXPECT_EQ(shown->picture().size(), QSize(300, 200));
}

TEST_F(ResultPresenterTest, bytesThatDoNotDecodeMakeABrokenPicture)
{
    show(ImagePayload{"\x89PNG\r\n\x1a\n and then nothing"});
    EXPECT_TRUE(waitUntil([this] { return presenter->isPictureBroken(); }));
    EXPECT_TRUE(presenter->picture().isEmpty());
}

TEST_F(ResultPresenterTest, aPictureThatAnotherResultReplacedIsNeverShown)
{
    show(ImagePayload{pngOf({2000, 2000})});
    show(TextPayload{u"hello"_s});
    EXPECT_TRUE(waitUntil([this] { return scope->running() == 0; }));
    turnEventLoop();
    EXPECT_TRUE(presenter->picture().isEmpty());
    EXPECT_TRUE(shown->picture().isNull());
}

TEST_F(ResultPresenterTest, whatIsNoPngIsNoPicture)
{
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    for (const char *format : {"BMP", "JPEG"}) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        picture.save(&buffer, format);
        ASSERT_FALSE(bytes.isEmpty());
        EXPECT_TRUE(decodedPng(bytes).isNull()) << format;
    }
    EXPECT_TRUE(decodedPng("<svg xmlns=\"http://www.w3.org/2000/svg\"/>").isNull());
    EXPECT_TRUE(decodedPng({}).isNull());
}

TEST_F(ResultPresenterTest, aPictureThatUnpacksToGigabytesIsNotDecoded)
{
    // The size in the header, which is all that is read of it.
    QByteArray bytes = pngOf({4, 4});
    bytes.replace(16, 8, QByteArray::fromHex("0000ffff0000ffff"));
    EXPECT_TRUE(decodedPng(bytes).isNull());
}

TEST_F(ResultPresenterTest, aLargePictureIsKeptInTheSizeOfAScreen)
{
    EXPECT_EQ(decodedPng(pngOf({4096, 1024})).size(), QSize(2048, 512));
}

TEST_F(ResultPresenterTest, resultsAndErrorsAreAnnounced)
{
    show(TextPayload{u"hello"_s});
    EXPECT_EQ(presenter->announcement(), u"Result: hello"_s);
    show(TextPayload{QString(5'000'000, u'x')});
    EXPECT_LT(presenter->announcement().size(), 400);
    show(PdfPayload{QUrl(u"file:///tmp/a.pdf"_s), {}});
    EXPECT_EQ(presenter->announcement(), u"Result: a.pdf"_s);
    fail(u"It failed."_s, u"because"_s);
    EXPECT_EQ(presenter->announcement(), u"Error: It failed."_s);
    presenter->restart();
    EXPECT_EQ(presenter->announcement(), QString());
}

} // namespace

} // namespace velarc
