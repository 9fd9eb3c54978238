#include "connect_fixture.h"

#include "support/wait_until.h"

#include <QDesktopServices>

namespace velarc {

namespace {

class ConnectSheetTest : public ConnectWorld
{
};

std::exception_ptr failureOf(const QString &sentence)
{
    class Refusal final : public UserFacingError
    {
    public:
        explicit Refusal(QString text) : UserFacingError(std::move(text)) {}
    };
    return std::make_exception_ptr(Refusal(sentence));
}

// Takes the addresses that are to be opened in a browser.
class Browser : public QObject
{
    Q_OBJECT

public:
    QList<QUrl> opened;

    Browser() { QDesktopServices::setUrlHandler(u"https"_s, this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(u"https"_s); }

    Q_INVOKABLE void open(const QUrl &url) { opened.append(url); }
};

TEST_F(ConnectSheetTest, guidesToTheKeyOfItsEngine)
{
    openSheet(AIProvider::Anthropic);
    for (const char16_t *text : {u"Connect Anthropic", u"Anthropic \u2022 Claude and Claude Agent",
             u"Sign in to Anthropic, create an API key, then paste it here. Keys stay on this "
             u"device "
             u"in Keychain.",
             u"Guided Setup", u"Current default model: claude-opus-4-1-20250805",
             u"Anthropic API Key", u"Use this provider for everything", u"Verify & Connect"}) {
        EXPECT_TRUE(shows(QString::fromUtf16(text))) << QString::fromUtf16(text).toStdString();
    }
    EXPECT_FALSE(shows(u"Connection error"_s));
}

TEST_F(ConnectSheetTest, namesEachEngineInItsFirstLine)
{
    openSheet(AIProvider::OpenAI);
    EXPECT_EQ(sheet().headline(), u"OpenAI \u2022 ChatGPT and Codex"_s);
    openSheet(AIProvider::Gemini);
    EXPECT_EQ(sheet().headline(), u"Gemini \u2022 Google AI Studio API"_s);
    viewModel->setProviderConnectSheetProvider(AIProvider::LocalFallback);
    EXPECT_EQ(sheet().headline(), u"Local Preview Engine"_s);
}

TEST_F(ConnectSheetTest, aBlankKeyIsRefusedWithoutARequest)
{
    openSheet(AIProvider::OpenAI);
    click(u"Verify & Connect"_s);
    EXPECT_TRUE(shows(u"Paste your API key first."_s));
    connectWith(u"   "_s);
    EXPECT_EQ(sheet().errorText(), u"Paste your API key first."_s);
    EXPECT_TRUE(openAI->textRequests.isEmpty());
    EXPECT_FALSE(sheet().isConnecting());
}

TEST_F(ConnectSheetTest, anEngineWithoutAModelIsSentToTheEngineRoom)
{
    openWindow();
    viewModel->setProviderConnectSheetProvider(AIProvider::AppleIntelligence);
    settle();
    connectWith(u"sk-1"_s);
    EXPECT_EQ(sheet().errorText(), u"Set a default model for Apple Intelligence in Engine Room."_s);
}

TEST_F(ConnectSheetTest, aKeyWithSurroundingBlanksIsVerifiedAndStoredTrimmed)
{
    openSheet(AIProvider::OpenAI);
    connectWith(u"  sk-1 "_s);
    ASSERT_EQ(openAI->textRequests.size(), 1);
    EXPECT_EQ(openAI->textRequests.first().apiKey.bytes(), QByteArrayView("sk-1"));
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), QByteArray("sk-1"));
    EXPECT_FALSE(isSheetOpen());
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Connect OpenAI"_s); }));
}

TEST_F(ConnectSheetTest, theKeyIsVerifiedWithTheDefaultModel)
{
    launch();
    viewModel->setProviderSettings(
        setDefaultModelID(viewModel->providerSettings(), AIProvider::OpenAI, u"gpt-x"));
    openSheet(AIProvider::OpenAI);
    EXPECT_TRUE(shows(u"Current default model: gpt-x"_s));
    connectWith(u"sk-1"_s);
    ASSERT_EQ(openAI->textRequests.size(), 1);
    EXPECT_EQ(openAI->textRequests.first().model, u"gpt-x"_s);
}

TEST_F(ConnectSheetTest, theToggleStartsOffForGeminiAloneAndOnForTheOthers)
{
    openSheet(AIProvider::Gemini);
    const auto isOn = [this] {
        QAccessibleInterface *toggle = accessibleElement(
            *window, QAccessible::CheckBox, u"Use this provider for everything"_s);
        return toggle != nullptr && toggle->state().checked;
    };
    EXPECT_FALSE(isOn());
    openSheet(AIProvider::OpenAI);
    EXPECT_TRUE(isOn());
    openSheet(AIProvider::Anthropic);
    EXPECT_TRUE(isOn());
    click(u"Use this provider for everything"_s);
    EXPECT_FALSE(isOn());
}

TEST_F(ConnectSheetTest, aConnectWithTheToggleOnMakesTheEngineTheDefaultAndResetsTheActions)
{
    openSheet(AIProvider::Anthropic);
    connectWith(u"sk-1"_s);
    EXPECT_EQ(store->loadProviderSettings().defaultProvider, AIProvider::Anthropic);
    for (const AIAction &action : store->loadActions()) {
        EXPECT_EQ(action.provider, AIProvider::UseDefault);
    }
    EXPECT_EQ(note(), u"Anthropic connected successfully."_s);
}

TEST_F(ConnectSheetTest, aConnectWithTheToggleOffLeavesDefaultAndActions)
{
    openSheet(AIProvider::Gemini);
    const QList<AIAction> before = viewModel->actions();
    connectWith(u"sk-1"_s);
    EXPECT_EQ(note(), u"Gemini connected successfully."_s);
    EXPECT_EQ(viewModel->providerSettings().defaultProvider, AIProvider::AppleIntelligence);
    EXPECT_EQ(viewModel->actions(), before);
}

TEST_F(ConnectSheetTest, aFailedVerificationKeepsTheSheetOpenAndCopiesTheExactText)
{
    openSheet(AIProvider::OpenAI);
    openAI->answer.failure = failureOf(u" Incorrect key.\nAsk again. "_s);
    connectWith(u"sk-bad"_s);
    EXPECT_TRUE(isSheetOpen());
    EXPECT_TRUE(shows(u"Connection error"_s));
    EXPECT_EQ(typedKey(), u"sk-bad"_s); // for another try
    click(u"Copy Error"_s);
    EXPECT_EQ(copied->texts, QStringList{u" Incorrect key.\nAsk again. "_s});
    openAI->answer.failure = nullptr;
    click(u"Verify & Connect"_s);
    EXPECT_FALSE(isSheetOpen());
}

TEST_F(ConnectSheetTest, aLongDiagnosticErrorStaysSelectable)
{
    openSheet(AIProvider::OpenAI);
    const QString diagnosis = QString(u"The server said no. "_s).repeated(60);
    openAI->answer.failure = failureOf(diagnosis);
    connectWith(u"sk-bad"_s);
    QQuickItem *detail = itemCalled(diagnosis);
    ASSERT_NE(detail, nullptr);
    detail->forceActiveFocus();
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(detail->property("selectedText").toString(), diagnosis);
    QQuickItem *submit = itemCalled(u"Verify & Connect"_s);
    ASSERT_NE(submit, nullptr);
    submit->forceActiveFocus();
    settle();
    const QRectF place = submit->mapRectToScene(submit->boundingRect());
    EXPECT_TRUE(QRectF(QPointF(), window->size()).contains(place)); // scrolled into sight
}

TEST_F(ConnectSheetTest, whileItVerifiesASecondSubmitCannotStart)
{
    openSheet(AIProvider::OpenAI);
    openAI->answer.gate.close();
    connectWith(u"sk-1"_s);
    EXPECT_TRUE(shows(u"Connecting..."_s));
    EXPECT_FALSE(itemCalled(u"Connecting..."_s)->isEnabled());
    press(Qt::Key_Return);
    click(u"Connecting..."_s);
    EXPECT_EQ(openAI->textRequests.size(), 1);
    openAI->answer.gate.open();
    settle();
    EXPECT_FALSE(isSheetOpen());
}

TEST_F(ConnectSheetTest, anErrorGoesWhenOneTriesAgain)
{
    openSheet(AIProvider::OpenAI);
    press(Qt::Key_Return);
    EXPECT_TRUE(sheet().hasError());
    openAI->answer.gate.close();
    connectWith(u"sk-1"_s);
    EXPECT_FALSE(sheet().hasError());
    openAI->answer.gate.open();
}

TEST_F(ConnectSheetTest, closingItWhileItVerifiesLetsTheConnectionGoOn)
{
    openSheet(AIProvider::OpenAI);
    openAI->answer.gate.close();
    connectWith(u"sk-1"_s);
    click(u"Close"_s);
    EXPECT_FALSE(isSheetOpen());
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Connect OpenAI"_s); }));
    openAI->answer.gate.open();
    settle();
    EXPECT_EQ(note(), u"OpenAI connected successfully."_s);
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), QByteArray("sk-1"));
}

TEST_F(ConnectSheetTest, aReopenedSheetStartsAfreshAndIsLeftAloneByWhatAnEarlierOneBegan)
{
    openSheet(AIProvider::OpenAI);
    click(u"Use this provider for everything"_s);
    openAI->answer.gate.close();
    keyField()->forceActiveFocus();
    connectWith(u"sk-1"_s);
    press(Qt::Key_Escape);
    openSheet(AIProvider::OpenAI);
    EXPECT_EQ(typedKey(), QString());
    EXPECT_FALSE(sheet().isConnecting());
    EXPECT_TRUE(sheet().useForEverything());
    openAI->answer.gate.open();
    settle();
    EXPECT_TRUE(isSheetOpen());
    EXPECT_EQ(note(), u"OpenAI connected successfully."_s);
}

TEST_F(ConnectSheetTest, aLateErrorOfAnEarlierSheetIsNotShownInALaterOne)
{
    openSheet(AIProvider::OpenAI);
    openAI->answer.gate.close();
    openAI->answer.failure = failureOf(u"No."_s);
    connectWith(u"sk-1"_s);
    press(Qt::Key_Escape);
    openSheet(AIProvider::Gemini);
    openAI->answer.gate.open();
    settle();
    EXPECT_FALSE(sheet().hasError());
    EXPECT_TRUE(isSheetOpen());
}

TEST_F(ConnectSheetTest, anotherEnginesSheetTakesThePlaceOfTheOpenOneWithAnEmptyField)
{
    openSheet(AIProvider::OpenAI);
    type(u"sk-openai"_s);
    openSheet(AIProvider::Gemini);
    EXPECT_TRUE(shows(u"Connect Gemini"_s));
    EXPECT_EQ(typedKey(), QString());
}

TEST_F(ConnectSheetTest, askingForTheOpenSheetOnceMoreKeepsWhatIsTyped)
{
    openSheet(AIProvider::OpenAI);
    type(u"sk-1"_s);
    openSheet(AIProvider::OpenAI);
    EXPECT_EQ(typedKey(), u"sk-1"_s);
}

TEST_F(ConnectSheetTest, theWindowMayGoWhileItVerifies)
{
    openSheet(AIProvider::OpenAI);
    openAI->answer.gate.close();
    connectWith(u"sk-1"_s);
    window.reset();
    engine.reset();
    screens.reset();
    openAI->answer.gate.open();
    settle();
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), QByteArray("sk-1"));
}

TEST_F(ConnectSheetTest, theProgramMayEndWhileItVerifies)
{
    openSheet(AIProvider::OpenAI);
    openAI->answer.gate.close();
    connectWith(u"sk-1"_s);
    EXPECT_TRUE(scope->finish());
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), std::nullopt);
}

TEST_F(ConnectSheetTest, opensTheKeyPageInTheBrowserAndCopiesItsAddress)
{
    Browser browser;
    openSheet(AIProvider::OpenAI);
    click(u"Open Key Page"_s);
    click(u"Copy URL"_s);
    EXPECT_EQ(browser.opened, QList<QUrl>{keyPage(AIProvider::OpenAI)});
    EXPECT_EQ(copied->texts, QStringList{keyPage(AIProvider::OpenAI).toString()});
    openSheet(AIProvider::Gemini);
    press(Qt::Key_Return);
    click(u"Open Key Page"_s); // of the error card
    EXPECT_EQ(browser.opened.last(), keyPage(AIProvider::Gemini));
    EXPECT_EQ(sheet().pageNotice(), QString());
}

TEST_F(ConnectSheetTest, everyEngineHasAPageOfItsOwnBehindHttps)
{
    QStringList hosts;
    for (const AIProvider provider : cloudProviders()) {
        EXPECT_EQ(keyPage(provider).scheme(), u"https"_s);
        hosts.append(keyPage(provider).host());
    }
    EXPECT_EQ(hosts,
        QStringList(
            {u"platform.openai.com"_s, u"aistudio.google.com"_s, u"console.anthropic.com"_s}));
    EXPECT_EQ(keyPage(AIProvider::LocalFallback).path(), u"/docs"_s);
}

TEST_F(ConnectSheetTest, worksFromTheKeyboard)
{
    openSheet(AIProvider::OpenAI);
    const auto focused = [this] {
        return QAccessible::queryAccessibleInterface(window->activeFocusItem())
            ->text(QAccessible::Name);
    };
    EXPECT_EQ(focused(), u"OpenAI API Key"_s);
    type(u"sk-1"_s);
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Use this provider for everything"_s);
    press(Qt::Key_Space);
    EXPECT_FALSE(sheet().useForEverything());
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Verify & Connect"_s);
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Close"_s);
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Open Key Page"_s);
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Copy URL"_s);
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), QByteArray("sk-1"));
}

} // namespace

} // namespace velarc

#include "connect_sheet_test.moc"
