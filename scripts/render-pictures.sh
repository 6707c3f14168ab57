#!/usr/bin/env bash
# Makes the pictures of the documents anew: the example's dashboard, as scripts/run.sh shows it on a virtual display.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

env -u DISPLAY -u WAYLAND_DISPLAY scripts/run.sh
cp build/screenshot.png docs/images/dashboard.png
step "docs/images/dashboard.png is new"
