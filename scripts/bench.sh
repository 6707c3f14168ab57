#!/usr/bin/env bash
# Builds and runs the benchmarks, after installing what that needs, and prints a table of the figures that we
# want to reach and those measured. Every ratio compares two things measured in this run; close other programs,
# and see the load average above the table. All the figures are in build/bench/.
set -euo pipefail
# shellcheck source=scripts/lib.sh
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

programs=build/release/bench
results=build/bench
figures=$results/figures.txt

display_server=
end_display() {
    trap - EXIT
    [ -z "$display_server" ] || kill "$display_server" 2>/dev/null || true
    wait
}
trap end_display EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

build_benchmarks() {
    local log=build/release-configure.log
    cmake --preset release -DSIGVANE_BUILD_BENCHMARKS=ON >"$log" 2>&1 || {
        cat "$log" >&2
        die "configuring failed"
    }
    build release bench_parse bench_deliver bench_window bench_plots bench_xyplot bench_recording bench_recorder \
        bench_seek bench_replay
}

# run_google_benchmark <name>: adds "<name>/<benchmark> <items per second>" lines to the figures; a benchmark that
# counts no items is one itself.
run_google_benchmark() {
    step "running $1"
    "$programs/$1" --benchmark_repetitions=5 --benchmark_report_aggregates_only=true --benchmark_format=csv \
        >"$results/$1.csv" 2>"$results/$1.log" || {
        cat "$results/$1.log" >&2
        die "$1 failed"
    }
    awk -F, -v program="$1" '/_median"/ {
        gsub(/"|_median/, "", $1)
        print program "/" $1, $7 ? $7 : ($5 == "ms" ? 1e3 : 1e9) / $3
    }' "$results/$1.csv" >>"$figures"
}

run_plain_python() {
    local output
    step "running parse_plain.py"
    output=$(python3 bench/parse_plain.py 10) || die "parse_plain.py failed"
    echo "parse_plain ${output%% *}" >>"$figures"
}

# run_own <name> <how long>: for programs that print "name value" lines themselves.
run_own() {
    step "running $1 ($2)"
    "$programs/$1" >"$results/$1.txt" 2>"$results/$1.log" || {
        cat "$results/$1.log" >&2
        die "$1 failed"
    }
    sed "s,^,$1/," "$results/$1.txt" >>"$figures"
}

# Always on a virtual display, so that neither a display server nor what else is on the screen makes a difference.
run_windows() {
    if command -v Xvfb >/dev/null; then
        start_virtual_display 1920x1200
    else
        step "no Xvfb here: the window is measured without a display server"
        export QT_QPA_PLATFORM=offscreen
    fi
    run_own bench_window "half a minute"
    run_own bench_replay "a minute"
}

print_table() {
    echo
    echo "$load"
    awk '
        function row(what, beside, target, measured, verdict, figures) {
            printf "%-42s %-26s %-9s %-9s %-7s %s\n", what, beside, target, measured, verdict, figures
        }
        function verdict(ok) {
            return ok ? "ok" : "MISSED"
        }
        function scaled(number) {
            return number >= 1e6 ? sprintf("%.2f M", number / 1e6) \
                 : number >= 1e3 ? sprintf("%.1f k", number / 1e3) : sprintf("%.3g", number)
        }
        # How many times "dividend" is "divisor", which are both so many per second.
        function ratio(what, beside, dividend, divisor, comparison, target,    times) {
            if (!(value[dividend] > 0 && value[divisor] > 0)) {
                row(what, beside, comparison " " target " x", "failed", verdict(0))
                return
            }
            times = value[dividend] / value[divisor]
            row(what, beside, comparison " " target " x", sprintf(times < 10 ? "%.2f x" : "%.0f x", times),
                verdict(comparison == ">=" ? times >= target : times <= target),
                scaled(value[dividend]) " and " scaled(value[divisor]) " per second")
        }
        # How many times as long "slow" takes as "quick", both in that unit.
        function times(what, beside, slow, quick, comparison, target, unit,    measured) {
            slow = value[slow]
            quick = value[quick]
            measured = slow > 0 && quick > 0 ? slow / quick : 0
            row(what, beside, comparison " " target " x",
                measured ? sprintf(measured < 10 ? "%.2f x" : "%.0f x", measured) : "failed",
                verdict(measured && (comparison == ">=" ? measured >= target : measured <= target)),
                measured ? sprintf("%.4g and %.4g %s", slow, quick, unit) : "")
        }
        function most(what, name, factor, limit, unit, figures) {
            if (name in value)
                row(what, "", "<= " limit unit, sprintf("%.3g%s", value[name] * factor, unit),
                    verdict(value[name] * factor <= limit), figures)
            else
                row(what, "", "<= " limit unit, "failed", verdict(0))
        }
        { value[$1] = $2 }
        $1 ~ "^bench_plots/hostile/" && $2 >= value["slowest hostile"] {
            value["slowest hostile"] = $2
            slowest_hostile = substr($1, length("bench_plots/hostile/") + 1)
        }
        END {
            row("what", "beside", "target", "measured", "", "figures")

            parse = "bench_parse/sigvane/values:10"
            ratio("bytes to lineParsed, ten values: time", "memchr and from_chars",
                  "bench_parse/limit/values:10", parse, "<=", 3)
            ratio("bytes to lineParsed, ten values: speed", "a plain parser",
                  parse, "bench_parse/plain/values:10", ">=", 10)
            ratio("bytes to lineParsed, ten values: speed", "a plain Python parser", parse, "parse_plain", ">=", 4)

            walk = "bench_deliver/walkPerValue/widgets:50"
            deliver = "bench_deliver/router/widgets:50"
            ratio("one value among 50 widgets: speed", "a walk of the scene", deliver, walk, ">=", 100)
            ratio("ten values among 50 widgets: speed", "ten walks of the scene",
                  "bench_deliver/routerLineOfTen/widgets:50", walk, ">=", 100)
            ratio("one value among 500 widgets: time", "among 50 widgets",
                  deliver, "bench_deliver/router/widgets:500", "<=", 1.2)

            ratio("short lines through the window: speed", "reading and splitting",
                  "bench_window/flood_window_lines_per_second", "bench_window/flood_limit_lines_per_second", ">=", 0.2)
            most("short lines through the window: lost", "bench_window/flood_lines_lost", 1, 0, "",
                 "of " value["bench_window/flood_lines_sent"])

            most("short lines through the window: block", "bench_window/flood_longest_block_ms", 1, 50, " ms")

            row("window at 5,000 lines/s: rate kept", "", ">= 4900/s",
                sprintf("%.0f/s", value["bench_window/example_lines_per_second"]),
                verdict(value["bench_window/example_lines_per_second"] >= 4900))
            most("window at 5,000 lines/s: lost", "bench_window/example_lines_lost", 1, 0, "",
                 "of " value["bench_window/example_lines_sent"])
            most("window at 5,000 lines/s: share of a core", "bench_window/example_processor_share", 100, 30, " %",
                 sprintf("at %.0f lines/s", value["bench_window/example_lines_per_second"]))
            most("window at 5,000 lines/s: longest block", "bench_window/example_longest_block_ms", 1, 50, " ms")

            times("trend plot repaint, 6 x 600,000: speed", "every sample as steps",
                  "bench_plots/trend_every_sample_ms", "bench_plots/trend_steps_ms", ">=", 50, "ms")
            times("trend plot repaint, 6 x 600,000: time", "6 x 20,000 samples",
                  "bench_plots/trend_steps_ms", "bench_plots/trend_steps_few_samples_ms", "<=", 3, "ms")
            most("trend plot, 6 x 1,000/s: longest frame", "bench_plots/trend_live_frame_worst_ms", 1, 50, " ms",
                 sprintf("mean %.3g ms, %.0f ns per sample", value["bench_plots/trend_live_frame_mean_ms"],
                         value["bench_plots/trend_append_ns"]))
            ratio("XY plot repaint, 200,000 points: speed", "one ellipse per point",
                  "bench_xyplot/xyplot/dots:200000", "bench_xyplot/ellipses/dots:200000", ">=", 20)
            most("hostile dashboards: slowest repaint", "slowest hostile", 1, 50, " ms", slowest_hostile)

            times("loading ten values per line: speed", "a full map per frame",
                  "bench_recording/load_plain_ns_per_line", "bench_recording/load_ns_per_line", ">=", 20, "ns")
            most("loaded recording: memory", "bench_recording/load_bytes_per_frame", 1, 150, " B",
                 sprintf("per frame, with full maps %.0f", value["bench_recording/load_plain_bytes_per_frame"]))
            most("loading in slices of 20 ms: longest", "bench_recording/load_longest_slice_ms", 1, 50, " ms")
            most("seek in 1,000,000 frames: p99", "bench_seek/seek_p99_us", 1, 100, " us",
                 sprintf("median %.3g us", value["bench_seek/seek_p50_us"]))
            most("seek with 10 s of history: painted after", "bench_replay/seek_painted_median_ms", 1, 50, " ms",
                 sprintf("longest %.3g ms", value["bench_replay/seek_painted_longest_ms"]))
            most("seek with 200,000 events: longest block", "bench_replay/seek_flood_longest_block_ms", 1, 50, " ms")
            most("replay at rate 100, 30 s: deviation", "bench_replay/replay_time_deviation", 100, 1, " %")
            most("replay at rate 100, 30 s: frames wrong", "bench_replay/replay_frames_wrong", 1, 0, "",
                 sprintf("of %.0f", value["bench_replay/replay_frames"]))
            most("replay at rate 100, 30 s: longest block", "bench_replay/replay_longest_block_ms", 1, 50, " ms")
            times("CSV, 10 x 1,000,000: speed", "QTextStream << double",
                  "bench_recorder/csv_text_stream_ms", "bench_recorder/csv_ms", ">=", 3, "ms")
            times("CSV, 10 x 1,000,000: time", "a bare to_chars loop",
                  "bench_recorder/csv_ms", "bench_recorder/csv_to_chars_ms", "<=", 1.2, "ms")
            times("recorder, ten values per line: speed", "QTextStream << double",
                  "bench_recorder/recorder_text_stream_ms", "bench_recorder/recorder_ms", ">=", 3, "ms")
        }' "$figures" | tee "$results/table.txt"
}

set_up libbenchmark-dev=c++ python3=python3
load="load average before: $(cut -d ' ' -f 1-3 /proc/loadavg), $(nproc) cores"
build_benchmarks
mkdir -p "$results"
: >"$figures"
run_google_benchmark bench_parse
run_plain_python
run_google_benchmark bench_deliver
run_own bench_plots "a quarter of a minute"
run_google_benchmark bench_xyplot
run_own bench_recording "half a minute"
run_own bench_recorder "a minute"
run_own bench_seek "some seconds"
run_windows
print_table
