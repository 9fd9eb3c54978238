#pragma once

// An action's colour: the palette that the editor offers, and the reading of hexadecimal texts.

#include <QList>
#include <QString>
#include <QStringView>
#include <QUuid>

namespace velarc {

// An opaque sRGB colour; each channel runs from 0 to 1.
struct ActionColor
{
    double red = 0;
    double green = 0;
    double blue = 0;

    friend bool operator==(const ActionColor &, const ActionColor &) = default;
};

struct ActionColorOption
{
    QUuid id; // fresh for each process, tells rows apart
    QString name;
    QString hex;
};

// Seven colours, always in the same order. An action may carry others.
[[nodiscard]] const QList<ActionColorOption> &actionColorPalette();

// The colour of a text such as "2563EB" or "#2563EB".
//
// What is neither letter nor digit falls away at both ends. A rest that is not six characters long
// gives the blue 2563EB. Otherwise the digits up to the first bad one count: "ZZZZZZ" is black.
[[nodiscard]] ActionColor colorFromHex(QStringView text);

} // namespace velarc
