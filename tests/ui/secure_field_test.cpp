#include "accessible_tree.h"
#include "ui_world.h"

#include "ui/secret_input.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QMimeData>

namespace velarc {

namespace {

class SecureFieldTest : public UiWorld
{
protected:
    SecretInput *field = nullptr;

    void open()
    {
        field = qobject_cast<SecretInput *>(&openScreen(u"components/SecureField"_s, {300, 60}));
        field->setProperty("accessibleName", u"OpenAI API Key"_s);
        field->forceActiveFocus();
        settle();
    }

    [[nodiscard]] QString typed() const { return QString::fromUtf8(field->secret().bytes()); }

    void SetUp() override { open(); }
};

TEST_F(SecureFieldTest, takesWhatIsTyped)
{
    type(u"sk-1x"_s);
    press(Qt::Key_Backspace);
    press(Qt::Key_Home);
    press(Qt::Key_Delete);
    EXPECT_EQ(typed(), u"k-1"_s);
}

TEST_F(SecureFieldTest, showsDotsAlone)
{
    type(u"sk-1"_s);
    EXPECT_EQ(field->dots(), QString(4, QChar(0x2022)));
}

TEST_F(SecureFieldTest, drawsADotForEachCharacter)
{
    const QImage empty = picture();
    type(u"sk-1"_s);
    const QImage four = picture();
    EXPECT_NE(four, empty);
    press(Qt::Key_Backspace);
    EXPECT_NE(picture(), four);
}

TEST_F(SecureFieldTest, keepsTheCursorOfALongKeyInSight)
{
    type(QString(200, u'k'));
    const QRectF end = field->property("cursorRectangle").toRectF();
    EXPECT_LE(end.right(), field->width());
    press(Qt::Key_Home);
    const QRectF start = field->property("cursorRectangle").toRectF();
    EXPECT_GE(start.left(), 0);
    EXPECT_LT(start.left(), end.left());
}

TEST_F(SecureFieldTest, pastesFromTheClipboardInThePlaceOfTheSelection)
{
    type(u"old"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    QGuiApplication::clipboard()->setText(u" sk-pasted\n"_s);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(typed(), u" sk-pasted"_s);
}

TEST_F(SecureFieldTest, givesNothingToTheClipboard)
{
    QGuiApplication::clipboard()->setText(u"before"_s);
    type(u"sk-1"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    press(Qt::Key_Insert, Qt::ControlModifier);
    press(Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"before"_s);
}

TEST_F(SecureFieldTest, hasNothingToUndo)
{
    type(u"sk-1"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(typed(), QString());
}

TEST_F(SecureFieldTest, tellsInputMethodsThatTheTextIsSecretAndNotWhatItIs)
{
    type(u"sk-1"_s);
    const auto hints =
        static_cast<Qt::InputMethodHints>(field->inputMethodQuery(Qt::ImHints).toInt());
    EXPECT_TRUE(hints.testFlag(Qt::ImhHiddenText));
    EXPECT_TRUE(hints.testFlag(Qt::ImhSensitiveData));
    EXPECT_TRUE(hints.testFlag(Qt::ImhNoPredictiveText));
    for (const Qt::InputMethodQuery query : {Qt::ImSurroundingText, Qt::ImCurrentSelection,
             Qt::ImTextBeforeCursor, Qt::ImTextAfterCursor}) {
        EXPECT_FALSE(field->inputMethodQuery(query).isValid()) << query;
    }
}

TEST_F(SecureFieldTest, takesWhatAnInputMethodCommits)
{
    QInputMethodEvent event;
    event.setCommitString(u"sk-é"_s);
    QCoreApplication::sendEvent(field, &event);
    EXPECT_EQ(typed(), u"sk-é"_s);
}

TEST_F(SecureFieldTest, isAPasswordFieldOfDotsForAssistivePrograms)
{
    type(u"sk-secret"_s);
    QAccessibleInterface *face =
        accessibleElement(*window, QAccessible::EditableText, u"OpenAI API Key"_s);
    ASSERT_NE(face, nullptr);
    EXPECT_TRUE(face->state().passwordEdit);
    EXPECT_TRUE(face->state().focusable);
    EXPECT_TRUE(face->state().focused);
    EXPECT_EQ(face->text(QAccessible::Value), QString(9, QChar(0x2022)));
    EXPECT_FALSE(accessibleTexts(*window).join(u'\n').contains(u"secret"_s));
}

TEST_F(SecureFieldTest, tabLeavesIt)
{
    type(u"sk-1"_s);
    press(Qt::Key_Tab);
    EXPECT_EQ(typed(), u"sk-1"_s);
}

} // namespace

} // namespace velarc
