#!/bin/bash
# Installs what is needed, builds everything and passes the tests: with GCC, and with Clang under the sanitizers.
set -euo pipefail
cd "$(dirname "$0")"

packaging/install-build-packages.sh

# Whoever builds with another compiler than ours shall not be stopped by its new warnings.
warnings=OFF
[[ -z ${CI:-} ]] || warnings=ON

for preset in dev asan; do
    cmake --preset "$preset" -DCMAKE_COMPILE_WARNING_AS_ERROR="$warnings"
    cmake --build --preset "$preset"
    ctest --preset "$preset" -j2
done
