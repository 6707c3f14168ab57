#!/usr/bin/env python3
"""A plain Python parser of device lines, to compare bench_parse with.

Usage: parse_plain.py [values per line] [number of lines]
Makes the same lines as bench_parse.cpp, parses them from bytes and prints lines per second.
"""
import sys
import time


def device_output(values, lines):
    return b"".join(
        b"%.3f" % (i / 1000.0)
        + b"".join(b" SIGNAL_%d=%.2f" % (k, (i * 7 + k * 131) % 100000 / 100.0) for k in range(values))
        + b"\r\n"
        for i in range(lines)
    )


def parse(line):
    """(time, values, states, errors, free text) of one line."""
    tokens = line.decode("utf-8", "replace").split()
    seconds, begin = 0.0, 0
    try:
        seconds, begin = float(tokens[0]), 1
    except ValueError:
        pass
    values, states, errors, text = {}, [], [], []
    for token in tokens[begin:]:
        key, equal_sign, value = token.partition("=")
        if not equal_sign or not key:
            text.append(token)
        elif key.startswith("ST_"):
            states.append((key[3:], value))
        elif key == "ERR":
            errors.append(value)
        else:
            try:
                values[key] = float(value)
            except ValueError:
                pass
    return seconds, values, states, errors, text


def main():
    values = int(sys.argv[1]) if len(sys.argv) > 1 else 10
    lines = int(sys.argv[2]) if len(sys.argv) > 2 else 10000
    output = device_output(values, lines)
    best = float("inf")
    for _ in range(5):
        begin = time.perf_counter()
        parsed = sum(1 for line in output.splitlines() if len(parse(line)[1]) == values)
        best = min(best, time.perf_counter() - begin)
        if parsed != lines:
            sys.exit("lines were lost")
    print(f"{lines / best:.0f} lines/s")


if __name__ == "__main__":
    main()
