#pragma once

// Calls of cloud clients as their tests make them: to the end, over a scripted transport.

#include "engines/cloud_client.h"
#include "engines/engine_services.h"
#include "fakes/fake_clock.h"
#include "fakes/scripted_transport.h"
#include "support/fixture.h"
#include "support/outcome.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <memory>

namespace velarc {

// A key as long as real ones, so that it is looked for in what comes back.
inline constexpr const char *kTestKey = "sk-test-0123456789abcdef";

// What FakeClock begins with.
inline const QString kTestTimestamp = QStringLiteral("2026-02-20T15:00:00Z");

struct CloudTest : testing::Test
{
    std::shared_ptr<ScriptedTransport> transport = std::make_shared<ScriptedTransport>();
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
};

[[nodiscard]] inline CloudTextRequest textRequest(const QString &prompt, const QString &model = {},
    const QList<InputAttachment> &attachments = {})
{
    return CloudTextRequest{prompt, model, Secret(kTestKey), attachments};
}

[[nodiscard]] inline InputAttachment attachmentOf(InputAttachmentKind kind, const QString &filename,
    const QString &mimeType, const QByteArray &bytes,
    const std::optional<QString> &extractedText = {})
{
    return InputAttachment{QUuid(), kind, filename, mimeType, bytes, extractedText};
}

// A PDF of four bytes.
[[nodiscard]] inline InputAttachment pdfOf(
    const QString &filename, const std::optional<QString> &extractedText)
{
    return attachmentOf(InputAttachmentKind::Pdf, filename, QStringLiteral("application/pdf"),
        "%PDF", extractedText);
}

// One of each kind, and PDFs with a text, with a blank one and with another.
[[nodiscard]] inline QList<InputAttachment> mixedAttachments()
{
    return {
        pdfOf(QStringLiteral("a.pdf"), QStringLiteral("\n first ")),
        attachmentOf(InputAttachmentKind::Image, QStringLiteral("p.jpg"),
            QStringLiteral("image/jpeg"), QByteArray("\x00\x01\x02", 3)),
        pdfOf(QStringLiteral("b.pdf"), QStringLiteral(" \n")),
        attachmentOf(InputAttachmentKind::Svg, QStringLiteral("d.svg"),
            QStringLiteral("image/svg+xml"), QByteArray("\xFF\xEF", 2)),
        pdfOf(QStringLiteral("c.pdf"), QStringLiteral("third")),
    };
}

// The bytes of a fixture without the line feed that ends the file.
[[nodiscard]] inline QByteArray wireFixture(const char *name)
{
    QByteArray bytes = fixtureBytes((std::string("wire/") + name).c_str());
    bytes.chop(bytes.endsWith('\n') ? 1 : 0);
    return bytes;
}

[[nodiscard]] inline QString textOf(const GenerationResult &result)
{
    return payloadText(result.payload).value_or(QStringLiteral("no text"));
}

// The rows as "Key: value" lines.
[[nodiscard]] inline QStringList rowsOf(const GenerationResult &result)
{
    QStringList lines;
    if (result.debugInfo) {
        for (const DebugInfoRow &row : result.debugInfo->infoRows) {
            lines.append(row.key + QStringLiteral(": ") + row.value);
        }
    }
    return lines;
}

[[nodiscard]] inline QString rowOf(const GenerationResult &result, const QString &key)
{
    const QStringList lines = rowsOf(result).filter(key + QStringLiteral(": "));
    return lines.size() == 1 ? lines.front().mid(key.size() + 2) : QStringLiteral("not one row");
}

// How a call failed: the case, and the text. A test of another outcome fails.
template <typename Failure> struct Failed
{
    Failure failure{};
    QString text;
};

template <typename Failure>
[[nodiscard]] Failed<Failure> failureOf(QCoro::Task<GenerationResult> task)
{
    try {
        const GenerationResult result = outcomeOf(std::move(task));
        ADD_FAILURE() << "succeeded with " << textOf(result).toStdString();
    } catch (const CloudServiceError<Failure> &error) {
        return {error.failure(), error.message()};
    } catch (const std::exception &error) {
        ADD_FAILURE() << "failed otherwise: " << error.what();
    }
    return {};
}

} // namespace velarc
