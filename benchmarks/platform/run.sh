#!/bin/bash
# Builds the platform client and the simulated service, measures the refresh of one interface and of 32 on the panel
# beside the bare calls that they make, and a search for the service without a bus, and prints the figures.
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset benchmark >/dev/null
cmake --build --preset benchmark --target platform-benchmark
tools/sandbox.sh -- tools/device.sh --interfaces 32 -- \
    env QT_QPA_PLATFORM=offscreen build/benchmark/benchmarks/platform/platform-benchmark
