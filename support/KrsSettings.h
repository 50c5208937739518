// The settings file "lw.ini" beside the library: section "lw", integer keys read the way the
// private-profile reader reads them (keys case-insensitive, optional sign, leading decimal
// digits; anything missing or unparsable reads as 0). On Windows the system's private-profile
// reader itself reads the file, and paths cross this interface as UTF-8.
#pragma once

#include <cstddef>

namespace KrsSettings {

// Reads the integer keys `keys[0..count)` of `section` from the INI text at `path` in one pass
// into `values`; a key that is missing, or whose value has no leading digits, reads as
// `fallback`, and so does every key when the file is not a readable regular file. The first
// occurrence of a key counts. At most the first 16 MiB of a file are read, 1023 bytes per line.
void readProfileInts(const char* path, const char* section, const char* const* keys, int* values, int count,
                     int fallback);

// "lw.ini" in the directory of the library's own module file; false when it cannot be named.
bool settingsPath(char* buffer, std::size_t size);

}  // namespace KrsSettings
