#pragma once

// Which output formats go with which engine and destination.

#include "actions/action.h"

namespace velarc {

// Whether the result is plain or marked-up text.
[[nodiscard]] bool isTextLike(OutputFormat format);

// A system destination takes text-like formats only; Gemini and Anthropic make no images.
[[nodiscard]] bool isFormatAllowed(
    OutputFormat format, AIProvider provider, const ActionDestination &destination);

// `format` if it is allowed, else Text.
[[nodiscard]] OutputFormat normalisedFormat(
    OutputFormat format, AIProvider provider, const ActionDestination &destination);

// `format` as a run uses it: a system destination gets Text for what is not text-like. The engine
// has no say here, so that an image on an engine without images is refused by name.
[[nodiscard]] OutputFormat formatForDestination(
    OutputFormat format, const ActionDestination &destination);

} // namespace velarc
