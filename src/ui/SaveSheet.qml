import QtQuick
import Velarc

// Where the desktop has no dialog for it: asks for the file to save the result in.
Sheet {
    id: sheet

    readonly property SharePresenter presenter: Screens.share

    title: "Save Result"
    preferredWidth: 520

    Column {
        width: parent?.width ?? 0
        leftPadding: Theme.space5
        rightPadding: Theme.space5
        bottomPadding: Theme.space5
        spacing: Theme.space2

        TextField {
            width: parent.width - 2 * Theme.space5
            focus: true
            accessibleName: "File"
            text: sheet.presenter.savePath
            onTextChanged: sheet.presenter.savePath = text
            onAccepted: sheet.presenter.save()
            Component.onCompleted: select(text.lastIndexOf("/") + 1,
                text.lastIndexOf(".") > text.lastIndexOf("/") ? text.lastIndexOf(".") : text.length)
        }

        Label {
            width: parent.width - 2 * Theme.space5
            style: Label.Caption
            visible: text !== ""
            color: Theme.issueText
            text: sheet.presenter.saveProblem
        }
    }

    foot: [
        Button {
            text: "Cancel"
            onClicked: sheet.close()
        },
        Button {
            kind: Button.Prominent
            text: sheet.presenter.replacesFile ? "Replace" : "Save"
            onClicked: sheet.presenter.save()
        }
    ]
}
