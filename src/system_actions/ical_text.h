#pragma once

// Calendar files as text: components, properties, and every byte that stands in them.
//
// A tree that was read and is written again gives the same bytes, but for what was changed in it:
// what this program does not understand stays as its author wrote it. Any thread; plain values.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>
#include <variant>
#include <vector>

namespace velarc {

// Beyond these a file counts as broken.
inline constexpr qsizetype kMaxIcalBytes = 16 * 1024 * 1024;
inline constexpr int kMaxIcalLines = 400'000;
inline constexpr int kMaxIcalDepth = 16;

struct IcalProperty
{
    QByteArray raw; // its lines as they stand in the file, with their ends
    QByteArray name; // in capitals; empty for a line that is no property
    QByteArray parameters; // from the first semicolon to the colon, as written
    QByteArray value; // as written, without folding

    // The parameter's first value without quotes; `capitals` is its name.
    [[nodiscard]] std::optional<QByteArray> parameter(QByteArrayView capitals) const;
};

struct IcalNode;

struct IcalComponent
{
    QByteArray name; // in capitals; empty for the file as a whole
    QByteArray begin; // the lines around it, as they stand
    QByteArray end;
    std::vector<IcalNode> nodes; // what it holds, in order

    // The first property of the name, or nullptr.
    [[nodiscard]] const IcalProperty *find(QByteArrayView capitals) const;
    [[nodiscard]] std::vector<const IcalProperty *> all(QByteArrayView capitals) const;
    [[nodiscard]] std::vector<const IcalComponent *> components(QByteArrayView capitals) const;

    // In the place of the first property of that name, and of all others of it; else behind the
    // other properties.
    void set(IcalProperty property);
    // Behind the last property of that name, else behind all others.
    void add(IcalProperty property);
    void removeAll(QByteArrayView capitals);
};

struct IcalNode
{
    std::variant<IcalProperty, IcalComponent> content;
};

// The file as a whole; none for what is broken: no component, one that does not end, a NUL, or
// more of anything than the bounds above allow.
[[nodiscard]] std::optional<IcalComponent> readIcal(QByteArrayView bytes);

[[nodiscard]] QByteArray writeIcal(const IcalComponent &component);

// A new property, folded as others expect it. `parameters` begins with a semicolon or is empty.
[[nodiscard]] IcalProperty icalProperty(
    const QByteArray &name, const QByteArray &parameters, const QByteArray &value);

// Between a text and the value that stands for it in a file.
[[nodiscard]] QString textOfIcal(QByteArrayView value);
[[nodiscard]] QByteArray icalOfText(const QString &text);

} // namespace velarc
