#include "system_actions/compose_parser.h"

#include "base/text.h"

namespace velarc {

namespace {

constexpr QStringView kTo = u"to:";
constexpr QStringView kSubject = u"subject:";
constexpr QStringView kBody = u"body:";

// What stands behind the marker of a trimmed line, trimmed; none where it begins otherwise.
std::optional<QStringView> behindMarker(QStringView line, QStringView marker)
{
    if (foldedToLower(line.left(marker.size())) != marker) {
        return std::nullopt;
    }
    return trimmed(line.mid(marker.size()));
}

class DraftReader
{
public:
    explicit DraftReader(ComposeSubject subject) : m_subject(subject) {}

    void read(QStringView line)
    {
        if (const auto recipients = behindMarker(line, kTo)) {
            draft.recipients = splitRecipients(*recipients);
        } else if (const auto subject = subjectOf(line)) {
            draft.subject = subject->toString();
        } else if (const auto opening = behindMarker(line, kBody)) {
            m_isInBody = true;
            if (!opening->isEmpty()) {
                body.append(opening->toString());
            }
        } else if (m_isInBody) {
            body.append(line.toString());
        }
    }

    ComposeDraft draft;
    QStringList body;

private:
    [[nodiscard]] std::optional<QStringView> subjectOf(QStringView line) const
    {
        return m_subject == ComposeSubject::Included ? behindMarker(line, kSubject) : std::nullopt;
    }

    ComposeSubject m_subject;
    bool m_isInBody = false;
};

QString joined(const QList<QStringView> &lines)
{
    QString text;
    for (const QStringView line : lines) {
        if (!text.isEmpty()) {
            text += u'\n';
        }
        text += line;
    }
    return trimmed(text).toString();
}

} // namespace

ComposeDraft parseComposeInput(QStringView text, ComposeSubject subject)
{
    const QList<QStringView> lines = splitLines(text);
    DraftReader reader(subject);
    for (const QStringView line : lines) {
        reader.read(trimmed(line));
    }
    ComposeDraft draft = std::move(reader.draft);
    draft.body = trimmed(reader.body.join(u'\n')).toString();
    if (draft.body.isEmpty()) {
        draft.body = joined(lines);
    }
    return draft;
}

QStringList splitRecipients(QStringView text)
{
    QStringList recipients;
    const auto isSeparator = [](QChar character) { return character == u',' || character == u';'; };
    for (auto at = text.begin(); at != text.end();) {
        const auto end = std::find_if(at, text.end(), isSeparator);
        const QStringView piece = trimmed(QStringView(at, end));
        if (!piece.isEmpty()) {
            recipients.append(piece.toString());
        }
        at = end == text.end() ? end : end + 1;
    }
    return recipients;
}

} // namespace velarc
