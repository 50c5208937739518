#!/usr/bin/env bash
# Non-blank lines of the library's sources (include/, support/, algebra/, numeric/, entity/,
# tools/) against those of the tests (every .cpp and .h under tests/, fuzz targets included),
# and the tests' share of the library.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

nonBlank() { find "$@" -type f \( -name '*.cpp' -o -name '*.h' \) -print0 | xargs -0 cat | grep -c '[^[:space:]]'; }

library=$(nonBlank include support algebra numeric entity tools)
tests=$(nonBlank tests)
echo "library: $library non-blank lines"
echo "tests:   $tests non-blank lines ($((100 * tests / library))% of the library)"
