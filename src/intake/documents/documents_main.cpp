// velarc-documents: converts one document in a process of its own.
//
// Bytes on standard input, bytes on standard output, one message on standard error, exit status 0
// or 1. What a document does to this process costs the program that started it nothing but time.

#include "intake/documents/conversions.h"
#include "intake/documents/sandbox.h"
#include "intake/documents/streams.h"

#include <unistd.h>

#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <optional>
#include <span>
#include <string_view>

namespace velarc {

namespace {

using namespace std::chrono_literals;

constexpr const char *kUsage = "usage: velarc-documents pdf-text\n"
                               "       velarc-documents svg-png --width PIXELS --height PIXELS\n"
                               "       velarc-documents text-pdf --title TITLE";

constexpr int kLargestSide = 8192;

using Arguments = std::span<char *const>;

// The value behind `option`; the options that a conversion takes are few and all of them have one.
std::optional<std::string_view> valueOf(Arguments arguments, std::string_view option)
{
    for (std::size_t i = 0; i + 1 < arguments.size(); i += 2) {
        if (arguments[i] == option) {
            return arguments[i + 1];
        }
    }
    return std::nullopt;
}

int pixelsOf(Arguments arguments, std::string_view option)
{
    const std::string_view value = valueOf(arguments, option).value_or(std::string_view());
    int pixels = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), pixels);
    if (error != std::errc() || end != value.data() + value.size() || pixels < 1
        || pixels > kLargestSide) {
        throw ConversionFailure(kUsage);
    }
    return pixels;
}

void convertPdf(Arguments arguments)
{
    if (!arguments.empty()) {
        throw ConversionFailure(kUsage);
    }
    limitResources(120s);
    closeOff(systemFolders());
    const StandardInput input;
    writePdfText(input.bytes());
}

void convertSvg(Arguments arguments)
{
    const PixelSize size{pixelsOf(arguments, "--width"), pixelsOf(arguments, "--height")};
    limitResources(30s);
    closeOff(systemAndFontFolders());
    const StandardInput input;
    writeOut(pngOfSvg(input.bytes(), size));
}

void convertText(Arguments arguments)
{
    const auto title = valueOf(arguments, "--title");
    if (!title) {
        throw ConversionFailure(kUsage);
    }
    limitResources(120s);
    closeOff(systemAndFontFolders());
    const StandardInput input;
    writeTextPdf(input.bytes(), *title);
}

void convert(std::string_view conversion, Arguments arguments)
{
    if (conversion == "pdf-text") {
        convertPdf(arguments);
    } else if (conversion == "svg-png") {
        convertSvg(arguments);
    } else if (conversion == "text-pdf") {
        convertText(arguments);
    } else {
        throw ConversionFailure(kUsage);
    }
}

} // namespace

} // namespace velarc

int main(int argc, char **argv)
{
    int status = 0;
    try {
        // A caller that has gone is an error like any other.
        std::signal(SIGPIPE, SIG_IGN);
        const velarc::Arguments all(argv, static_cast<std::size_t>(argc));
        if (all.size() < 2) {
            throw velarc::ConversionFailure(velarc::kUsage);
        }
        velarc::convert(all[1], all.subspan(2));
    } catch (const velarc::ConversionFailure &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        status = 1;
    }
    // The libraries' own tidying up is left to the kernel.
    std::fflush(stderr);
    _exit(status);
}
