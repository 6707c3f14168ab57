#!/usr/bin/env bash
# Renders resources/icons/svg/*.svg to the PNG files that the program carries, and the example's drawing. Run it
# after changing one of them and commit the result. Needs rsvg-convert (package librsvg2-bin).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../resources/icons"

render() { # <svg> <pixels> <png>
    rsvg-convert --width "$2" --height "$2" --output "$3" "$1"
}

rm -f ./*.png
for svg in svg/*.svg; do
    name=$(basename "$svg" .svg)
    if [ "$name" = sigvane ]; then
        for size in 16 24 32 48 64 128 256; do
            render "$svg" "$size" "sigvane-$size.png"
        done
    else
        render "$svg" 32 "$name.png"
        render "$svg" 64 "$name@2x.png"
    fi
done
echo "==> rendered $(find . -maxdepth 1 -name '*.png' | wc -l) files to resources/icons"
cd ../../examples/pump-rig/pictures
rsvg-convert --width 780 --output rig.png rig.svg
echo "==> rendered the example's drawing"
