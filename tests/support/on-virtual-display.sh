#!/usr/bin/env bash
# on-virtual-display.sh <program> [arguments]: runs the program on an X server of its own without a screen.
# Exits with 77 where there is no Xvfb, which the test runner counts as skipped.
set -euo pipefail
command -v Xvfb >/dev/null || exit 77
exec {display}< <(exec Xvfb -displayfd 1 -screen 0 1600x1000x24 -nolisten tcp 2>/dev/null)
server=$!
trap 'kill "$server" 2>/dev/null || true' EXIT
read -r -t 20 -u "$display" number
DISPLAY=:$number QT_QPA_PLATFORM=xcb "$@"
