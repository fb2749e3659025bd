#!/bin/sh
# Makes the PNGs from the SVG sources beside them. Needs rsvg-convert (package librsvg2-bin).
set -eu
cd "$(dirname "$0")"

for frame in 1 2 3 4; do
    rsvg-convert "image$frame.svg" -o "image$frame.png"
done
rsvg-convert lock.svg -o lock.png
rsvg-convert mt_klein.svg -o mt_klein.PNG
rsvg-convert images/icons/kestrel.svg -o images/icons/kestrel_16x16.png
