#!/usr/bin/env python3
"""coverage_report.py JSON REASONS: compares the counts of gcovr with the percentages in BARS.

REASONS has lines "FILE: TEXT: WHY": WHY is the reason why no test reaches a line of FILE that contains TEXT.
Prints each line that no test reaches, with its reason, and for each row of BARS the percentages that the tests
reach. Ends with 1 if a percentage is lower than in BARS, if a line that no test reaches has no reason, or if a
reason matches no such line.
"""

import json
import sys
from collections import defaultdict

# The columns are a folder, and the lowest allowed percentages of the folder's lines and branches that the tests
# reach.
BARS = [("src/xml/", 100, 95), ("src/npa/", 100, 95), ("src/util/", 100, 95), ("src/", 95, 0)]


def code_lines(file):
    return [line for line in file["lines"] if not line["gcovr/noncode"]]


def count(files, folder):
    """Returns the counts of reached lines, all lines, reached branches and all branches of a folder."""
    numbers = [0, 0, 0, 0]
    for file in files:
        if not file["file"].startswith(folder):
            continue
        for line in code_lines(file):
            numbers[0] += line["count"] > 0
            numbers[1] += 1
            numbers[2] += sum(branch["count"] > 0 for branch in line["branches"])
            numbers[3] += len(line["branches"])
    return numbers


def percentage(reached, total):
    return 100.0 * reached / total if total else 100.0


def read_reasons(path):
    reasons = defaultdict(list)
    with open(path, encoding="utf-8") as stream:
        for line in stream:
            if line.strip() and not line.startswith("#"):
                file, text, why = line.rstrip("\n").split(": ", 2)
                reasons[file].append((text, why))
    return reasons


def main(counts_path, reasons_path):
    with open(counts_path, encoding="utf-8") as stream:
        files = json.load(stream)["files"]
    reasons = read_reasons(reasons_path)
    unused = {(file, text) for file, rows in reasons.items() for text, _ in rows}
    failed = False

    print("\nNot reached:")
    for file in files:
        with open(file["file"], encoding="utf-8") as stream:
            source = stream.read().split("\n")
        for line in code_lines(file):
            if line["count"] > 0:
                continue
            text = source[line["line_number"] - 1]
            row = next((row for row in reasons[file["file"]] if row[0] in text), None)
            failed |= row is None
            unused.discard((file["file"], row[0] if row else ""))
            print(f"{file['file']}:{line['line_number']}: {text.strip()}")
            print(f"    {row[1] if row else 'NO REASON GIVEN'}")
    for file, text in sorted(unused):
        failed = True
        print(f"{file}: remove the reason for '{text}': each such line is reached, or there is none")

    print()
    for folder, least_lines, least_branches in BARS:
        lines, all_lines, branches, all_branches = count(files, folder)
        line_share = percentage(lines, all_lines)
        branch_share = percentage(branches, all_branches)
        met = line_share >= least_lines and branch_share >= least_branches
        failed |= not met
        print(
            f"{'met   ' if met else 'MISSED'} {folder:10} lines {line_share:5.1f} %"
            f" (bar {least_lines}), branches {branch_share:5.1f} % (bar {least_branches})"
        )
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
