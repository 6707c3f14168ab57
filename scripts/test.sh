#!/usr/bin/env bash
# Builds and runs the tests, after installing what that needs.
#   scripts/test.sh [--preset <dev|release|asan>] [<option of ctest>...]
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

preset=dev
if [ "${1:-}" = --preset ]; then
    preset=${2:?"--preset needs a name: dev, release or asan"}
    shift 2
fi

set_up_preset "$preset" xvfb=Xvfb
build "$preset"
step "running the tests of build/$preset"
exec ctest --preset "$preset" --parallel "$(nproc)" --no-tests=error "$@" </dev/null
