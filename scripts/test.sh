#!/usr/bin/env bash
# Sets up, builds and runs the whole test suite headless.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$(nproc)"

export QT_QPA_PLATFORM=offscreen
scripts/with-audio-server.sh ctest --test-dir build --output-on-failure
