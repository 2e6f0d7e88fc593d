#!/usr/bin/env bash
# Runs the real program under Xvfb with the accessibility bus on a private session bus and
# lets atspi_walk.py drive it as a screen reader would. Skips, saying why, where Xvfb, the
# session bus, the accessibility bus or pyatspi is missing.
#
#   tests/app/atspi-test.sh PROGRAM
set -euo pipefail
program=$(realpath "$1")
here=$(dirname "$(realpath "$0")")

skip() {
  echo "atspi-test: skipped: $*"
  exit 0
}
command -v xvfb-run >/dev/null || skip "xvfb-run is not installed (package xvfb)"
command -v dbus-run-session >/dev/null || skip "dbus-run-session is not installed (package dbus-bin)"
command -v sqlite3 >/dev/null || skip "sqlite3 is not installed"
launcher=/usr/libexec/at-spi-bus-launcher
[ -x "$launcher" ] || skip "the accessibility bus is not installed (package at-spi2-core)"
/usr/bin/python3 -c 'import pyatspi' 2>/dev/null || skip "pyatspi is not installed (package python3-pyatspi)"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A home of its own: no settings, firms or last-firm memory of the user running the tests.
export HOME=$work/home XDG_CONFIG_HOME=$work/home/.config XDG_DATA_HOME=$work/home/.local/share
export XDG_CACHE_HOME=$work/home/.cache XDG_RUNTIME_DIR=$work/run
mkdir -p "$HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"

firm=$work/firma.zlc
QT_QPA_PLATFORM=offscreen "$program" nowa-firma "$firm" >/dev/null
# The firm's data, with a filled account for the transfer to be paid from.
sqlite3 "$firm" "INSERT INTO firma (NAZWA, MIASTO, BANK_NAZWA1, BANK_KONTO1)
                 VALUES ('Firma Testowa', 'Kraków', 'Bank Testowy', '61109010140000071219812874')"

export ATSPI_PROGRAM=$program ATSPI_FIRM=$firm ATSPI_WALK=$here/atspi_walk.py
timeout 120 xvfb-run -a -s "-screen 0 1366x768x24" dbus-run-session -- bash -c '
  set -u
  export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 QT_ACCESSIBILITY=1 ZLECANKI_DIALOGS=console
  export NO_AT_BRIDGE=0
  /usr/libexec/at-spi-bus-launcher --launch-immediately &
  bus=$!
  sleep 1
  "$ATSPI_PROGRAM" "$ATSPI_FIRM" >"$XDG_RUNTIME_DIR/program.log" 2>&1 &
  prog=$!
  status=0
  timeout 90 /usr/bin/python3 "$ATSPI_WALK" "$ATSPI_FIRM" || status=$?
  kill "$prog" 2>/dev/null || true
  wait "$prog" 2>/dev/null || true
  kill "$bus" 2>/dev/null || true
  if [ "$status" -ne 0 ]; then
    echo "atspi-test: the program said:"
    tail -n 30 "$XDG_RUNTIME_DIR/program.log"
  fi
  exit "$status"
'
