#include "intake/clipboard_forms.h"

#include "intake/clipboard_pictures.h"

#include <QDir>
#include <QSet>
#include <QUrl>

#include <array>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kPng("image/png");
constexpr QLatin1StringView kPdf("application/pdf");
constexpr QLatin1StringView kFiles("text/uri-list");
constexpr QLatin1StringView kLatin1Text("STRING");

// Each list names the best form first.
constexpr std::array kTexts{"UTF8_STRING"_L1, "text/plain;charset=utf-8"_L1,
    "text/plain;charset=UTF-8"_L1, "text/plain"_L1, kLatin1Text, "TEXT"_L1};
constexpr std::array kBitmaps{"image/tiff"_L1, "image/bmp"_L1, "image/x-bmp"_L1,
    "image/x-ms-bmp"_L1, "image/x-MS-bmp"_L1, "image/webp"_L1, "image/jpeg"_L1, "image/jpg"_L1,
    "image/gif"_L1};

template <std::size_t count>
std::optional<QString> firstOf(
    const std::array<QLatin1StringView, count> &best, const QStringList &offered)
{
    for (const QLatin1StringView name : best) {
        if (offered.contains(name)) {
            return QString(name);
        }
    }
    return std::nullopt;
}

QString decoded(const QString &name, const QByteArray &bytes)
{
    if (name == kLatin1Text) {
        return QString::fromLatin1(bytes);
    }
    return bytes.isValidUtf8() ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes);
}

// Some owners send the zero that ends their string.
QByteArray withoutEndingZeros(QByteArray bytes)
{
    while (bytes.endsWith('\0')) {
        bytes.chop(1);
    }
    return bytes;
}

QList<QUrl> filesOf(const QByteArray &uriList)
{
    QList<QUrl> files;
    QSet<QString> paths;
    for (const QByteArray &line : uriList.split('\n')) {
        const QByteArray entry = withoutEndingZeros(line).trimmed();
        if (entry.isEmpty() || entry.startsWith('#')) {
            continue;
        }
        const QUrl url = QUrl::fromEncoded(entry);
        if (!url.isLocalFile()) {
            continue;
        }
        const QString path = QDir::cleanPath(url.path(QUrl::FullyEncoded));
        if (!paths.contains(path)) {
            paths.insert(path);
            files.append(url);
        }
    }
    return files;
}

QList<QUrl> filesIn(ClipboardForms &forms, const QStringList &offered)
{
    if (!offered.contains(kFiles)) {
        return {};
    }
    const auto list = forms.bytes(kFiles);
    return list ? filesOf(*list) : QList<QUrl>();
}

QString textIn(ClipboardForms &forms, const QStringList &offered)
{
    const auto name = firstOf(kTexts, offered);
    const auto bytes = name ? forms.bytes(*name) : std::nullopt;
    return bytes ? decoded(*name, withoutEndingZeros(*bytes)) : QString();
}

std::optional<QByteArray> pictureIn(ClipboardForms &forms, const QStringList &offered)
{
    if (offered.contains(kPng)) {
        const auto png = forms.bytes(kPng);
        if (png && !png->isEmpty()) {
            return isPictureTooLarge(*png) ? std::nullopt : png;
        }
    }
    const auto name = firstOf(kBitmaps, offered);
    const auto bitmap = name ? forms.bytes(*name) : std::nullopt;
    return bitmap ? pngFromBitmap(*bitmap) : std::nullopt;
}

std::optional<QByteArray> pdfIn(ClipboardForms &forms, const QStringList &offered)
{
    auto pdf = offered.contains(kPdf) ? forms.bytes(kPdf) : std::nullopt;
    return pdf && !pdf->isEmpty() ? pdf : std::nullopt;
}

} // namespace

std::optional<QByteArray> HeldClipboardForms::bytes(const QString &name)
{
    const auto found = forms.constFind(name);
    return found == forms.cend() ? std::nullopt : std::optional(*found);
}

QStringList wantedTextForms(const QStringList &offered)
{
    QStringList wanted;
    if (offered.contains(kFiles)) {
        wanted.append(kFiles);
    }
    if (const auto text = firstOf(kTexts, offered)) {
        wanted.append(*text);
    }
    return wanted;
}

QStringList wantedForms(const QStringList &offered)
{
    QStringList wanted = wantedTextForms(offered);
    for (const QLatin1StringView name : {kPng, kPdf}) {
        if (offered.contains(name)) {
            wanted.append(name);
        }
    }
    if (const auto bitmap = firstOf(kBitmaps, offered); bitmap && !offered.contains(kPng)) {
        wanted.append(*bitmap);
    }
    return wanted;
}

ClipboardPayload payloadFrom(ClipboardForms &forms)
{
    const QStringList offered = forms.names();
    ClipboardPayload payload;
    payload.fileURLs = filesIn(forms, offered);
    if (payload.fileURLs.isEmpty()) {
        payload.text = textIn(forms, offered);
    }
    payload.imagePNGData = pictureIn(forms, offered);
    payload.pdfData = pdfIn(forms, offered);
    return payload;
}

QString textFrom(ClipboardForms &forms)
{
    const QStringList offered = forms.names();
    return filesIn(forms, offered).isEmpty() ? textIn(forms, offered) : QString();
}

} // namespace velarc
