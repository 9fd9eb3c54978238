#include "fuzz_target.h"

#include "base/text.h"
#include "system_actions/compose_parser.h"

using namespace velarc;

namespace {

bool isTrimmed(const QString &text)
{
    return trimmed(text).size() == text.size();
}

void checkRecipients(const QStringList &recipients)
{
    for (const QString &recipient : recipients) {
        promise(!recipient.isEmpty() && isTrimmed(recipient));
        promise(!recipient.contains(u',') && !recipient.contains(u';'));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text = fuzzedText(data, size);
    const ComposeDraft mail = parseComposeInput(text, ComposeSubject::Included);
    const ComposeDraft message = parseComposeInput(text, ComposeSubject::Absent);
    promise(mail == parseComposeInput(text, ComposeSubject::Included));
    promise(isTrimmed(mail.body) && isTrimmed(message.body));
    promise(!mail.subject || isTrimmed(*mail.subject));
    promise(!message.subject);
    promise(mail.recipients == message.recipients);
    promise(isBlank(text) == mail.body.isEmpty()); // no text is ever lost as a whole
    checkRecipients(mail.recipients);
    checkRecipients(splitRecipients(text));
    return 0;
}
