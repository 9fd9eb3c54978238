#include "system_actions/compose_address.h"

#include "base/text.h"

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// The line ends of a mail.
QByteArray encodedText(const QString &text)
{
    QString lines = text;
    lines.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n').replace(u"\n"_s, u"\r\n"_s);
    return lines.toUtf8().toPercentEncoding();
}

QByteArray encodedRecipients(const QStringList &recipients, const QByteArray &asTheyStand)
{
    QByteArray encoded;
    for (const QString &recipient : recipients) {
        if (!encoded.isEmpty()) {
            encoded += ',';
        }
        encoded += recipient.toUtf8().toPercentEncoding(asTheyStand);
    }
    return encoded;
}

void append(QByteArray &address, const char *field, const QByteArray &encoded)
{
    if (!encoded.isEmpty()) {
        address += address.contains('?') ? '&' : '?';
        address += field;
        address += encoded;
    }
}

} // namespace

QByteArray mailAddress(const ComposeDraft &draft)
{
    const QString subject = trimmed(draft.subject.value_or(QString())).toString();
    QByteArray address = "mailto:" + encodedRecipients(draft.recipients, "@");
    append(address, "subject=", encodedText(subject));
    append(address, "body=", encodedText(draft.body));
    return address;
}

QByteArray messageAddress(const QStringList &recipients, const QString &body)
{
    QByteArray address = "sms:" + encodedRecipients(recipients, "@+");
    append(address, "body=", encodedText(body));
    return address;
}

} // namespace velarc
