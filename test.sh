#!/bin/bash
# Installs what is needed, builds everything and passes the tests: with GCC and Qt 5 and 6, with Clang under the
# sanitizers, and of the Debian packages.
#
#   test.sh [--aarch64 [CTEST_OPTION...]]
#
# --aarch64  builds for the device's processor instead and passes the tests in an emulator, and on a whole emulated device,
#            except those that the options leave out
set -euo pipefail
cd "$(dirname "$0")"

jobs=$(nproc)
case ${1:-} in
'')
    presets=(dev dev-qt6 asan release release-qt6)
    jobs=$((2 * jobs)) # the tests mostly wait, but for those in the emulator
    ;;
--aarch64) presets=(aarch64 aarch64-release) ;;
*)
    sed -n '2,8s/^# \?//p' "$0" >&2
    exit 2
    ;;
esac
tools/sandbox.sh --check
packaging/install-build-packages.sh ${1:+--aarch64}

fnTest() { # PRESET OPTION...: a display server of another project may miss an event on a busy machine
    local others
    ! ctest --preset "$@" -j "$jobs" || return 0
    others=$(comm -23 <(sed 's/^[0-9]*://' "build/$1/Testing/Temporary/LastTestsFailed.log" | sort) \
        <(ctest --preset "$1" -L display -N | sed -n 's/^ *Test *#[0-9]*: //p' | sort))
    [[ -z $others ]] || return 1
    echo 'test.sh: only tests on display servers of other projects failed; they get a second try'
    ctest --preset "$1" --rerun-failed
}

# Warnings of other compilers are not errors, except in CI.
warnings=OFF
[[ -z ${CI:-} ]] || warnings=ON

for preset in "${presets[@]}"; do
    cmake --preset "$preset" -DCMAKE_COMPILE_WARNING_AS_ERROR="$warnings"
    cmake --build --preset "$preset"
    fnTest "$preset" "${@:2}"
done
