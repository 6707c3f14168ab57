#!/usr/bin/env bash
# Looks for what no test finds, after installing what that needs: the house style (clang-format), slips of the shell
# (shellcheck) and of spelling (codespell), and what two tools know of C++ and Qt (clang-tidy, clazy at its level 1).
# The quick ones come first. clazy looks over the shoulder of the compiler that builds the preset asan, so that its
# findings are errors of that build.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# known <pattern>...: the files that git knows, or would take, by that name.
known() {
    git ls-files --cached --others --exclude-standard -- "$@" | while read -r file; do
        [ ! -f "$file" ] || echo "$file"
    done
}

set_up clang-format clang-tidy shellcheck codespell python3
set_up_clang

step "clang-format"
known '*.cpp' '*.h' '*.c' ':!examples/*/recordings/*' | xargs clang-format --dry-run -Werror
step "shellcheck"
known '*.sh' .ci/run | xargs shellcheck --external-sources
step "codespell"
known '*.cpp' '*.h' '*.c' '*.md' '*.sh' '*.py' '*.txt' '*.cmake' '*.def' 'packaging/*' 'resources/*.ts' |
    xargs codespell --ignore-words-list=nd
step "clazy, while clang builds everything"
build asan
step "clang-tidy"
scripts/tidy.py build/asan
