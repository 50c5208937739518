#!/usr/bin/env bash
# Headless Wine for running the Windows test programs, one prefix per build tree.
#   headless-wine.sh start PREFIX   make the prefix ready and start its server and desktop
#   headless-wine.sh stop PREFIX    end every Wine process of the prefix
# Each setting below was needed; without it the test run breaks in the way its comment says.
set -euo pipefail

readonly command=${1:-}
prefix=${2:?usage: headless-wine.sh start|stop PREFIX}
mkdir -p "$prefix"
export WINEPREFIX=$(cd "$prefix" && pwd)
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="  # no Mono or Gecko installers
wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver)

start() {
  mkdir -p "$WINEPREFIX"
  if [[ ! -e $WINEPREFIX/.krgel-ready ]]; then
    "$wine" wineboot --init
    # No display: without the null graphics driver no window can be created at all.
    "$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null
    # No debugger on a crash: winedbg would hold the crashed program (and its test) until a
    # time-out, and can end it with a status that reads as success.
    "$wine" reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /d '' /f >/dev/null
    # The driver setting takes effect only in a new server.
    "$wineserver" -k || true
    "$wineserver" -w
    touch "$WINEPREFIX/.krgel-ready"
  fi
  # A persistent server started here, outside the test runner: a server that a test starts
  # inherits the runner's output pipes and outlives the test, so the runner waits forever.
  # Its first programs start slowly (services start), so it is warmed before the tests run.
  "$wineserver" -p </dev/null >/dev/null 2>&1 || true
  "$wine" cmd /c exit </dev/null >/dev/null 2>&1
  # A program that keeps a window open keeps the desktop process alive between the tests;
  # otherwise each test program waits for a new desktop (about a second each).
  "$wine" notepad.exe </dev/null >/dev/null 2>&1 &
}

case "$command" in
  start) start ;;
  stop) "$wineserver" -k 2>/dev/null || true ;;
  *) echo "usage: headless-wine.sh start|stop PREFIX" >&2; exit 2 ;;
esac
