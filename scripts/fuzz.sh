#!/usr/bin/env bash
# Feeds hostile input to all that reads files or the wire: every target of fuzz/ under libFuzzer with sanitizers,
# guided by what the code does and with a new seed each time, after installing and building what that needs.
#   scripts/fuzz.sh [<seconds for each target> [<seed>]]     30 seconds and a fresh seed if not given
# Starts from fuzz/corpus/, which it only reads, and from what earlier runs found, in build/fuzz/<input>/corpus/. An
# input that makes a target fail is kept in build/fuzz/<input>/.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

seconds=${1:-30}
seed=${2:-$((RANDOM * 32768 + RANDOM + 1))}
targets=(definitions line layout recording)

export QT_QPA_PLATFORM=offscreen QT_LOGGING_RULES="*.debug=false;*.warning=false" UBSAN_OPTIONS=print_stacktrace=1
export LSAN_OPTIONS=suppressions=$root/tests/foreign-leaks.txt:print_suppressions=0

# fuzz <input>: runs one target and says how it went.
fuzz() {
    local folder=build/fuzz/$1 result=0
    mkdir -p "$folder/corpus"
    # Small inputs are fast ones, and show as much.
    "build/asan/fuzz/guided_$1" -seed="$seed" -max_total_time="$seconds" -max_len=4096 -timeout=20 \
        -rss_limit_mb=4096 -print_final_stats=1 -artifact_prefix="$folder/" \
        "$folder/corpus" "fuzz/corpus/$1" >"$folder/log.txt" 2>&1 || result=$?
    awk -v target="$1" -v seed="$seed" '
        /^stat::number_of_executed_units/ { runs = $2 }
        /^stat::average_exec_per_sec/ { speed = $2 }
        END { print target ": " runs + 0 " runs, " speed + 0 " a second, seed " seed }' "$folder/log.txt"
    [ "$result" -eq 0 ] || {
        # Without the fuzzer's own tale of what it learned.
        grep -vE '^(#[0-9]+|stat::|INFO:|MS:|0x|\\)' "$folder/log.txt" | head -n 60 >&2
        die "the target $1 failed, the whole output is in $folder/log.txt"
    }
}
export -f fuzz die
export seconds seed

set_up
set_up_clang
build asan "${targets[@]/#/guided_}"
step "fuzzing, $seconds seconds each"
printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I{} bash -euo pipefail -c 'fuzz {}'
