#!/usr/bin/env bash
# Set-up for a fresh Debian machine, run as root from anywhere:
#   ./setup.sh demo   installs what is missing, builds the scene tool and the monitor, runs every
#                     example scene with krgemon attached, prints the results, writes one SVG per
#                     scene into build/demo/ and prints the monitor's lines
#   ./setup.sh test   installs what is missing, builds and runs the whole test suite in the
#                     release build and in the AddressSanitizer+UBSan build (warnings are errors),
#                     the threaded test in the ThreadSanitizer build, each fuzz target for
#                     30 s from its seed corpus (any finding fails), then the Windows build
#                     (MinGW-w64) and the same suite under headless Wine
#   ./setup.sh fuzz [seconds]
#                     the long fuzz run: each target for `seconds` (default 600)
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

readonly packages=(g++ cmake ninja-build libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev python3 clang
                   libclang-rt-dev)

# installMissing [PACKAGE...] (default: the Linux build's packages); extra apt-get options in
# aptOptions.
aptOptions=()
installMissing() {
  local missing=() package wanted=("$@")
  ((${#wanted[@]} > 0)) || wanted=("${packages[@]}")
  for package in "${wanted[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
  done
  ((${#missing[@]} == 0)) && return 0
  if ((EUID != 0)); then
    echo "setup.sh: missing packages (${missing[*]}); run as root to install them" >&2
    exit 1
  fi
  export DEBIAN_FRONTEND=noninteractive
  apt-get update
  apt-get install -y "${aptOptions[@]}" "${missing[@]}"
}

monitorPid=""
demoWork=""
cleanUpDemo() {
  if [[ -n $monitorPid ]]; then kill -TERM "$monitorPid" 2>/dev/null || true; fi
  if [[ -n $demoWork ]]; then rm -rf "$demoWork"; fi
}

runDemo() {
  cmake --preset release
  cmake --build --preset release --target krgescene krgemon
  local build=build/release output=build/demo scene name status=0
  # Assertions are reported only when "lw.ini" beside the library turns them on.
  [[ -e $build/lw.ini ]] || printf '[lw]\nkrsassert=1\n' >"$build/lw.ini"
  mkdir -p "$output"
  demoWork=$(mktemp -d)
  trap cleanUpDemo EXIT
  "$build/krgemon" --socket "$demoWork/monitor" --timeout 120 >"$demoWork/lines" &
  monitorPid=$!
  for _ in $(seq 100); do [[ -S $demoWork/monitor ]] && break; sleep 0.05; done
  for scene in examples/scenes/*.scene; do
    name=$(basename "$scene" .scene)
    echo "=== $name ($scene) ==="
    KRGE_MONITOR="$demoWork/monitor" "$build/krgescene" --svg "$output/$name.svg" "$scene" || status=1
    echo "picture: $output/$name.svg"
    echo
  done
  sleep 0.2
  kill -TERM "$monitorPid"
  wait "$monitorPid" || true
  monitorPid=""
  echo "--- krgemon ---"
  cat "$demoWork/lines"
  return "$status"
}

runTests() {
  local preset
  for preset in release sanitize; do
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    ctest --preset "$preset" -j "$(nproc)"
  done
}

# The threaded test under ThreadSanitizer. Address-space randomisation is switched off for it:
# the sanitizer's fixed shadow layout then fits kernels that randomise with more bits.
runThreadCheck() {
  cmake --preset tsan
  cmake --build --preset tsan
  setarch "$(uname -m)" -R ctest --preset tsan
}

# Each fuzz target for `seconds` from its seed corpus in tests/fuzz/corpus/<family>/. New inputs
# go to a scratch corpus; a finding is written to build/fuzz/findings/ and fails the run.
runFuzz() {
  local seconds=$1 corpus family work
  cmake --preset fuzz
  cmake --build --preset fuzz
  mkdir -p build/fuzz/findings
  for corpus in tests/fuzz/corpus/*/; do
    family=$(basename "$corpus")
    work=$(mktemp -d)
    echo "--- fuzzing $family for ${seconds} s ---"
    if ! "build/fuzz/tests/fuzz/krgel_fuzz_$family" -max_total_time="$seconds" -timeout=30 -print_final_stats=1 \
        -artifact_prefix=build/fuzz/findings/ "$work" "$corpus" >"$work.log" 2>&1; then
      cat "$work.log"
      rm -rf "$work" "$work.log"
      echo "setup.sh: the $family fuzz target found a problem (input in build/fuzz/findings/)" >&2
      exit 1
    fi
    grep -E '^stat::(number_of_executed_units|average_exec_per_sec|peak_rss_mb)' "$work.log"
    rm -rf "$work" "$work.log"
  done
}

# The Windows build (MinGW-w64 cross compiler) and its whole test suite under headless Wine.
readonly windowsPackages=(g++-mingw-w64-x86-64-posix googletest wine wine64)
runWindowsTests() {
  aptOptions=(--no-install-recommends)
  installMissing "${windowsPackages[@]}"
  local started=$SECONDS
  tools/wine/headless-wine.sh start "$PWD/build/wine"
  trap 'tools/wine/headless-wine.sh stop "$PWD/build/wine"' EXIT
  cmake --preset windows
  cmake --build --preset windows
  ctest --preset windows
  tools/wine/headless-wine.sh stop "$PWD/build/wine"
  trap - EXIT
  echo "setup.sh: Windows build and tests took $((SECONDS - started)) s"
}

case "${1:-}" in
  demo) installMissing; runDemo ;;
  test) installMissing; runTests; runThreadCheck; runFuzz 30; runWindowsTests ;;
  fuzz) installMissing; runFuzz "${2:-600}" ;;
  *) echo "usage: $0 demo|test|fuzz [seconds]" >&2; exit 2 ;;
esac
