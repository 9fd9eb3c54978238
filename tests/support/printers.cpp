#include "support/printers.h"

#include <ostream>

QT_BEGIN_NAMESPACE

void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

void PrintTo(QStringView text, std::ostream *out)
{
    *out << '"' << text.toString().toStdString() << '"';
}

void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toStdString() << '"';
}

QT_END_NAMESPACE
