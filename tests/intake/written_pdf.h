#pragma once

// PDF files written by hand, well-formed or not.

#include <QByteArray>
#include <QList>

namespace velarc {

// A document of these objects, the first of which has the number 1 and is the catalogue.
[[nodiscard]] inline QByteArray pdfOf(const QList<QByteArray> &objects)
{
    QByteArray pdf("%PDF-1.5\n");
    QByteArray table =
        "xref\n0 " + QByteArray::number(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (qsizetype number = 1; number <= objects.size(); ++number) {
        table += QByteArray::number(pdf.size()).rightJustified(10, '0') + " 00000 n \n";
        pdf += QByteArray::number(number) + " 0 obj\n" + objects[number - 1] + "\nendobj\n";
    }
    const QByteArray start = QByteArray::number(pdf.size());
    return pdf + table + "trailer\n<</Root 1 0 R /Size " + QByteArray::number(objects.size() + 1)
        + ">>\nstartxref\n" + start + "\n%%EOF\n";
}

[[nodiscard]] inline QByteArray pdfStream(const QByteArray &bytes, const QByteArray &entries = {})
{
    return "<</Length " + QByteArray::number(bytes.size()) + ' ' + entries + ">>\nstream\n" + bytes
        + "\nendstream";
}

[[nodiscard]] inline QByteArray pageContent(const QByteArray &text)
{
    return "BT /F 12 Tf 72 700 Td (" + text + ") Tj ET";
}

// A document with a page for each content; the font is object 3, the page at index n is 4 + 2n and
// its content the object behind it.
[[nodiscard]] inline QByteArray pdfOfPages(const QList<QByteArray> &contents,
    const QByteArray &font = "<</Type /Font /Subtype /Type1 /BaseFont /Helvetica>>")
{
    QByteArray kids;
    QList<QByteArray> objects{"<</Type /Catalog /Pages 2 0 R>>", {}, font};
    for (const QByteArray &content : contents) {
        kids += QByteArray::number(objects.size() + 1) + " 0 R ";
        objects.append("<</Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Resources "
                       "<</Font <</F 3 0 R>>>> /Contents "
            + QByteArray::number(objects.size() + 2) + " 0 R>>");
        objects.append(content);
    }
    objects[1] =
        "<</Type /Pages /Kids [" + kids + "] /Count " + QByteArray::number(contents.size()) + ">>";
    return pdfOf(objects);
}

} // namespace velarc
