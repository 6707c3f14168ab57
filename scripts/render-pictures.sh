#!/usr/bin/env bash
# Makes the pictures of the documents anew: the example's dashboard with its device and in a replay, as scripts/run.sh
# shows it on a virtual display.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

seconds_behind_first_fault=40

# take_picture <name> [<option of the program>...]
take_picture() {
    env -u DISPLAY -u WAYLAND_DISPLAY scripts/run.sh "${@:2}"
    cp build/screenshot.png "docs/images/$1.png"
    step "docs/images/$1.png is new"
}

recordings=(examples/pump-rig/recordings/*.rec)
take_picture dashboard
SECONDS_ON_VIRTUAL_DISPLAY=$seconds_behind_first_fault take_picture replay --play "${recordings[0]}"
