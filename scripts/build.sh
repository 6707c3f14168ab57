#!/usr/bin/env bash
# Builds Sigvane, after installing what that needs.
#   scripts/build.sh            the program, build/release/app/sigvane, and the example's device
#   scripts/build.sh <preset>   everything of a preset (dev, release, asan), tests included
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

set_up_preset "${1:-release}"
if [ $# -eq 0 ]; then
    build release sigvane pump-rig
    step "the program is build/release/app/sigvane"
else
    build "$1"
fi
