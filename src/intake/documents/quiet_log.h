#pragma once

namespace velarc {

// What the libraries have to remark about a document is of no use to anybody: standard error holds
// the helper's one sentence alone. May be called again.
void silenceLibraries();

} // namespace velarc
