#!/bin/bash
# Builds the platform client and the simulated service, measures the refresh of one interface and of 32 on the panel
# beside the bare calls that they make, and a search for the service without a bus, and prints the figures.
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset benchmark >/dev/null
cmake --build --preset benchmark --target platform-benchmark
# shellcheck disable=SC2016 # expanded inside
tools/sandbox.sh -- bash -c '
    for ((i = 0; i < 32; i += 2)); do ip link add "eth$i" type veth peer name "eth$((i + 1))"; done
    QT_QPA_PLATFORM=offscreen build/benchmark/benchmarks/platform/platform-benchmark'
