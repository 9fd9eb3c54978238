import QtQuick
import Velarc

// The action's tags.
FormSection {
    id: section

    readonly property StudioPresenter presenter: Screens.studio

    title: "Skills"

    Label {
        width: parent.width
        visible: section.presenter.skills.length === 0
        secondary: true
        text: "No skills attached yet."
    }

    Column {
        width: parent.width
        visible: section.presenter.skills.length > 0

        Repeater {
            model: section.presenter.skills

            Item {
                id: row

                required property string modelData
                required property int index

                width: parent.width
                implicitHeight: Math.max(skill.implicitHeight, remove.implicitHeight)

                Label {
                    id: skill

                    anchors.left: parent.left
                    anchors.right: remove.left
                    anchors.rightMargin: Theme.space2
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.modelData
                    elide: Text.ElideMiddle
                    wrapMode: Text.NoWrap
                }

                Button {
                    id: remove

                    anchors.right: parent.right
                    kind: Button.Plain
                    foreground: Theme.accentText
                    text: "Remove"
                    Accessible.description: row.modelData
                    onClicked: Screens.studio.removeSkill(row.index)
                }
            }
        }
    }

    Item {
        width: parent.width
        implicitHeight: field.implicitHeight

        TextField {
            id: field

            anchors.left: parent.left
            anchors.right: add.left
            anchors.rightMargin: Theme.space2
            placeholderText: "Add skill tag"
            text: section.presenter.pendingSkill
            onTextEdited: section.presenter.pendingSkill = text

            // A tag that was typed is added first; without one the key saves, as elsewhere.
            Keys.onReturnPressed: event => event.accepted = section.addTyped(event.modifiers)
            Keys.onEnterPressed: event => event.accepted = section.addTyped(event.modifiers)
        }

        Button {
            id: add

            anchors.right: parent.right
            text: "Add"
            onClicked: section.presenter.addSkill()
        }
    }

    function addTyped(modifiers: int): bool {
        if ((modifiers & Qt.ControlModifier) !== 0 || field.text.trim() === "") {
            return false;
        }
        presenter.addSkill();
        return true;
    }
}
