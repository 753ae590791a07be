#!/usr/bin/env bash
# Sets up, builds and runs the whole test suite headless: once as built for
# use, once more under the undefined-behaviour sanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
jobs=$(nproc)
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$jobs"
cmake -S . -B build-ubsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTANSELO_SANITIZE=ON >/dev/null
cmake --build build-ubsan -j"$jobs"

export QT_QPA_PLATFORM=offscreen
export UBSAN_OPTIONS=print_stacktrace=1
scripts/with-audio-server.sh bash -c '
    echo "== Undefined-behaviour build =="
    ctest --test-dir build-ubsan --output-on-failure
    echo "== Release build =="
    ctest --test-dir build --output-on-failure'
