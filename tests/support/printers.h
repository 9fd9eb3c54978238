#pragma once

// How failed expectations show Qt's texts.

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <iosfwd>

QT_BEGIN_NAMESPACE
void PrintTo(const QString &text, std::ostream *out);
void PrintTo(QStringView text, std::ostream *out);
void PrintTo(const QByteArray &bytes, std::ostream *out);
QT_END_NAMESPACE
