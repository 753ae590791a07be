#!/usr/bin/env bash
# Takes a screenshot of the real editor under Xvfb with a track loaded:
#   scripts/screenshot.sh OUTPUT.png [ZOOM_STEPS] [SCROLL_STEPS] [AUDIO_FILE] [play|record|export|split|split-silence|cancel|word|mixer|effects-menu|shortcuts|history|equalizer|preview|recovery|closing|loudness|normalize|batch|batch-done]
# The last argument, run beside an audio server (scripts/with-audio-server.sh),
# takes the picture 2.5 s into playback from the clicked position, or into a
# recording of a tone played into the server. "export" takes the export dialog
# (File ▸ Export…), "split" the tools menu open at its splits, "split-silence"
# the split-on-silence dialog, "cancel" the status bar while a delete runs
# (give it a long file, an hour or so), "word" the deepest zoom around the
# stretch from WORD_START to WORD_END (time strings; by default a word half
# an hour into the speech check repeated for an hour, as the README shows
# it), "mixer" the track mixer over this
# track opened three times, the last row selected and starting at 50 s;
# "effects-menu" the menu bar with its Effects menu open; "shortcuts" the
# Keyboard Shortcuts window; "history" the History window after a cut, a
# delete, a paste at the end and one undo; "equalizer" the equalizer's dialog;
# "preview" the echo dialog on a selection while its Preview plays (beside
# an audio server); "recovery" the question of a start after the editor was
# killed with its track edited; "closing" the question Quit asks after a
# delete; "normalize" the Loudness Normalize dialog; "loudness" Tracks ▸ Measure Loudness… with the selection measured
# beside the track;
# "batch" the batch window after normalize, an echo on a selection and a
# fade in, with the file itself and a copy of it added; "batch-done" the
# progress window at the end of that batch, with a file that is not audio.
# After zooming, the waveform is scrolled right by SCROLL_STEPS wheel steps
# and the play position set by a click a third of the way along the window. Without a file, a speech recording is put together from
# alsa-utils' samples.
set -euo pipefail
cd "$(dirname "$0")/.."
output=$(realpath -m "$1")
# A fixed folder, so that the pictures that show a path show the same one
# at every run (the display is fixed too: one run at a time).
work=/tmp/tanselo-screenshot
rm -rf "$work"
mkdir -p "$work"
trap 'kill $app $xvfb 2>/dev/null || true; rm -rf "$work"' EXIT

zoom=${2:-0}
scroll=${3:-0}
audio=${4:-}
transport=${5:-}
if [ -z "$audio" ]; then
    audio="$work/Speaker check.flac"
    alsa=/usr/share/sounds/alsa
    sox $alsa/Front_Left.wav $alsa/Front_Center.wav $alsa/Front_Right.wav $alsa/Side_Right.wav \
        $alsa/Rear_Right.wav $alsa/Rear_Center.wav $alsa/Rear_Left.wav $alsa/Side_Left.wav "$audio"
fi

export DISPLAY=:97
# A run just before this one may still be taking its X server down.
for _ in $(seq 50); do [ -e /tmp/.X97-lock ] || break; sleep 0.1; done
height=480
case "$transport" in effects-menu | shortcuts | batch*) height=860 ;; esac # room for the whole list
Xvfb $DISPLAY -screen 0 1100x${height}x24 >/dev/null 2>&1 &
xvfb=$!
sleep 1
HOME="$work/home" ./build/tanselo >/dev/null 2>&1 &
app=$!
first=$(xdotool search --sync --name 'silence.wav' | head -1)
sleep 1 # its silence track loaded: File ▸ Open then opens the file in it
xdotool windowfocus "$first"
xdotool key ctrl+o
dialog=$(xdotool search --sync --name 'Select an audio file.' | head -1)
sleep 0.5
xdotool windowfocus "$dialog"
xdotool type --delay 5 "$audio"
xdotool key Return
window=$(timeout 20 xdotool search --sync --name '^[0-9-]+\.wav$' | head -1)
sleep 1
xdotool windowfocus "$window"
for _ in $(seq "$zoom"); do xdotool key ctrl+plus; sleep 0.2; done
xdotool mousemove --window "$window" 330 200
[ "$scroll" -gt 0 ] && xdotool click --repeat "$scroll" --delay 30 7
sleep 0.3
xdotool click 1
sleep 0.5
case "$transport" in
play) xdotool key space; sleep 2.5 ;;
record)
    sox -n -r 44100 -c 2 "$work/tone.wav" synth 30 sine 440 vol 0.5
    paplay "$work/tone.wav" &
    sleep 0.5
    xdotool key r
    sleep 2.5
    ;;
cancel)
    xdotool key Delete
    sleep 1.5
    ;;
word)
    # Edit ▸ Set Selection… (Ctrl+G) from WORD_START to WORD_END, then View ▸
    # Zoom to Selection (Ctrl+E), as deep as the view goes around it.
    xdotool key ctrl+g
    sleep 0.5
    xdotool key ctrl+a
    xdotool type "${WORD_START:-00:29:59.50}"
    xdotool key Tab ctrl+a
    xdotool type "${WORD_END:-00:29:59.60}"
    xdotool key Return
    sleep 1
    xdotool windowfocus "$window"
    xdotool key ctrl+e
    sleep 1.5
    ;;
mixer)
    # Two more windows of the same file: File ▸ Open from a window with a
    # track opens a new one.
    for _ in 1 2; do
        xdotool windowfocus "$window"
        sleep 0.3
        xdotool key ctrl+o
        dialog=$(timeout 10 xdotool search --sync --name 'Select an audio file.' | head -1)
        sleep 0.5
        xdotool windowfocus "$dialog"
        xdotool type --delay 5 "$audio"
        xdotool key Return
        sleep 2
    done
    xdotool windowfocus "$window"
    sleep 0.3
    xdotool key ctrl+j
    window=$(timeout 10 xdotool search --sync --name '^Join Open Tracks$' | head -1)
    sleep 0.5
    xdotool windowfocus "$window"
    xdotool key Down Down # the table has the focus: select the second row
    sleep 0.3
    xdotool mousemove --window "$window" 575 303 click 1 # the start field
    xdotool key ctrl+a
    xdotool type 50
    xdotool key Return
    sleep 0.5
    ;;
effects-menu)
    # The menu bar's Effects menu (Alt+C) with its first effect open.
    xdotool key alt+c
    sleep 0.5
    xdotool key Right
    sleep 0.5
    import -window root -crop 620x790+0+0 "$output"
    echo "$output"
    exit 0
    ;;
shortcuts)
    xdotool key alt+h k # Help ▸ Keyboard Shortcuts
    window=$(timeout 10 xdotool search --sync --name '^Keyboard Shortcuts$' | head -1)
    sleep 0.5
    ;;
equalizer)
    # Effects ▸ Equalizer ▸ Entire Track…: a dialog built from its declarations.
    xdotool key alt+c
    sleep 0.5
    xdotool key Down Down Down Down Down Down Down Down Down Right Return
    window=$(timeout 10 xdotool search --sync --name '^Equalizer$' | head -1)
    sleep 0.5
    ;;
preview)
    # The selection from the play position to the end, Effects ▸ Echo ▸
    # Selection…, a shorter delay, then Preview (Alt+P).
    xdotool key shift+End
    sleep 0.3
    xdotool key alt+c
    sleep 0.5
    for _ in $(seq 23); do xdotool key Down; done
    xdotool key Right Down Return
    window=$(timeout 10 xdotool search --sync --name '^Echo$' | head -1)
    sleep 0.5
    xdotool mousemove --window "$window" 230 63 click 1 # the delay
    xdotool key ctrl+a
    xdotool type 250
    xdotool key alt+p
    sleep 1.5
    ;;
recovery)
    # A delete, then SIGKILL, and a start again.
    xdotool key Delete
    sleep 1.5
    kill -9 $app
    sleep 0.5
    HOME="$work/home" ./build/tanselo >/dev/null 2>&1 &
    app=$!
    window=$(timeout 10 xdotool search --sync --name '^Tanselo$' | head -1)
    sleep 1
    ;;
normalize)
    # Effects ▸ Loudness Normalize ▸ Entire Track…: its dialog.
    xdotool key alt+c
    sleep 0.5
    xdotool key Down Down Right Return
    window=$(timeout 10 xdotool search --sync --name '^Loudness Normalize$' | head -1)
    sleep 0.5
    ;;
loudness)
    xdotool key alt+t
    sleep 0.5
    xdotool key l
    window=$(timeout 10 xdotool search --sync --name '^Loudness of' | head -1)
    sleep 2
    ;;
closing)
    xdotool key Delete
    sleep 1.5
    xdotool key ctrl+q
    sleep 1
    # The question over the window it asks about.
    import -window root -crop 1000x380+0+0 "$output"
    echo "$output"
    exit 0
    ;;
history)
    # Three edits a second and more apart (each version's file is named by
    # its second), one undo, then Edit ▸ History….
    xdotool key ctrl+x
    sleep 1.5
    xdotool key Delete
    sleep 1.5
    xdotool key ctrl+v # the paste menu: its last item, Paste at End
    sleep 0.5
    xdotool key Up Return
    sleep 1.5
    xdotool key ctrl+z
    sleep 1
    xdotool key ctrl+h
    window=$(timeout 10 xdotool search --sync --name '^History' | head -1)
    sleep 0.5
    ;;
batch | batch-done)
    # Effects ▸ Normalize, Echo (on the selection from the play position to
    # the end) and Fade In, each a second and more apart, then File ▸
    # Process Files With This Recipe… and Add Files… with two files.
    effect() { # DOWNS_IN_THE_EFFECTS_MENU DOWNS_IN_ITS_SUBMENU TITLE
        xdotool windowfocus "$window"
        sleep 0.2
        xdotool key alt+c
        sleep 0.5
        for _ in $(seq "$1"); do xdotool key Down; done
        xdotool key Right
        for _ in $(seq "$2"); do xdotool key Down; done
        xdotool key Return
        timeout 10 xdotool search --sync --name "^$3\$" >/dev/null
        sleep 0.3
        xdotool key Return
        sleep 1.5
    }
    effect 1 0 Normalize
    xdotool key shift+End
    effect 23 1 Echo
    effect 3 0 Fade-In
    cp "$audio" "$work/Interview.${audio##*.}"
    xdotool windowfocus "$window"
    sleep 0.2
    xdotool key alt+f r
    window=$(timeout 10 xdotool search --sync --name '^Process Files With This Recipe$' | head -1)
    sleep 0.5
    xdotool key alt+a
    timeout 10 xdotool search --sync --name '^Add Files$' >/dev/null
    sleep 0.5
    files="\"$audio\" \"$work/Interview.${audio##*.}\""
    if [ "$transport" = batch-done ]; then
        echo "Notes from the interview" >"$work/Notes.wav"
        files="$files \"$work/Notes.wav\""
    fi
    xdotool type --delay 5 "$files"
    xdotool key Return
    sleep 0.8
    if [ "$transport" = batch-done ]; then
        xdotool key Return # Process
        window=$(timeout 10 xdotool search --sync --name '^Processing Files$' | head -1)
        sleep 4
    fi
    ;;
export)
    xdotool key ctrl+s
    window=$(timeout 10 xdotool search --sync --name '^Export Audio$' | head -1)
    sleep 0.5
    ;;
split | split-silence)
    # The toolbar's tools button, then the menu's "Split into Parts" (the
    # window stands at the screen's corner, the menu opens at the pointer).
    xdotool mousemove 503 37 click 1
    sleep 0.5
    xdotool mousemove 560 113
    sleep 0.4
    xdotool mousemove 760 113
    sleep 0.6
    if [ "$transport" = split ]; then
        import -window root -crop 900x330+0+0 "$output"
        echo "$output"
        exit 0
    fi
    xdotool mousemove 760 157 # the submenu's third item
    sleep 0.4
    xdotool click 1
    window=$(timeout 10 xdotool search --sync --name '^Split on Silence$' | head -1)
    sleep 0.5
    ;;
esac
import -window "$window" "$output"
echo "$output"
