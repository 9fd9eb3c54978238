#include "actions/format_rules.h"

namespace velarc {

namespace {

bool makesNoImages(AIProvider provider)
{
    return provider == AIProvider::Anthropic || provider == AIProvider::Gemini;
}

} // namespace

bool isTextLike(OutputFormat format)
{
    return format == OutputFormat::Text || format == OutputFormat::Markdown;
}

bool isFormatAllowed(OutputFormat format, AIProvider provider, const ActionDestination &destination)
{
    if (destination.isSystem()) {
        return isTextLike(format);
    }
    return format != OutputFormat::Image || !makesNoImages(provider);
}

OutputFormat normalisedFormat(
    OutputFormat format, AIProvider provider, const ActionDestination &destination)
{
    const OutputFormat carried = formatForDestination(format, destination);
    return carried == OutputFormat::Image && makesNoImages(provider) ? OutputFormat::Text : carried;
}

OutputFormat formatForDestination(OutputFormat format, const ActionDestination &destination)
{
    return destination.isSystem() && !isTextLike(format) ? OutputFormat::Text : format;
}

} // namespace velarc
