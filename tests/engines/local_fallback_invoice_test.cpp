// What the local engine reads out of an invoice.

#include "engines/local_engine_call.h"
#include "support/fixture.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

QString invoice(QStringView input)
{
    return generateNamed(u"Extract Invoice"_qs, input);
}

// What stands behind `key` in the invoice read out of `input`.
QString field(const QString &key, QStringView input)
{
    const QString line =
        invoice(input).section(u"\""_qs + key + u"\": "_qs, 1).section(u'\n', 0, 0);
    return line.endsWith(u',') ? line.chopped(1) : line;
}

} // namespace

TEST(LocalEngineInvoice, isWrittenLineByLineWithBothEscapes)
{
    EXPECT_EQ(
        invoice(u"  Acme \"Tools\" \\ Co\r\nInvoice Number: INV-2041\nInvoice Date: March 1, 2026\n"
                u"Due Date: March 31, 2026\nTotal: $1,200.00\n"),
        fixtureText("local_engine/invoice.txt"));
}

TEST(LocalEngineInvoice, withoutALineEveryFieldIsNull)
{
    EXPECT_EQ(invoice(u""), fixtureText("local_engine/invoice_without_input.txt"));
    EXPECT_EQ(invoice(u" \n\t\r\n\u00A0"), fixtureText("local_engine/invoice_without_input.txt"));
}

TEST(LocalEngineInvoice, totalKeepsItsMarks)
{
    EXPECT_EQ(field(u"total_amount"_qs, u"Total: 1,200.00"), u"\"1,200.00\""_qs);
    EXPECT_EQ(field(u"total_amount"_qs, u"Total: $5"), u"\"$5\""_qs);
    EXPECT_EQ(field(u"total_amount"_qs, u"AMOUNT DUE $ 7.50"), u"\"7.50\""_qs);
    EXPECT_EQ(field(u"total_amount"_qs, u"total\n\n  :\n 12.3"), u"\"12\""_qs);
    EXPECT_EQ(field(u"total_amount"_qs, u"total $$9,9,.999"), u"\"$9,9,.99\""_qs);
}

TEST(LocalEngineInvoice, subtotalSatisfiesTheTotal)
{
    EXPECT_EQ(field(u"total_amount"_qs, u"Subtotal: $90.00\nTotal: $99.00"), u"\"$90.00\""_qs);
}

TEST(LocalEngineInvoice, totalWithoutANumberIsPassedOver)
{
    EXPECT_EQ(field(u"total_amount"_qs, u"Total: none\nTotal: 4"), u"\"4\""_qs);
    EXPECT_EQ(field(u"total_amount"_qs, u"Total: none"), u"null"_qs);
}

TEST(LocalEngineInvoice, dueDateLineSatisfiesTheInvoiceDateWhenItComesFirst)
{
    const QStringView input = u"Due Date: March 3\nInvoice Date: March 1";
    EXPECT_EQ(field(u"invoice_date"_qs, input), u"\"March 3\""_qs);
    EXPECT_EQ(field(u"due_date"_qs, input), u"\"March 3\""_qs);
}

TEST(LocalEngineInvoice, datesTakeEitherMarkAndEndAtTheLine)
{
    EXPECT_EQ(field(u"due_date"_qs, u"DUE DATE - 2026/03/31 \nnext"), u"\"2026/03/31\""_qs);
    EXPECT_EQ(field(u"due_date"_qs, u"due date\n\n31-03-2026."), u"\"31-03-2026\""_qs);
    EXPECT_EQ(field(u"invoice_date"_qs, u"Update: soon"), u"\"soon\""_qs);
    EXPECT_EQ(field(u"invoice_date"_qs, u"date:: x"), u"null"_qs);
}

TEST(LocalEngineInvoice, valueOfSpacesOnlyIsNull)
{
    EXPECT_EQ(field(u"due_date"_qs, u"due date:   "), u"null"_qs);
}

TEST(LocalEngineInvoice, numberIsFoundUnderEachOfItsNames)
{
    EXPECT_EQ(field(u"invoice_number"_qs, u"Invoice_Number A-1"), u"\"A-1\""_qs);
    EXPECT_EQ(field(u"invoice_number"_qs, u"invoice - # : 77"), u"\"77\""_qs);
    EXPECT_EQ(field(u"invoice_number"_qs, u"INV# 2041b."), u"\"2041b\""_qs);
    EXPECT_EQ(field(u"invoice_number"_qs, u"inv 12"), u"\"12\""_qs);
    EXPECT_EQ(field(u"invoice_number"_qs, u"bill 12"), u"null"_qs);
}

TEST(LocalEngineInvoice, patternsHaveNoWordBoundaries)
{
    EXPECT_EQ(field(u"invoice_number"_qs, u"Invoice 12"), u"\"oice\""_qs);
    EXPECT_EQ(field(u"invoice_number"_qs, u"reinvest"), u"\"est\""_qs);
}

TEST(LocalEngineInvoice, nonBreakingSpaceIsWhiteSpaceToThePatternsToo)
{
    EXPECT_EQ(field(u"total_amount"_qs, u"Total\u00A0:\u00A0$5"), u"\"$5\""_qs);
}

TEST(LocalEngineInvoice, currencyTaxAndItemsAreFixed)
{
    const QString output = invoice(u"Currency: EUR\nTax: 5\nItem: boat");
    EXPECT_TRUE(output.contains(u"\"currency\": \"USD\",\n"));
    EXPECT_TRUE(output.endsWith(u"  \"tax_amount\": null,\n  \"line_items\": []\n}"));
}

TEST(LocalEngineInvoice, vendorIsTheFirstPresentLineWithAnyCharacters)
{
    EXPECT_EQ(field(u"vendor_name"_qs, u"\n\u00A0\nCaf\u00E9 \U0001F600 \u0085\nx"),
        u"\"Caf\u00E9 \U0001F600\""_qs);
}

TEST(LocalEngineInvoice, aFieldBehindMegabytesOfTextIsFound)
{
    const QString columns = (u"total"_qs + QString(40, u' ') + u"x\n"_qs).repeated(20'000);
    EXPECT_EQ(field(u"total_amount"_qs, columns + u"Total: 8"_qs), u"\"8\""_qs);
    const QString prose = u"Lorem ipsum dolor sit amet; invariably.\n"_qs.repeated(50'000);
    EXPECT_EQ(field(u"due_date"_qs, prose + u"Due date: May 1"_qs), u"\"May 1\""_qs);
}

} // namespace velarc
