#pragma once

// The service in a session of the test's own, with programs registered in its data folder that
// write down what they are called with.

#include "support/outcome.h"
#include "support/printers.h"
#include "system_actions/compose_service.h"

#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;

// Registers a program for the addresses of `scheme`. What a process has once looked up it does not
// look up again, so that this comes before the first mail.
void registerProgram(const QString &scheme);

struct BrokenProgram
{
    QString scheme;
    QString executable; // a path, or none for one that is there
    QString workingFolder;
};
void registerBrokenProgram(const BrokenProgram &program);

class ComposeTest : public ::testing::Test
{
protected:
    CommunicationComposeService service;
    std::stop_source stop;

    ComposeTest();

    ComposeOutcome mail(const ComposeDraft &draft)
    {
        return outcomeOf(service.composeMail(draft, stop.get_token()));
    }
    ComposeOutcome message(const QStringList &recipients, const QString &body)
    {
        return outcomeOf(service.composeMessage(recipients, body, stop.get_token()));
    }

    // The only argument that the program of `scheme` got; waits for it.
    static QByteArray addressOpened(const QString &scheme);
    [[nodiscard]] static bool hasOpened(const QString &scheme);

    // What the operation says when it fails.
    template <typename Operation> static QString refusalOf(Operation operation)
    {
        try {
            operation();
        } catch (const CommunicationComposeError &error) {
            return error.message();
        }
        ADD_FAILURE() << "it did not fail";
        return {};
    }
};

} // namespace velarc
