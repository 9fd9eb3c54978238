import QtQuick
import Velarc

// The action's name, symbol and colour, and how they look together.
FocusScope {
    id: identity

    readonly property StudioPresenter presenter: Screens.studio

    implicitHeight: section.implicitHeight

    // A new action's name is typed over, from the first key on.
    function start(isNew: bool) {
        if (isNew) {
            name.selectAll();
        }
    }

    FormSection {
        id: section

        width: identity.width
        title: "Identity"

        Item {
            width: parent.width
            implicitHeight: Math.max(preview.height, fields.implicitHeight)

            IconTile {
                id: preview

                anchors.verticalCenter: parent.verticalCenter
                size: 72
                symbol: identity.presenter.icon
                tint: identity.presenter.displayColor
            }

            Column {
                id: fields

                anchors.left: preview.right
                anchors.leftMargin: Theme.space4
                anchors.right: parent.right
                spacing: Theme.space3

                FormRow {
                    width: parent.width
                    label: "Action name"
                    labelWidth: 100

                    TextField {
                        id: name

                        width: parent.width
                        focus: true
                        accessibleName: "Action name"
                        text: identity.presenter.name
                        onTextEdited: identity.presenter.name = text
                    }
                }

                FormRow {
                    width: parent.width
                    label: "SF Symbol"
                    labelWidth: 100

                    SymbolField {
                        width: parent.width
                        accessibleName: "SF Symbol"
                        completions: identity.presenter.symbolCompletions
                        text: identity.presenter.icon
                        onTextEdited: identity.presenter.icon = text
                        onPicked: symbol => identity.presenter.icon = symbol
                    }
                }

                FormRow {
                    width: parent.width
                    label: "Color"
                    labelWidth: 100

                    Picker {
                        width: Math.min(parent.width, 260)
                        title: "Color"
                        labels: identity.presenter.colorNames
                        dots: identity.presenter.colorDots
                        otherLabel: "Other"
                        otherDot: identity.presenter.displayColor
                        currentIndex: identity.presenter.colorIndex
                        onPicked: index => identity.presenter.pickColor(index)
                    }
                }
            }
        }
    }
}
