// The settings file "lw.ini" beside the library: section "lw", integer keys read the way the
// private-profile reader reads them (keys case-insensitive, optional sign, leading decimal
// digits; anything missing or unparsable reads as 0).
#pragma once

#include <cstddef>

namespace KrsSettings {

// Reads `key` of `section` from the INI text at `path`; `fallback` when the file, section or key
// is missing or the value has no leading digits. At most the first 16 MiB of a file are read.
int readProfileInt(const char* path, const char* section, const char* key, int fallback);

// "lw.ini" in the directory of the library's own module file; false when it cannot be named.
bool settingsPath(char* buffer, std::size_t size);

}  // namespace KrsSettings
