#!/usr/bin/env bash
# Sets up, builds and runs the whole test suite headless: once as built for
# use, once more under AddressSanitizer (leaks included) and the
# undefined-behaviour sanitizer, where any report fails the test.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
jobs=$(nproc)
werror=-DTANSELO_WERROR=${TANSELO_WERROR:-OFF} # CI sets it ON
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo "$werror" >/dev/null
cmake --build build -j"$jobs"
cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTANSELO_SANITIZE=ON "$werror" >/dev/null
cmake --build build-asan -j"$jobs"

# The sanitizers' run-time options. The first report of any of them ends the
# test executable with a non-zero status, so CTest counts the test as failed;
# leaks are checked when it exits. fast_unwind_on_malloc=0 records whole
# allocation stacks, through Qt and FFmpeg too, which the leak suppressions
# match against. tests/sanitizers/lsan.supp lists only leaks inside Qt and
# the system's libraries, each with its reason. The release build and the
# uninstrumented programs (sox, ffmpeg, pulseaudio) ignore these variables.
supp=$PWD/tests/sanitizers
export ASAN_OPTIONS=halt_on_error=1:detect_leaks=1:fast_unwind_on_malloc=0:detect_stack_use_after_return=1:check_initialization_order=1:strict_init_order=1:detect_odr_violation=2
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1:report_error_type=1
export LSAN_OPTIONS=suppressions=$supp/lsan.supp:print_suppressions=0
export QT_QPA_PLATFORM=offscreen
# Tests run side by side, three for every two processors: a third of their
# time goes to waiting (for sox and ffmpeg to start, for sound to play, for
# the clock to reach a new second), which the third test fills. Those that
# measure time take two places; those that play into or listen to an audio
# server bring a private one each.
export CTEST_PARALLEL_LEVEL=$(((jobs * 3 + 1) / 2))
# Both passes always run; a failure in either fails the command.
scripts/with-audio-server.sh bash -c '
    status=0
    echo "== Address and undefined-behaviour sanitizer build =="
    ctest --test-dir build-asan --output-on-failure || status=1
    echo "== Release build =="
    ctest --test-dir build --output-on-failure || status=1
    exit $status'
