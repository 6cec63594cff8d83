#!/bin/bash
# Builds the platform client and the simulated service, measures a refresh beside the bare call that it makes and a
# search for the service without a bus, and prints the figures.
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset benchmark >/dev/null
cmake --build --preset benchmark --target platform-benchmark
simulator/sandbox.sh -- build/benchmark/benchmarks/platform/platform-benchmark
