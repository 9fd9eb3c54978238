#include "intake/pdf_text_reader.h"

#include "base/text.h"

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

QCoro::Task<PdfText> readPages(std::shared_ptr<DocumentProcess> process,
    std::chrono::milliseconds bound, QByteArray pdf, std::stop_token stop)
{
    DocumentJob job{{u"pdf-text"_s}, std::move(pdf), {bound}};
    const DocumentOutcome outcome = co_await process->run(std::move(job), stop);
    PdfText text;
    text.text = textOfPages(outcome.output);
    // Where pages came and the end was no good one, there would have been more.
    text.isCut = outcome.end != DocumentEnd::Done && !outcome.output.isEmpty();
    co_return text;
}

} // namespace

std::optional<QString> textOfPages(const QByteArray &output)
{
    QStringList kept;
    const QString pages = QString::fromUtf8(output);
    for (const QStringView page : QStringView(pages).split(u'\f')) {
        if (!isBlank(page)) {
            kept.append(trimmed(page).toString());
        }
    }
    return kept.isEmpty() ? std::nullopt : std::optional(kept.join(u"\n\n"_s));
}

PdfTextReader::PdfTextReader(QString helper, std::chrono::milliseconds bound)
    : m_process(std::make_shared<DocumentProcess>(std::move(helper))), m_bound(bound)
{
}

QCoro::Task<PdfText> PdfTextReader::read(QByteArray pdf, std::stop_token stop)
{
    return readPages(m_process, m_bound, std::move(pdf), std::move(stop));
}

} // namespace velarc
