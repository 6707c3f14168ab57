#!/usr/bin/env bash
# Holds every folder to its include directions: a folder may include its own files and those of the
# folders in its row below, always as "folder/File.h". Prints each offence as file:line and fails.
set -euo pipefail
cd "${1:-$(dirname "${BASH_SOURCE[0]}")/..}"

declare -A allowed=(
    [definitions]=""
    [serial]=""
    [licensing]=""
    [widgets]="definitions"
    [canvas]="widgets definitions"
    [playback]="definitions serial widgets canvas"
    [app]="definitions serial licensing widgets canvas playback"
    [tests]="definitions serial licensing widgets canvas playback app support"
    [bench]="definitions serial licensing widgets canvas playback app fuzz support"
    [fuzz]="definitions serial licensing widgets canvas playback app support"
)

offences=0
checked=0
offend() { # <file> <line> <message>
    echo "$1:$2: $3"
    offences=$((offences + 1))
}

check_include() { # <folder> <file> <line number> <included path, with its opening quote or bracket>
    local path=${4#?}
    if [[ $4 == \<* ]]; then
        # A header of the system or the toolkit, unless it names one of our folders.
        [ -z "${allowed[${path%%/*}]+ours}" ] || offend "$2" "$3" "\"$path\" is included with brackets"
        return
    fi
    checked=$((checked + 1))
    if [[ ! $path =~ ^([a-z]+)/[A-Za-z0-9_]+\.h$ ]]; then
        offend "$2" "$3" "\"$path\" is not of the form \"folder/File.h\""
    elif [[ " $1 ${allowed[$1]} " != *" ${BASH_REMATCH[1]} "* ]]; then
        offend "$2" "$3" "$1/ may not include ${BASH_REMATCH[1]}/ (\"$path\")"
    fi
}

include='^[[:space:]]*#[[:space:]]*include[[:space:]]*(["<][^">]+)'
for folder in "${!allowed[@]}"; do
    [ -d "$folder" ] || continue
    while IFS=: read -r file line text; do
        [[ $text =~ $include ]] || continue
        # What moc generates for a class in a source file is named by the tool.
        [[ ${BASH_REMATCH[1]} == *.moc ]] || check_include "$folder" "$file" "$line" "${BASH_REMATCH[1]}"
    done < <(grep -rnE --include='*.h' --include='*.cpp' "$include" "$folder" || true)
done

if [ "$offences" -gt 0 ]; then
    echo "check-layers: $offences of $checked includes go the wrong way" >&2
    exit 1
fi
if [ "$checked" -eq 0 ]; then
    echo "check-layers: no includes found in $PWD" >&2
    exit 1
fi
echo "check-layers: $checked includes, all in the right direction"
