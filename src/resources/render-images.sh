#!/usr/bin/env bash
# Renders every drawing (SVG) under images/ to the bitmap (24-bit BMP on white) of the same name beside it.
# Needs the Debian packages librsvg2-bin and imagemagick. Run it after changing a drawing and commit both files.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/images"

# The name of Debian's own build, which another program called "convert" cannot hide.
convert=$(command -v convert-im6.q16 || command -v convert)

find . -name '*.svg' -print0 | sort -z | while IFS= read -r -d '' drawing; do
    rsvg-convert --background-color=white "$drawing" |
        "$convert" png:- -background white -flatten -strip -type TrueColor "BMP3:${drawing%.svg}.bmp"
done
