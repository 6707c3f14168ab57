#!/usr/bin/env bash
# Holds every room to its include directions: a room may include its own files and those of the rooms in its
# row below, always by the whole path from the top ("widgets/trend/File.h"). A room is a folder, without the
# rooms inside it. Prints each offence as file:line and fails.
set -euo pipefail
cd "${1:-$(dirname "${BASH_SOURCE[0]}")/..}"

everybody="definitions/numbers"
types="widgets/values widgets/trend widgets/xyplot widgets/consoles widgets/decor"
widgets="widgets widgets/drawing widgets/settings $types widgets/builtin"
below_app="definitions serial serial/line licensing $widgets canvas playback playback/recording resources"
all="$below_app app app/toolbars app/status support"

declare -A allowed=(
    [definitions]=""
    [definitions/numbers]=""
    [serial]="serial/line"
    [serial/line]=""
    [licensing]=""
    [widgets]="widgets/settings definitions"
    [widgets/drawing]=""
    [widgets/settings]=""
    [widgets/builtin]="$widgets"
    [canvas]="$widgets definitions"
    [playback]="playback/recording definitions $widgets canvas"
    [playback/recording]="definitions serial/line"
    [resources]=""
    [app]="$below_app app/toolbars app/status"
    [app/toolbars]="$below_app"
    [app/status]="$below_app"
    [tests]="$all"
    [bench]="$all"
    [fuzz]="$all"
)
for type in $types; do
    allowed[$type]="widgets widgets/drawing widgets/settings definitions"
done

offences=0
checked=0
offend() { # <file> <line> <message>
    echo "$1:$2: $3"
    offences=$((offences + 1))
}

check_include() { # <room> <file> <line number> <included path, with its opening quote or bracket>
    local path=${4#?}
    if [[ $4 == \<* ]]; then
        # A header of the system, or of Qt by its bare name: with the name of its module before it, it would be
        # found in rooms, too, that do without the module.
        if [[ -n ${allowed[${path%%/*}]+ours} || $path == .* || $path == Qt*/* ]]; then
            offend "$2" "$3" "\"$path\" is included with brackets"
        fi
        return
    fi
    checked=$((checked + 1))
    if [[ ! $path =~ ^([a-z]+(/[a-z]+)*)/[A-Za-z0-9_]+\.h$ ]]; then
        offend "$2" "$3" "\"$path\" is not of the form \"room/File.h\""
    elif [[ " $1 ${allowed[$1]} $everybody " != *" ${BASH_REMATCH[1]} "* ]]; then
        offend "$2" "$3" "$1/ may not include ${BASH_REMATCH[1]}/ (\"$path\")"
    fi
}

# The room that a file belongs to; tests and fuzz targets are one each, whatever folders they have.
room_of() { # <file>
    local folder=${1%/*}
    case $folder in
    tests/* | fuzz/*) echo "${folder%%/*}" ;;
    *) echo "$folder" ;;
    esac
}

include='^[[:space:]]*#[[:space:]]*include[[:space:]]*(["<][^">]+)'
# What git knows or would take, so that build folders of any name stay out of it; else what is there.
sources() {
    { git ls-files --cached --others --exclude-standard 2>/dev/null || find . -type f -printf '%P\n'; } |
        grep -E '\.(h|hh|hpp|hxx|inl|ipp|c|cc|cpp|cxx)$' |
        grep -vE '^(build|examples)/|(^|/)(CMakeFiles|[^/]*_autogen)/'
}

while read -r file; do
    [ -f "$file" ] || continue # removed, but not from the index yet
    room=$(room_of "$file")
    if [ -z "${allowed[$room]+known}" ]; then
        offend "$file" 1 "$room/ has no row in check-layers"
        continue
    fi
    [[ $file == *.h || $file == *.cpp ]] || offend "$file" 1 "sources are called .h and .cpp"
    while IFS=: read -r line text; do
        [[ $text =~ $include ]] || continue
        path=${BASH_REMATCH[1]}
        # What moc generates for a class in a source file is named by the tool.
        [[ $path == *.moc && $path == "\"$(basename "$file" .cpp).moc" ]] || check_include "$room" "$file" "$line" "$path"
    done < <(grep -nE "$include" "$file" || true)
done < <(sources)

if [ "$offences" -gt 0 ]; then
    echo "check-layers: $offences offences in $checked includes" >&2
    exit 1
fi
if [ "$checked" -eq 0 ]; then
    echo "check-layers: no includes found in $PWD" >&2
    exit 1
fi
echo "check-layers: $checked includes, all in the right direction"
