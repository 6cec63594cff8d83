#!/usr/bin/env python3
"""Prints a comparison: compare.py SPEED.json MEMORY.txt, the outputs of json_speed and json_memory."""
import json
import sys

SIZES = (1, 10, 100, 1000)
OWN = "own"
PEERS = ("nlohmann", "qt", "rapidjson")


def read_medians(path):
    """Returns nanoseconds by (operation, candidate, interfaces)."""
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    medians = {}
    for run in runs:
        if run["aggregate_name"] == "median":
            operation, candidate, size = run["run_name"].split("/")[:3]
            medians[operation, candidate, int(size)] = run["cpu_time"]
    return medians


def read_memory(path):
    """Returns bytes by (operation, candidate, interfaces)."""
    memory = {}
    with open(path, encoding="utf-8") as file:
        for line in file:
            candidate, size, peak, kept = line.split()
            memory["peak", candidate, int(size)] = int(peak)
            memory["kept", candidate, int(size)] = int(kept)
    return memory


def print_table(title, values, operation, unit):
    """Prints the values of all candidates and what the own one is of each peer's."""
    print(f"\n{title}, by number of interfaces")
    print(f"{'':24}" + "".join(f"{size:>12}" for size in SIZES))
    for candidate in (OWN, *PEERS):
        row = "".join(f"{values[operation, candidate, size] / unit:12.2f}" for size in SIZES)
        print(f"{candidate:24}{row}")
    for peer in PEERS:
        ratios = (values[operation, OWN, size] / values[operation, peer, size] for size in SIZES)
        print(f"{'own / ' + peer:24}" + "".join(f"{ratio:12.2f}" for ratio in ratios))


def print_growth(values):
    """Prints the time that each further interface takes, from one size to the next."""
    print("\nTime in µs for each further interface, from one size to the next")
    for operation in ("read", "write"):
        for candidate in (OWN, *PEERS):
            steps = []
            for small, large in zip(SIZES, SIZES[1:]):
                more = values[operation, candidate, large] - values[operation, candidate, small]
                steps.append(f"{more / (large - small) / 1000:12.2f}")
            print(f"{operation + ' ' + candidate:24}" + " " * 12 + "".join(steps))


speed = read_medians(sys.argv[1])
print_table("Reading in µs", speed, "read", 1000)
print_table("Writing in µs", speed, "write", 1000)
print_growth(speed)
heap = read_memory(sys.argv[2])
print_table("Heap at the peak of reading in KiB", heap, "peak", 1024)
print_table("Heap kept by the document in KiB", heap, "kept", 1024)
