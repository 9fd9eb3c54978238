#include "records/attachment_summary.h"

#include "base/text.h"

#include <algorithm>

namespace velarc {

using namespace Qt::StringLiterals;

QString label(InputAttachmentKind kind)
{
    switch (kind) {
    case InputAttachmentKind::Image:
        return u"Image"_s;
    case InputAttachmentKind::Pdf:
        return u"PDF"_s;
    case InputAttachmentKind::Svg:
        return u"SVG"_s;
    }
    Q_UNREACHABLE();
}

QString textWithAttachmentSummary(const QString &text, const QList<InputAttachment> &attachments)
{
    QStringList documents;
    for (const InputAttachment &attachment : attachments) {
        const QString extracted = attachment.extractedText.value_or(QString());
        if (!isBlank(extracted)) {
            documents.append(u'[' + label(attachment.kind) + u' ' + attachment.filename + u"]\n"_s
                + trimmed(extracted).toString());
        }
    }
    const auto pictures = std::count_if(
        attachments.begin(), attachments.end(), [](const InputAttachment &attachment) {
            return attachment.kind != InputAttachmentKind::Pdf;
        });
    QString summary = text;
    if (!documents.isEmpty()) {
        summary += u"\n\nAttached documents:\n"_s + documents.join(u"\n\n"_s);
    }
    if (pictures > 0) {
        summary += u"\n\nAttached images: "_s + QString::number(pictures) + u'.';
    }
    return summary;
}

} // namespace velarc
