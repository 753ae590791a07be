#!/usr/bin/env bash
# Takes again every picture the README shows, each with scripts/screenshot.sh
# on the real editor under Xvfb (those that play, record or preview beside a
# private audio server), and the application icon from its SVG:
#   scripts/screenshots.sh            (make screenshots)
# Run it after a change that shows; a picture the README gains gets its line
# here, so that no picture goes on showing a window as it once was.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The speech check screenshot.sh puts together by itself, and the same
# repeated for an hour (01:00:10), for the pictures of a long track.
alsa=/usr/share/sounds/alsa
speech="$work/Speaker check.flac"
sox $alsa/Front_Left.wav $alsa/Front_Center.wav $alsa/Front_Right.wav $alsa/Side_Right.wav \
    $alsa/Rear_Right.wav $alsa/Rear_Center.wav $alsa/Rear_Left.wav $alsa/Side_Left.wav "$speech"
seconds=$(soxi -D "$speech")
hour="$work/Speaker check, an hour.flac"
sox "$speech" "$hour" repeat "$(awk -v s="$seconds" 'BEGIN { print int(3600 / s) }')"

# xdotool's search gives up when a window it looks at goes away meanwhile
# (the file dialog closing, a window's start-up): such a picture is taken
# again, up to three times.
take() { # PICTURE COMMAND…
    local picture=$1
    shift
    echo "docs/$picture"
    for attempt in 1 2 3; do
        "$@" >/dev/null 2>"$work/said" && return 0
        echo "  attempt $attempt failed: $(tail -1 "$work/said")" >&2
    done
    return 1
}
shot() { # PICTURE [ZOOM_STEPS] [SCROLL_STEPS] [FILE] [MODE]
    take "$1" scripts/screenshot.sh "docs/$1" "${2:-0}" "${3:-0}" "${4:-$speech}" "${5:-}"
}
heard() { # as shot, beside an audio server
    take "$1" scripts/with-audio-server.sh scripts/screenshot.sh "docs/$1" "${2:-0}" "${3:-0}" "${4:-$speech}" \
        "${5:-}"
}

shot screenshot.png
shot zoom-1.png
shot zoom-3.png 2 10
shot hour-zoom-1.png 0 0 "$hour"
shot hour-word.png 0 0 "$hour" word
shot cancel.png 0 0 "$hour" cancel
heard playing.png 0 0 "$speech" play
heard recording.png 0 0 "$speech" record
shot export.png 0 0 "$speech" export
shot split-menu.png 0 0 "$speech" split
shot split-silence.png 0 0 "$speech" split-silence
shot mixer.png 0 0 "$speech" mixer
shot effects-menu.png 0 0 "$speech" effects-menu
shot shortcuts.png 0 0 "$speech" shortcuts
shot history.png 0 0 "$speech" history
shot equalizer.png 0 0 "$speech" equalizer
heard effect-preview.png 0 0 "$speech" preview
shot recovery.png 0 0 "$speech" recovery
shot closing.png 0 0 "$speech" closing
shot loudness.png 0 0 "$speech" loudness
shot loudness-normalize.png 0 0 "$speech" normalize
shot batch.png 0 0 "$speech" batch
shot batch-done.png 0 0 "$speech" batch-done
echo docs/icon.png
rsvg-convert -w 96 -h 96 resources/icons/org.tanselo.Tanselo.svg -o docs/icon.png
