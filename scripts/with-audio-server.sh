#!/usr/bin/env bash
# Runs a command beside a private PulseAudio server with a null sink and a
# microphone that records whatever is played into that sink. The server is
# stopped by its own pid when the command ends.
set -euo pipefail

runtime=$(mktemp -d)
export XDG_RUNTIME_DIR=$runtime
pulseaudio --daemonize=yes --exit-idle-time=-1 -n \
    --load=module-native-protocol-unix \
    --load="module-null-sink sink_name=nullsink" \
    --load=module-always-sink 2>/dev/null
pid=""
reader=""
for _ in $(seq 50); do
    pid=$(cat "$runtime/pulse/pid" 2>/dev/null || true)
    [ -n "$pid" ] && pactl info >/dev/null 2>&1 && break
    sleep 0.1
done
stop() {
    if [ -n "$reader" ]; then
        kill "$reader" 2>/dev/null || true
        wait "$reader" 2>/dev/null || true
    fi
    if [ -n "$pid" ]; then
        kill "$pid" 2>/dev/null || true
        for _ in $(seq 50); do # the server still writes into its folder while it ends
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
    fi
    rm -rf "$runtime" 2>/dev/null || true
}
trap 'status=$?; stop; exit $status' EXIT
pactl load-module module-remap-source master=nullsink.monitor source_name=mic \
    source_properties=device.description=Mic >/dev/null
pactl set-default-source mic
pactl set-default-sink nullsink
# The null sink renders as far ahead as its clients allow: with none asking for
# less, two seconds at a time, so the microphone (its monitor) would hear in
# two-second bursts and a recording could get nothing for its first two
# seconds. A reader asking for 20 ms keeps it rendering in small steps, as a
# sound card's input delivers.
parec --latency-msec=20 --device=nullsink.monitor >/dev/null &
reader=$!

"$@"
