#!/usr/bin/env python3
"""Tests of bench/run: figures, reports, the comparison of outputs, and that every program is complete.

    tests/bench/run_test.py MORVELTESK
"""

import argparse
import contextlib
import importlib.machinery
import importlib.util
import io
import re
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BINARY = sys.argv.pop(1)


def load_runner():
    sys.dont_write_bytecode = True
    loader = importlib.machinery.SourceFileLoader("bench_run", str(ROOT / "bench" / "run"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    sys.modules[loader.name] = module
    loader.exec_module(module)
    return module


bench = load_runner()
OURS = bench.Language(bench.OURS, [BINARY], "morveltesk.rb")


def samples(*seconds, peak=1 << 20):
    return bench.Samples(list(seconds), [peak] * len(seconds))


def peer(name):
    return next(peer for peer in bench.PEERS if peer.name == name)


# Against lua5.4 the ratios are 2 and 0.5 by the median, 3 and 6 by the smallest, so every summary differs.
LUA = [peer("lua5.4")]
RUNS = {
    "alpha": {bench.OURS: samples(1.0, 2.0, 3.0), "lua5.4": samples(3.0, 4.0, 9.0)},
    "beta": {bench.OURS: samples(1.0, 20.0, 30.0), "lua5.4": samples(6.0, 10.0, 11.0)},
}


def rows(table):
    """The cells of a Markdown table, its head first."""
    lines = [line for line in table.splitlines() if not line.startswith("|---")]
    return [[cell.strip() for cell in line.strip("|").split("|")] for line in lines]


class Tables(unittest.TestCase):
    def test_a_ratio_is_by_the_median_with_the_smallest_beside_it(self):
        self.assertEqual(rows(bench.speed_table(RUNS, LUA)), [
            ["program", "ours, ms", "lua5.4"],
            ["`alpha`", "2000.0 (1000.0)", "2.00 (3.00)"],
            ["`beta`", "20000.0 (1000.0)", "0.50 (6.00)"],
        ])

    def test_the_median_of_an_even_number_of_runs_is_between_two(self):
        runs = {"alpha": {bench.OURS: samples(1.0, 3.0), "lua5.4": samples(1.0, 7.0)}}
        self.assertEqual(rows(bench.speed_table(runs, LUA))[1], ["`alpha`", "2000.0 (1000.0)", "2.00 (1.00)"])

    def test_the_summary_has_the_mean_and_the_floor_of_each_peer(self):
        runs = {program: {**of, "luajit": samples(4.0, 8.0, 12.0)} for program, of in RUNS.items()}
        self.assertEqual(rows(bench.summary_table(runs, [*LUA, peer("luajit")])), [
            ["peer", "geometric mean", "lowest", "program", "geometric mean, by the smallest",
             "lowest, by the smallest", "program"],
            ["lua5.4", "1.00", "0.50", "`beta`", "4.24", "3.00", "`alpha`"],
            ["luajit", "1.26", "0.40", "`beta`", "4.00", "4.00", "`alpha`"],
        ])

    def test_start_up(self):
        startup = {bench.OURS: samples(0.001, 0.002, 0.009), "lua5.4": samples(0.001, 0.004, 0.009)}
        self.assertEqual(rows(bench.startup_table(startup)), [
            ["interpreter", "ms", "peak, MiB", "ratio"],
            [bench.OURS, "2.00 (1.00)", "1.0", "1.00 (1.00)"],
            ["lua5.4", "4.00 (1.00)", "1.0", "2.00 (1.00)"],
        ])

    def test_compilation(self):
        compilation = {"ours": samples(0.1, 0.2, 0.5), "theirs": samples(0.2, 0.8, 0.9)}
        self.assertEqual(rows(bench.compilation_table(compilation)), [
            ["compiler", "ms", "million lines/s", "peak, MiB", "ratio"],
            ["`ours`", "200.0 (100.0)", "1.00 (2.00)", "1.0", "1.00 (1.00)"],
            ["`theirs`", "800.0 (200.0)", "0.25 (1.00)", "1.0", "4.00 (2.00)"],
        ])

    def test_growth_is_less_an_empty_script_and_never_negative(self):
        empty = samples(0.1, 0.2, 0.3)
        self.assertEqual(bench.nanoseconds_each(samples(0.3, 0.7, 0.8), empty, 1_000_000), "500.0 (200.0)")
        self.assertEqual(bench.nanoseconds_each(samples(0.05, 0.1, 0.4), empty, 1_000_000), "0.0 (0.0)")

    def test_memory(self):
        runs = {"alpha": {bench.OURS: samples(1.0, peak=1 << 20), "lua5.4": samples(1.0, peak=4 << 20)},
                "beta": {bench.OURS: samples(1.0, peak=1 << 20), "lua5.4": samples(1.0, peak=1 << 20)}}
        self.assertEqual(rows(bench.memory_table(runs, "lua5.4"))[1:], [
            ["`alpha`", "1.0", "4.0", "0.25"], ["`beta`", "1.0", "1.0", "1.00"],
            ["**geometric mean**", "", "", "**0.50**"],
        ])


class Report(unittest.TestCase):
    def test_the_summary_stands_before_the_programs(self):
        report = bench.peers_report(RUNS, LUA, 3, None, None)
        summary, table = bench.summary_table(RUNS, LUA), bench.speed_table(RUNS, LUA)
        self.assertIn(summary, report)
        self.assertIn(table, report)
        self.assertLess(report.index(summary), report.index(table))
        self.assertIn("by the median of 3 interleaved runs each and, in parentheses, by the smallest", report)
        self.assertIn("Not measured: luajit -joff, luajit, ruby, mruby, python3, node.", report)
        self.assertNotIn("Start-up", report)

    def test_start_up_and_compilation_join_a_whole_report(self):
        startup = {bench.OURS: samples(0.001)}
        compilation = {"ours": samples(0.1)}
        report = bench.peers_report(RUNS, LUA, 3, startup, compilation)
        self.assertIn(bench.startup_table(startup), report)
        self.assertIn(bench.compilation_table(compilation), report)

    def test_the_chart_shows_medians(self):
        chart = bench.chart(RUNS, LUA)
        self.assertIn("<title>alpha: 2.00</title>", chart)
        self.assertIn("<title>beta: 0.50</title>", chart)
        self.assertIn(">1.00</text>", chart)

    def test_a_section_is_replaced_between_its_markers(self):
        with tempfile.TemporaryDirectory() as folder:
            document = Path(folder) / "performance.md"
            document.write_text("a\n<!-- begin peers -->\nold\n<!-- end peers -->\nz\n")
            self.addCleanup(setattr, bench, "DOCUMENT", bench.DOCUMENT)
            bench.DOCUMENT = document
            bench.write_section("peers", "new\n")
            self.assertEqual(document.read_text(), "a\n<!-- begin peers -->\n\nnew\n\n<!-- end peers -->\nz\n")
            with self.assertRaisesRegex(SystemExit, "lacks the markers"):
                bench.write_section("growth", "new\n")

    def test_the_document_has_the_sections(self):
        text = bench.DOCUMENT.read_text()
        for name in ("peers", "growth"):
            self.assertEqual(text.count(f"<!-- begin {name} -->"), 1)
            self.assertEqual(text.count(f"<!-- end {name} -->"), 1)


class Measuring(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.addCleanup(setattr, bench, "PROGRAMS", bench.PROGRAMS)
        bench.PROGRAMS = Path(folder.name)
        self.program = bench.PROGRAMS / "double"
        self.program.mkdir()
        (self.program / "small").write_text("4\n")
        (self.program / "expected").write_text("8\n")
        (self.program / "morveltesk.rb").write_text("n = 1000\nputs(n * 2)\n")
        (self.program / "peer.py").write_text("n = 1000\nprint(n * 2)\n")

    def measure(self, runs=1, small=False):
        languages = [OURS, bench.Language("python3", [sys.executable], "peer.py")]
        with contextlib.redirect_stderr(io.StringIO()):
            return bench.measure(["double"], languages, runs, small)

    def test_every_run_is_kept(self):
        measured = self.measure(runs=3)["double"]
        for name in (bench.OURS, "python3"):
            self.assertEqual(len(measured[name].seconds), 3)
            self.assertGreater(measured[name].peak, 0)

    def test_a_small_run_is_compared_with_what_is_expected(self):
        self.measure(small=True)
        (self.program / "expected").write_text("9\n")
        with self.assertRaisesRegex(SystemExit, r"double on morveltesk printed b'8\\n' instead of b'9\\n'"):
            self.measure(small=True)

    def test_different_outputs_end_the_report(self):
        (self.program / "peer.py").write_text("n = 1000\nprint(n * 3)\n")
        with self.assertRaisesRegex(SystemExit, r"double on python3 printed b'3000\\n' instead of b'2000\\n'"):
            self.measure()

    def test_a_failing_run_ends_the_report(self):
        (self.program / "morveltesk.rb").write_text('n = 1000\nerror("spoilt")\n')
        with self.assertRaisesRegex(SystemExit, "double on morveltesk ended with 1: morveltesk: spoilt"):
            self.measure()

    def test_two_builds_are_compared_by_the_median_too(self):
        options = argparse.Namespace(programs=[], compare=BINARY, binary=BINARY, runs=2, small=True,
                                     instructions=False)
        with contextlib.redirect_stderr(io.StringIO()), contextlib.redirect_stdout(io.StringIO()) as out:
            bench.against_build(options)
        head, row, last = rows(out.getvalue())
        self.assertEqual(head, ["program", "ours, ms", "other, ms", "time ratio", "memory ratio"])
        figure = r"\d+\.\d+"
        self.assertRegex("|".join(row), rf"^`double`(\|{figure} \({figure}\)){{3}}\|{figure}$")
        self.assertEqual(last[3].strip("*"), row[3])

    def test_a_program_without_a_size_cannot_be_made_small(self):
        (self.program / "morveltesk.rb").write_text("puts(8)\n")
        with self.assertRaisesRegex(SystemExit, "the first line of .* does not set n"):
            self.measure(small=True)


class Programs(unittest.TestCase):
    SOURCES = sorted({language.source for language in [OURS, *bench.PEERS]})

    def test_each_is_whole(self):
        for folder in sorted(bench.PROGRAMS.iterdir()):
            with self.subTest(folder.name):
                self.assertEqual(sorted(path.name for path in folder.iterdir()),
                                 sorted([*self.SOURCES, "small", "expected"]))
                self.assertTrue((folder / "expected").read_text())

    def test_each_has_one_size_in_all_languages_and_a_smaller_one_for_tests(self):
        for folder in sorted(bench.PROGRAMS.iterdir()):
            with self.subTest(folder.name):
                sizes = {re.match(r".*\bn = (\d+);?\n", (folder / source).read_text()).group(1)
                         for source in self.SOURCES}
                self.assertEqual(len(sizes), 1)
                self.assertLess(int((folder / "small").read_text()), int(sizes.pop()))

    def test_each_is_in_the_table_of_the_readme(self):
        listed = re.findall(r"^\| `(\w+)` \|", (ROOT / "bench" / "README.md").read_text(), re.MULTILINE)
        self.assertEqual(listed, sorted(path.name for path in bench.PROGRAMS.iterdir()))


if __name__ == "__main__":
    unittest.main()
