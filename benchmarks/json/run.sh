#!/bin/bash
# Builds the optimised programs, measures this program's JSON library against its peers and prints the comparison.
# Takes about two minutes. Use an idle machine.
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset benchmark >/dev/null
cmake --build --preset benchmark --target json_speed json_memory -j"$(nproc)" >/dev/null
cd build/benchmark/benchmarks/json
# Interleaved, so that a slow spell of the machine affects all candidates alike.
./json_speed --benchmark_repetitions=9 --benchmark_min_time=0.1 --benchmark_enable_random_interleaving=true \
    --benchmark_report_aggregates_only=true --benchmark_format=json >speed.json
./json_memory >memory.txt
"$OLDPWD/benchmarks/json/compare.py" speed.json memory.txt
