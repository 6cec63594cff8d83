#!/usr/bin/env bash
# Renders every drawing (SVG) under images/ to the picture of the same name beside it: a bitmap (24-bit BMP on
# white), or, of the marks in touch/, a transparent PNG.
# Needs the Debian packages librsvg2-bin and imagemagick. Run it after changing a drawing and commit both files.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/images"

# The name of Debian's own build, which another program called "convert" cannot hide.
convert=$(command -v convert-im6.q16 || command -v convert)

for drawing in touch/*.svg; do
    rsvg-convert "$drawing" | "$convert" png:- -strip "PNG32:${drawing%.svg}.png"
done

find . -name '*.svg' -not -path './touch/*' -print0 | sort -z | while IFS= read -r -d '' drawing; do
    rsvg-convert --background-color=white "$drawing" |
        "$convert" png:- -background white -flatten -strip -type TrueColor "BMP3:${drawing%.svg}.bmp"
done
