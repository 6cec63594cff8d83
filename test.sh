#!/bin/bash
# Installs what is needed, builds everything and passes the tests: with GCC, with Clang under the sanitizers, and of the
# Debian package.
#
#   test.sh [--aarch64]
#
# --aarch64  builds for the device's processor instead and passes the tests in an emulator
set -euo pipefail
cd "$(dirname "$0")"

case ${1:-} in
'') presets=(dev asan release) ;;
--aarch64) presets=(aarch64 aarch64-release) ;;
*)
    sed -n '2,7s/^# \?//p' "$0" >&2
    exit 2
    ;;
esac
tools/sandbox.sh --check
packaging/install-build-packages.sh "$@"

# Whoever builds with another compiler than ours shall not be stopped by its new warnings.
warnings=OFF
[[ -z ${CI:-} ]] || warnings=ON

for preset in "${presets[@]}"; do
    cmake --preset "$preset" -DCMAKE_COMPILE_WARNING_AS_ERROR="$warnings"
    cmake --build --preset "$preset"
    # Displays and compositors of others take part: what fails once because the machine is busy gets a second try.
    ctest --preset "$preset" -j2 --repeat until-pass:2
done
