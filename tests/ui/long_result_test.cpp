#include "gap_probe.h"
#include "ui_world.h"

#include <QClipboard>
#include <QGuiApplication>

namespace velarc {

namespace {

constexpr std::chrono::duration<double> kLongestGap = 50ms;

QString tale(qsizetype length)
{
    const QString line = u"The harbour ferry was late again, and the crew blamed the tide.\n"_s;
    return line.repeated(length / line.size());
}

// Each text in three shapes: lines, one endless line with and one without blanks.
QStringList longTexts(qsizetype length)
{
    return {tale(length), tale(length).replace(u'\n', u' '), QString(length, u'x')};
}

class LongResultTest : public UiWorld
{
protected:
    GapProbe probe;

    void show(const QString &text)
    {
        probe.time([&] {
            viewModel->setEngineState(EngineResult{TextPayload{text}, u"OpenAI"_s});
            viewModel->setHomePhase(HomePhase::Output);
        });
        probe.turn(*window);
    }

    void set(const char *field, const QVariant &value)
    {
        probe.time([&] { screens->result()->setProperty(field, value); });
        probe.turn(*window);
    }

    void focusEditor()
    {
        QQuickItem *editor = itemCalled(u"Type, paste, or drop a file — then hit Run"_s);
        ASSERT_NE(editor, nullptr);
        editor->forceActiveFocus();
    }

    QQuickItem &page()
    {
        QQuickItem *item = itemCalled(u"Result"_s);
        while (item != nullptr && !item->inherits("QQuickFlickable")) {
            item = item->parentItem();
        }
        if (item == nullptr) {
            throw std::runtime_error("nothing scrolls the result");
        }
        return *item;
    }

    void scrollTo(qreal share)
    {
        QQuickItem &flickable = page();
        const qreal end = flickable.property("contentHeight").toReal() - flickable.height();
        probe.time([&] { flickable.setProperty("contentY", end * share); });
        probe.turn(*window);
    }
};

TEST_F(LongResultTest, theWindowStaysResponsiveWithMegabytesOfResult)
{
    openWindow();
    for (const qsizetype length : {1'000'000, 5'000'000}) {
        for (const QString &text : longTexts(length)) {
            show(text);
            set("isExpanded", true);
            EXPECT_GT(page().property("contentHeight").toReal(), 10'000);
            for (const qreal share : {0.001, 0.002, 0.3, 0.99, 1.0, 0.5, 0.499, 0.0}) {
                scrollTo(share);
            }
            set("isExpanded", false);
            EXPECT_LT(page().property("contentHeight").toReal(), 1'000);
            probe.time([this] { viewModel->returnToInput(); });
            probe.turn(*window);
        }
    }
    EXPECT_LT(probe.longest(), kLongestGap);
}

TEST_F(LongResultTest, theWindowStaysResponsiveWithMegabytesOfDetails)
{
    openWindow();
    for (const QString &text : longTexts(5'000'000)) {
        viewModel->setLatestRunDebugInfo(GenerationDebugInfo{text, text + u'x', {{u"a"_s, text}}});
        show(u"short"_s);
        set("isDetailsExpanded", true);
        for (const int tab : {0, 1, 2, 1, 0}) {
            set("debugTab", tab);
        }
        set("isDetailsExpanded", false);
    }
    EXPECT_LT(probe.longest(), kLongestGap);
}

TEST_F(LongResultTest, theWindowStaysResponsiveWithMegabytesOfTechnicalDetails)
{
    openWindow();
    for (const QString &text : longTexts(5'000'000)) {
        probe.time([&] {
            viewModel->setEngineState(EngineError{u"It failed."_s, text});
            viewModel->setHomePhase(HomePhase::Output);
        });
        probe.turn(*window);
        set("isTechnicalExpanded", true);
        set("isTechnicalExpanded", false);
    }
    EXPECT_LT(probe.longest(), kLongestGap);
}

TEST_F(LongResultTest, theWindowStaysResponsiveWithMegabytesOfInput)
{
    openWindow();
    for (const QString &text : longTexts(5'000'000)) {
        probe.time([&] { viewModel->setQuickInput(text); });
        probe.turn(*window);
        focusEditor();
        probe.time([this] { press(Qt::Key_End, Qt::ControlModifier); });
        probe.time([this] { type(u"x"_s); });
        probe.time([this] { press(Qt::Key_Return); });
        probe.time([this] { press(Qt::Key_Backspace); });
        probe.time([this] { press(Qt::Key_Home, Qt::ControlModifier); });
        probe.time([this] { type(u"y"_s); });
        probe.turn(*window);
        EXPECT_TRUE(viewModel->quickInput() == u'y' + text + u'x');
        probe.time([this] { viewModel->canvas().clearQuickInput(); });
        probe.turn(*window);
    }
    EXPECT_LT(probe.longest(), kLongestGap);
}

TEST_F(LongResultTest, aPasteOfMegabytesDoesNotHoldTheEditor)
{
    openWindow();
    const QString text = tale(5'000'000);
    QGuiApplication::clipboard()->setText(text);
    focusEditor();
    type(u"start "_s);
    probe.time([this] { press(Qt::Key_V, Qt::ControlModifier); });
    probe.turn(*window);
    EXPECT_TRUE(viewModel->quickInput() == u"start "_s + text);
    probe.time([this] { type(u"end"_s); });
    EXPECT_TRUE(viewModel->quickInput() == u"start "_s + text + u"end"_s);
    EXPECT_LT(probe.longest(), kLongestGap);
}

TEST_F(LongResultTest, selectAllAndCopyGiveTheWholeText)
{
    openWindow();
    const QString text = tale(5'000'000);
    show(text);
    set("isExpanded", true);
    QQuickItem *body = page().findChild<QQuickItem *>(u"longText"_s);
    ASSERT_NE(body, nullptr);
    body->forceActiveFocus();
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    ASSERT_EQ(copied->texts.size(), 1);
    EXPECT_TRUE(copied->texts.first() == text);
}

} // namespace

} // namespace velarc
