#include "entry/desktop_services.h"

#include "entry/velarc_app.h"
#include "intake/pdf_text_reader.h"
#include "intake/platform_clipboard.h"
#include "intake/svg_rasterizer.h"

#include <QGuiApplication>

namespace velarc {

namespace {

// What the canvas and delivery want of the clipboard.
class DesktopClipboard final
    : public ClipboardTextSeen
    , public ClipboardWriting
{
public:
    explicit DesktopClipboard(std::shared_ptr<PlatformClipboard> clipboard)
        : m_clipboard(std::move(clipboard))
    {
    }

    [[nodiscard]] QString cachedText() const override { return m_clipboard->cachedText(); }
    void writeText(const QString &text) override { m_clipboard->writeText(text); }
    void writeImage(const QByteArray &png) override { m_clipboard->writeImage(png); }

private:
    std::shared_ptr<PlatformClipboard> m_clipboard;
};

} // namespace

AppServices makeDesktopServices(std::shared_ptr<const LocalStore> store)
{
    AppServices services = makeServices(std::move(store));
    const auto files = std::make_shared<AttachmentReader>(
        std::make_shared<PdfTextReader>(), std::make_shared<SVGRasterizer>());
    services.files = files;
    const auto clipboard =
        std::make_shared<PlatformClipboard>(QGuiApplication::clipboard(), files, services.scope);
    services.clipboard = clipboard;
    const auto desktop = std::make_shared<DesktopClipboard>(clipboard);
    services.clipboardText = desktop;
    services.clipboardWriting = desktop;
    return services;
}

} // namespace velarc
