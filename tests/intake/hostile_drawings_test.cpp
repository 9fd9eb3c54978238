// Drawings that mean harm: they cost a bounded time, and nothing beside them is read.

#include "document_helper.h"

#include "intake/documents/conversions.h"
#include "support/printers.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <unistd.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

const QByteArray kRoot("<svg xmlns='http://www.w3.org/2000/svg' "
                       "xmlns:xlink='http://www.w3.org/1999/xlink' viewBox='0 0 10 10'>");

QByteArray blank()
{
    return drawn("no drawing").output;
}

// Tells whether a file was opened by anybody since.
class OpenWatch
{
public:
    explicit OpenWatch(const QString &path) : m_watch(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        EXPECT_GE(inotify_add_watch(m_watch, QFile::encodeName(path).constData(), IN_OPEN), 0);
    }
    ~OpenWatch() { ::close(m_watch); }
    OpenWatch(const OpenWatch &) = delete;
    OpenWatch &operator=(const OpenWatch &) = delete;

    [[nodiscard]] bool wasOpened() const
    {
        char event[sizeof(inotify_event) + 256];
        return ::read(m_watch, event, sizeof event) > 0;
    }

private:
    int m_watch;
};

// A server on loopback that nobody should call.
class Listener
{
public:
    Listener() : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        EXPECT_EQ(::bind(m_socket, reinterpret_cast<sockaddr *>(&address), size), 0);
        EXPECT_EQ(::listen(m_socket, 8), 0);
        EXPECT_EQ(::getsockname(m_socket, reinterpret_cast<sockaddr *>(&address), &size), 0);
        m_port = ntohs(address.sin_port);
    }
    ~Listener() { ::close(m_socket); }
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    [[nodiscard]] QByteArray address() const
    {
        return "http://127.0.0.1:" + QByteArray::number(m_port) + "/secret.png";
    }
    [[nodiscard]] bool wasCalled() const
    {
        const int caller = ::accept(m_socket, nullptr, nullptr);
        if (caller >= 0) {
            ::close(caller);
        }
        return caller >= 0;
    }

private:
    int m_socket;
    int m_port = 0;
};

// Every way in which a drawing can name something outside of itself.
QList<QByteArray> drawingsThatName(const QByteArray &place)
{
    const QByteArray type = "<!DOCTYPE svg [<!ENTITY out SYSTEM '" + place + "'>]>";
    const QByteArray parameter = "<!DOCTYPE svg [<!ENTITY % out SYSTEM '" + place + "'> %out;]>";
    return {
        kRoot + "<image width='10' height='10' href='" + place + "'/></svg>",
        kRoot + "<image width='10' height='10' xlink:href='" + place + "'/></svg>",
        kRoot + "<use href='" + place + "#a'/></svg>",
        kRoot + "<linearGradient id='g' href='" + place + "#g'/><rect fill='url(#g)'/></svg>",
        kRoot + "<rect width='9' height='9' fill='url(" + place + "#g)'/></svg>",
        kRoot + "<rect width='9' height='9' filter='url(" + place + "#f)'/></svg>",
        kRoot + "<rect width='9' height='9' mask='url(" + place + "#m)'/></svg>",
        kRoot + "<filter id='f'><feImage href='" + place
            + "'/></filter><rect width='9' height='9' filter='url(#f)'/></svg>",
        kRoot + "<style>@import url('" + place + "');</style></svg>",
        kRoot + "<style>@font-face{font-family:x;src:url('" + place
            + "')}</style><text font-family='x' y='9'>a</text></svg>",
        "<?xml-stylesheet type='text/css' href='" + place + "'?>" + kRoot + "</svg>",
        type + kRoot + "<text y='9'>&out;</text></svg>",
        parameter + kRoot + "</svg>",
        "<!DOCTYPE svg SYSTEM '" + place + "'>" + kRoot + "</svg>",
        kRoot + "<xi:include xmlns:xi='http://www.w3.org/2001/XInclude' parse='text' href='" + place
            + "'/></svg>",
        kRoot + "<script href='" + place + "'/></svg>",
        kRoot
            + "<foreignObject width='9' height='9'><iframe "
              "xmlns='http://www.w3.org/1999/xhtml' src='"
            + place + "'/></foreignObject></svg>",
        kRoot + "<image width='9' height='9' href=\"data:image/svg+xml,"
            + QByteArray("<svg xmlns='http://www.w3.org/2000/svg'><image width='9' height='9' "
                         "href='"
                + place + "'/></svg>")
                  .toPercentEncoding()
            + "\"/></svg>",
    };
}

class SecretFile : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"secret.svg"_s);

    void SetUp() override
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(kRoot + "<rect id='a' width='10' height='10'/></svg>");
    }

    [[nodiscard]] QList<QByteArray> drawings() const
    {
        const QByteArray name = QFile::encodeName(path);
        return drawingsThatName(name) + drawingsThatName("file://" + name)
            + drawingsThatName("../../../../../../.." + name);
    }
};

TEST_F(SecretFile, watchSeesAFileThatIsOpened)
{
    const OpenWatch watch(path);
    EXPECT_FALSE(watch.wasOpened());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(watch.wasOpened());
}

TEST_F(SecretFile, noDrawingHasTheHelperReadAFile)
{
    const OpenWatch watch(path);
    for (const QByteArray &svg : drawings()) {
        EXPECT_NE(drawn(svg, 1min, 16).end, DocumentEnd::NotStarted);
        EXPECT_FALSE(watch.wasOpened()) << svg.toStdString();
    }
}

TEST_F(SecretFile, noDrawingHasTheRendererReadAFileEvenWithoutTheFenceOfTheHelper)
{
    const OpenWatch watch(path);
    for (const QByteArray &svg : drawings()) {
        EXPECT_FALSE(
            pngOfSvg({svg.constData(), static_cast<std::size_t>(svg.size())}, {16, 16}).empty());
        EXPECT_FALSE(watch.wasOpened()) << svg.toStdString();
    }
}

TEST(HostileDrawings, noDrawingCallsAnAddress)
{
    const Listener listener;
    for (const QByteArray &svg : drawingsThatName(listener.address())) {
        EXPECT_EQ(drawn(svg, 1min, 16).end, DocumentEnd::Done);
        static_cast<void>(
            pngOfSvg({svg.constData(), static_cast<std::size_t>(svg.size())}, {16, 16}));
        EXPECT_FALSE(listener.wasCalled()) << svg.toStdString();
    }
}

QByteArray billionLaughs()
{
    QByteArray type = "<!DOCTYPE svg [<!ENTITY a0 'haha'>";
    for (int level = 1; level < 12; ++level) {
        const QByteArray below = "&a" + QByteArray::number(level - 1) + ';';
        type += "<!ENTITY a" + QByteArray::number(level) + " '" + below.repeated(10) + "'>";
    }
    return type + "]>" + kRoot + "<text>&a11;</text></svg>";
}

TEST(HostileDrawings, entityBombIsABlankPictureAtOnce)
{
    EXPECT_EQ(drawn(billionLaughs(), 20s).output, blank());
}

TEST(HostileDrawings, entityThatNamesItselfIsABlankPicture)
{
    EXPECT_EQ(drawn("<!DOCTYPE svg [<!ENTITY a '&b;'><!ENTITY b '&a;'>]>" + kRoot
                  + "<text>&a;</text></svg>")
                  .output,
        blank());
}

TEST(HostileDrawings, hundredThousandNestedGroupsAreABlankPicture)
{
    EXPECT_EQ(drawn(kRoot + QByteArray("<g>").repeated(100'000), 20s).output, blank());
}

TEST(HostileDrawings, drawingThatUsesItselfEnds)
{
    EXPECT_EQ(
        drawn(kRoot + "<g id='a'><use href='#b'/></g><g id='b'><use href='#a'/></g></svg>").end,
        DocumentEnd::Done);
    EXPECT_EQ(drawn(kRoot
                  + "<pattern id='p' width='1' height='1'><rect fill='url(#p)' width='1' "
                    "height='1'/></pattern><rect width='9' height='9' fill='url(#p)'/></svg>")
                  .end,
        DocumentEnd::Done);
}

TEST(HostileDrawings, sizesBeyondAllMeasureStillGiveOnePicture)
{
    for (const QByteArray size : {"1000000000", "1e38", "1e300", "0.0000001", "1e-300", "-1e9"}) {
        const QByteArray attributes = "width='" + size + "' height='" + size + "'";
        const DocumentOutcome outcome = drawn("<svg xmlns='http://www.w3.org/2000/svg' "
            + attributes + "><rect " + attributes + "/><image " + attributes + "/></svg>");
        if (outcome.end == DocumentEnd::Done) {
            EXPECT_EQ(QImage::fromData(outcome.output).size(), QSize(1024, 1024));
        }
        EXPECT_TRUE(outcome.end == DocumentEnd::Done || !outcome.message.isEmpty())
            << size.toStdString();
    }
}

QByteArray useBomb()
{
    QByteArray svg = kRoot + "<defs><rect id='u0' width='1' height='1'/>";
    for (int level = 1; level < 12; ++level) {
        const QByteArray below = "<use href='#u" + QByteArray::number(level - 1) + "' x='.1'/>";
        svg += "<g id='u" + QByteArray::number(level) + "'>" + below.repeated(10) + "</g>";
    }
    return svg + "</defs><use href='#u11'/></svg>";
}

QByteArray fiftyMegabytesOfShapes()
{
    const QByteArray shape("<circle cx='5' cy='5' r='4' fill='#0a08' stroke='red'/>\n");
    return kRoot + shape.repeated(50'000'000 / shape.size()) + "</svg>";
}

QByteArray fiftyMegabytesOfRemarks()
{
    return kRoot + "<!--" + QByteArray(50'000'000, 'x') + "--><rect width='10' height='10'/></svg>";
}

TEST(HostileDrawings, fiftyMegabytesThatShowLittleAreDrawn)
{
    const DocumentOutcome outcome = drawn(fiftyMegabytesOfRemarks());
    EXPECT_EQ(QImage::fromData(outcome.output).pixel(512, 512), qRgb(0, 0, 0));
}

TEST(HostileDrawings, drawingWithoutEndIsEndedByTheCallersBound)
{
    for (const QByteArray &svg : {useBomb(), fiftyMegabytesOfShapes()}) {
        const DocumentOutcome outcome = drawn(svg, 500ms);
        EXPECT_EQ(outcome.end, DocumentEnd::CutByBound);
        EXPECT_EQ(outcome.output, QByteArray());
    }
}

TEST(HostileDrawings, drawingWithoutEndIsEndedByTheHelpersOwnBoundOfTime)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"bomb.svg"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(useBomb());
    file.close();
    QProcess process;
    process.setStandardInputFile(path);
    // A tighter limit than its own stays.
    process.start(u"bash"_s,
        {u"-c"_s, u"ulimit -t 1; exec \"$0\" svg-png --width 64 --height 64"_s,
            QStringLiteral(VELARC_DOCUMENTS)});
    ASSERT_TRUE(process.waitForFinished(30'000));
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(process.readAllStandardOutput(), QByteArray());
}

} // namespace
} // namespace velarc
