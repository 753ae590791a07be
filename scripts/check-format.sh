#!/usr/bin/env bash
# Fails, naming the files, when a C or C++ source is off the project's format
# (.clang-format); `clang-format -i FILE` puts one right.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t sources < <(git ls-files 'src/*.cpp' 'src/*.h' 'src/*.c' 'tests/*.cpp' 'tests/*.h' 'bench/*.cpp')
clang-format --dry-run --Werror "${sources[@]}"
