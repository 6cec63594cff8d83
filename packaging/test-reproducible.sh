#!/bin/bash
# Makes the packages once more, from a copy of the sources in another folder, and compares their bytes. To be run in the
# sandbox.
#
#   test-reproducible.sh BUILD_DIR PRESET
set -euo pipefail
build=$1
preset=$2
first=$(mktemp -d)
second="$(mktemp -d)/another folder"

mkdir "$second"
tar -C "$(dirname "$0")/.." --exclude=./build --exclude=./.git -c . | tar -C "$second" -xm
cpack --config "$build/CPackConfig.cmake" -B "$first"
cd "$second"
cmake --preset "$preset"
cmake --build --preset "$preset"
cpack --preset "$preset"

cd "$first"
sha256sum ./*.deb | tee checksums
cd "$second/build/$preset"
sha256sum --check "$first/checksums"
