#!/usr/bin/env bash
# Installs whatever Tanselo needs to build, run and test on Debian 12 and is
# not there yet. Runs apt-get as root, or through sudo.
set -euo pipefail

packages=(
    # build
    cmake g++ lld make pkg-config qt6-base-dev qt6-multimedia-dev qt6-svg-dev qt6-qpa-plugins libsndfile1-dev
    libgl-dev
    # the application icon's sizes, and the Debian package (dpkg-shlibdeps)
    librsvg2-bin dpkg-dev
    # the programs the editor runs
    sox libsox-fmt-all ffmpeg
    # sound through PulseAudio
    pulseaudio gstreamer1.0-plugins-good gstreamer1.0-pulseaudio
    # tests, benchmark and screenshots: a virtual display and real sample audio
    xvfb xauth xdotool imagemagick alsa-utils sound-theme-freedesktop espeak-ng e2fsprogs
    # the desktop entry and metainfo checks
    desktop-file-utils appstream shared-mime-info
    # CI's check that every source file is in the project's format
    clang-format
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$package")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=()
[ "$(id -u)" -ne 0 ] && sudo=(sudo)
"${sudo[@]}" apt-get update -q
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q "${missing[@]}"
