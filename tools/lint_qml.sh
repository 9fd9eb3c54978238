#!/usr/bin/env bash
# Checks the QML files against the types that a build tree has made.
#
#   lint_qml.sh TREE
#
# Giving an id to a part of a control's contents is allowed here: nothing replaces those contents.
set -euo pipefail

root=$(dirname -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")")
tree=$(readlink -f -- "$1")
made=$tree/src/ui/.rcc
cd -- "$root"
exec /usr/lib/qt6/bin/qmllint --deferred-property-id disable --unused-imports warning \
    -I "$tree/qml" --resource "$made/qmake_Velarc.qrc" --resource "$made/velarc_ui_raw_qml_0.qrc" \
    src/ui/*.qml src/ui/components/*.qml
