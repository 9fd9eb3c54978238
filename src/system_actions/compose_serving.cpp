#include "system_actions/compose_serving.h"

namespace velarc {

using namespace Qt::StringLiterals;

QString resultText(ComposeOutcome outcome)
{
    switch (outcome) {
    case ComposeOutcome::Sent:
        return u"Message was sent."_s;
    case ComposeOutcome::Saved:
        return u"Draft was saved."_s;
    case ComposeOutcome::Closed:
        return u"Compose window closed without sending."_s;
    case ComposeOutcome::Opened:
        return u"Compose window opened. Review and send to confirm."_s;
    }
    Q_UNREACHABLE();
}

CommunicationComposeError CommunicationComposeError::unavailable(const QString &message)
{
    return CommunicationComposeError(message);
}

CommunicationComposeError CommunicationComposeError::failed(const QString &message)
{
    return CommunicationComposeError(message);
}

CommunicationComposeError CommunicationComposeError::busy()
{
    return CommunicationComposeError(u"Another compose sheet is already open."_s);
}

CommunicationComposeError CommunicationComposeError::noPresenter()
{
    return CommunicationComposeError(u"Unable to present compose UI."_s);
}

} // namespace velarc
