#include "ui/edited_text.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <algorithm>

namespace velarc {

namespace {

struct Limits
{
    qsizetype text;
    qsizetype paragraph;
};

constexpr Limits kShort{100'000, 10'000};
constexpr Limits kShortAgain{50'000, 5'000}; // so that an edit back and forth changes nothing

bool exceeds(QStringView text, const Limits &limits)
{
    if (text.size() > limits.text) {
        return true;
    }
    while (text.size() > limits.paragraph) {
        const qsizetype end = text.first(limits.paragraph).lastIndexOf(u'\n');
        if (end < 0) {
            return true;
        }
        text = text.sliced(end + 1);
    }
    return false;
}

} // namespace

void EditedText::setText(const QString &text)
{
    if (text == m_text) {
        return;
    }
    m_text = text;
    const bool isLong = exceeds(text, m_isLong ? kShortAgain : kShort);
    if (isLong != m_isLong) {
        m_isLong = isLong;
        Q_EMIT isLongChanged();
    }
    Q_EMIT textChanged();
}

QString EditedText::paste(int selectionStart, int selectionEnd)
{
    const QMimeData *content = QGuiApplication::clipboard()->mimeData();
    if (content == nullptr || !content->hasText()) {
        return {};
    }
    QString pasted = content->text();
    QString text = m_text;
    text.replace(selectionStart, selectionEnd - selectionStart, pasted);
    if (!exceeds(text, kShort)) {
        return pasted;
    }
    m_caret = selectionStart + static_cast<int>(pasted.size());
    setText(text);
    return {};
}

} // namespace velarc
