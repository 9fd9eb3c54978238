import QtQuick
import QtQuick.Templates as T
import Velarc

// A text of some pages while it is edited.
T.TextArea {
    id: area

    required property EditedText edited
    readonly property bool isEmpty: length === 0 && preeditText === ""
    readonly property rect caret: cursorRectangle

    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: Theme.space3
    wrapMode: TextEdit.Wrap
    textFormat: TextEdit.PlainText
    selectByMouse: true
    color: enabled ? Theme.text : Theme.disabledText
    selectionColor: Theme.accent
    selectedTextColor: Theme.textOnAccent
    text: edited.text
    onTextChanged: edited.edit(text)
    onCursorPositionChanged: edited.caret = cursorPosition
    Component.onCompleted: cursorPosition = Math.min(edited.caret, length)

    // A text that is too long for this area must not get into it.
    Keys.onPressed: event => {
        if (event.matches(StandardKey.Paste)) {
            event.accepted = true;
            area.replaceSelection(edited.paste(selectionStart, selectionEnd));
        }
    }

    Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
    Accessible.role: Accessible.EditableText
    Accessible.multiLine: true

    function replaceSelection(words: string) {
        if (words !== "") {
            remove(selectionStart, selectionEnd);
            insert(cursorPosition, words);
        }
    }
}
