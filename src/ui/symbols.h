#pragma once

// The drawings behind the symbol names that actions and screens use.

#include <QColor>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QtQmlIntegration>

namespace velarc {

// The name of the drawing in icons/, without its ending. A name that is filled in one set and plain
// in the other takes what there is; any other unknown name gives a neutral drawing.
[[nodiscard]] QString iconFile(QStringView symbolName);

// The names that have a drawing of their own, by name.
[[nodiscard]] QStringList knownSymbols();

// Addresses of tinted symbols, for an Image.
class SymbolImages : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(Symbols)
    QML_SINGLETON

public:
    using QObject::QObject;

    [[nodiscard]] Q_INVOKABLE static QUrl url(const QString &symbolName, const QColor &color);
};

} // namespace velarc
