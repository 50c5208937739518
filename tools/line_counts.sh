#!/usr/bin/env bash
# Non-blank lines of the library's C++ sources (include/, support/, algebra/, numeric/, entity/,
# tools/) against those of the tests (every source file under tests/: test programs, test kit,
# fuzz targets and helper scripts), and the tests' share of the library.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

nonBlank() { find "$@" -type f \( -name '*.cpp' -o -name '*.h' -o -name "${extra:-*.cpp}" \) -print0 | xargs -0 cat | grep -c '[^[:space:]]'; }

library=$(nonBlank include support algebra numeric entity tools)
tests=$(extra='*.py' nonBlank tests)
fuzz=$(nonBlank tests/fuzz)
echo "library: $library non-blank lines"
echo "tests:   $tests non-blank lines ($((100 * tests / library))% of the library; without the fuzz targets $((tests - fuzz)), $((100 * (tests - fuzz) / library))%)"
