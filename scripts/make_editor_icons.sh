#!/bin/sh
# Draws the 16x16 icons of the form editor's element kinds (and of a hidden
# value, Var) with ImageMagick. Each icon is a plain pictogram on a tinted
# square in the colour of its family: containers blue, value elements green,
# displays orange, views violet. Run from the repository root; writes into
# resources/images.
set -e
out=resources/images
mkdir -p "$out"

draw() { # name background pictogram...
    name=$1; bg=$2; shift 2
    convert -size 16x16 xc:none -fill "$bg" -stroke '#505050' -strokewidth 1 \
        -draw 'roundrectangle 0,0 15,15 3,3' -stroke black -fill none "$@" "PNG32:$out/$name.png"
}

C='#cfe0ff'; V='#d4f5cf'; D='#ffe3c4'; W='#ead6ff'; H='#eeeeee'
draw Vertical   $C -draw 'rectangle 4,3 11,6' -draw 'rectangle 4,9 11,12'
draw Horizontal $C -draw 'rectangle 3,4 6,11' -draw 'rectangle 9,4 12,11'
draw Grid       $C -draw 'rectangle 3,3 12,12' -draw 'line 7,3 7,12' -draw 'line 3,7 12,7'
draw Tab        $C -draw 'rectangle 3,6 12,12' -draw 'rectangle 3,3 7,6'
draw Absolute   $C -draw 'rectangle 3,3 7,7' -draw 'rectangle 8,9 12,12'
draw Group      $C -draw 'rectangle 3,5 12,12' -draw 'line 4,3 8,3'
draw Radio      $V -draw 'circle 8,8 8,3' -fill black -draw 'circle 8,8 8,6'
draw Combo      $V -draw 'rectangle 2,5 13,10' -fill black -draw 'polygon 9,7 12,7 10,9'
draw Checkbox   $V -draw 'rectangle 3,3 12,12' -draw 'polyline 5,8 7,10 11,5'
draw Spinbox    $V -draw 'rectangle 2,5 13,10' -draw 'line 10,5 10,10' -draw 'line 10,7 13,7'
draw HexSpinbox $V -draw 'rectangle 2,5 13,10' -draw 'line 4,6 4,9' -draw 'line 7,6 7,9' -draw 'line 4,7 7,7'
draw DoubleSpinbox $V -draw 'rectangle 2,5 13,10' -fill black -draw 'point 6,9' -draw 'point 7,9'
draw Knob       $V -draw 'circle 8,8 8,3' -draw 'line 8,8 11,5'
draw Slider     $V -draw 'line 2,8 13,8' -fill black -draw 'rectangle 6,5 8,11'
draw LineEdit   $V -draw 'rectangle 2,5 13,10' -draw 'line 4,6 4,9'
draw TextEdit   $V -draw 'rectangle 3,2 12,13' -draw 'line 5,5 10,5' -draw 'line 5,8 10,8' -draw 'line 5,11 8,11'
draw MathLabel  $D -draw 'line 4,8 11,8' -draw 'line 8,4 8,11' -draw 'line 4,13 11,13'
draw Text       $D -draw 'line 4,4 11,4' -draw 'line 8,4 8,12'
draw Image      $D -draw 'rectangle 2,3 13,12' -draw 'polyline 3,11 6,7 9,10 12,6'
draw LED        $D -fill '#30c030' -draw 'circle 8,8 8,4'
draw Button     $D -draw 'roundrectangle 2,4 13,11 2,2'
draw ToggleButton $D -draw 'roundrectangle 2,4 13,11 2,2' -fill black -draw 'rectangle 8,6 11,9'
draw Timer      $D -draw 'circle 8,8 8,3' -draw 'polyline 8,5 8,8 10,9'
draw Dial       $D -draw 'arc 3,3 13,13 180,360' -draw 'line 8,8 11,5'
draw Thermo     $D -draw 'rectangle 7,2 9,10' -fill '#d03030' -draw 'circle 8,12 8,10'
draw Plot       $W -draw 'polyline 2,2 2,13 13,13' -draw 'polyline 3,11 6,6 9,9 13,4'
draw RegView    $W -draw 'rectangle 2,5 13,10' -draw 'line 5,5 5,10' -draw 'line 8,5 8,10' -draw 'line 11,5 11,10'
draw Table      $W -draw 'rectangle 2,3 13,12' -draw 'line 2,6 13,6' -draw 'line 2,9 13,9' -draw 'line 7,3 7,12'
draw Var        $H -draw 'line 4,4 11,12' -draw 'line 11,4 4,12'
