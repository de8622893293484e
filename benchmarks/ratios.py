"""Prints the ratios of the minima of Google Benchmark's results beside their bars; ends with 1 when one is missed."""

import json
import sys

ROWS = (100, 3000, 32767)
SHAPES = {0: "the writer's shape", 1: "double quotes, no line breaks", 2: "attributes reversed",
          3: "every character a reference"}
OTHERS = {"Libxml2": "libxml2 SAX2", "Qt": "QXmlStreamReader"}


def minima(paths):
    """The least processor time of each benchmark in microseconds, with "wall " before its name the least time on the
    clock, and its last result."""
    times, counters = {}, {}
    for path in paths:
        with open(path, encoding="utf-8") as file:
            results = json.load(file)["benchmarks"]
        for result in results:
            if result["run_type"] != "iteration":
                continue
            name = result["run_name"].removesuffix("/manual_time")
            own_clock = result["run_name"] != name
            for key, time in ((name, "real_time" if own_clock else "cpu_time"), ("wall " + name, "real_time")):
                times[key] = min(times.get(key, float("inf")), result[time])
            counters[name] = result
    return times, counters


def text_ratios(times):
    for shape, words in SHAPES.items():
        for rows in ROWS:
            case = f"/rows:{rows}/shape:{shape}"
            own = times["Read_Recordset" + case]
            bar = None if rows == 100 else 0.35 if shape == 0 else 2.5
            yield f"text to recordset / pugixml, {words}, {rows} rows", own, times["Read_With_Pugixml" + case], bar
            if shape == 0:
                for library, name in OTHERS.items():
                    yield f"... / {name}, {rows} rows", own, times[f"Read_With_{library}" + case], None


def other_ratios(times):
    read = times["Store_To_Recordset"]
    yield "store read to recordset / SQLite C interface, same statements", read, times["SQLite_To_Table"], 1.5
    yield "... / SQLite C interface, one sorted statement", read, times["SQLite_To_Table_Sorted"], 1.5
    yield "of that, up to the text", times["Store_To_Text"], times["SQLite_To_Table"], None
    yield ("open to first paint / plain pipeline, 32767 nodes", times["Open_To_First_Paint/32767"],
           times["Plain_Pipeline/32767"], 0.60)
    yield ("open to first paint / plain pipeline, 100 nodes", times["Open_To_First_Paint/100"],
           times["Plain_Pipeline/100"], None)
    yield "navigation step, 32767 nodes / 100 nodes", times["Step/32767"], times["Step/100"], 1.10
    yield "a key and its deletion, 32767 nodes / 100 nodes", times["Two_Keys/32767"], times["Two_Keys/100"], 1.10
    yield "a save / the re-read of its list, 32767 nodes", times["Save/32767"], times["Reread/32767"], 1.25
    yield ("... with what the disk takes, on the clock", times["wall Save/32767"], times["wall Reread/32767"], None)


def main(paths):
    times, counters = minima(paths)
    missed = 0
    print(f"| {'figure':70} | {'µs':>8} | {'against':>8} | ratio | bar   |\n|{'-' * 72}|---------:|---------:|------:|-------|")
    for figure, own, other, bar in [*text_ratios(times), *other_ratios(times)]:
        met = bar is None or own / other <= bar
        missed += not met
        verdict = "" if bar is None else f"{bar}" + ("" if met else " MISSED")
        print(f"| {figure:70} | {own:8.1f} | {other:8.1f} | {own / other:5.2f} | {verdict:5} |")
    for shape in (0, 1):
        added = counters[f"Read_Recordset/rows:32767/shape:{shape}"]["MiB"]
        met = added <= 10
        missed += not met
        print(f"| {'memory added by 32767 rows in MiB, ' + SHAPES[shape]:70} | {'':8} | {'':8} | {added:5.1f} | "
              f"{'10' if met else '10 MISSED':5} |")
    sys.exit(1 if missed else 0)


main(sys.argv[1:])
