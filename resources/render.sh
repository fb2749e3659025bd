#!/bin/sh
# Makes the PNGs from the SVG sources beside them. Needs rsvg-convert (package librsvg2-bin).
set -eu
cd "$(dirname "$0")"

# A frame of the animation is the pivoting probe in one pose: left, towards the viewer, right, away.
frame() {
    sed "s/rotate(0) scale(1 1)/rotate($2) scale($3)/" pivot.svg | rsvg-convert -o "image$1.png"
}
frame 1 -19 "1 1"
frame 2 0 "1.06 0.93"
frame 3 19 "1 1"
frame 4 0 "0.92 0.96"

rsvg-convert lock.svg -o lock.png
rsvg-convert mt_klein.svg -o mt_klein.PNG
rsvg-convert images/icons/kestrel.svg -o images/icons/kestrel_16x16.png
