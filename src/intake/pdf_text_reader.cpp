#include "intake/pdf_text_reader.h"

#include "base/text.h"

namespace velarc {

using namespace Qt::StringLiterals;

struct PdfTextReader::Members
{
    Members(QString helper, std::chrono::milliseconds time)
        : process(std::move(helper)), bound(time)
    {
    }

    DocumentProcess process;
    std::chrono::milliseconds bound;
    SerialWorker texts;
};

namespace {

QCoro::Task<PdfText> readPages(
    std::shared_ptr<PdfTextReader::Members> members, QByteArray pdf, std::stop_token stop)
{
    DocumentJob job{{u"pdf-text"_s}, std::move(pdf), {members->bound}};
    const DocumentOutcome outcome = co_await members->process.run(std::move(job), stop);
    auto join = [output = outcome.output](const std::stop_token &) { return textOfPages(output); };
    PdfText text;
    text.text = co_await members->texts.run(std::move(join), stop);
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
    : m_members(std::make_shared<Members>(std::move(helper), bound))
{
}

QCoro::Task<PdfText> PdfTextReader::read(QByteArray pdf, std::stop_token stop)
{
    return readPages(m_members, std::move(pdf), std::move(stop));
}

} // namespace velarc
