"""Tests of the mutations that tools/mutate generates."""

import argparse
import importlib.machinery
import subprocess
import sys
import tempfile
import time
import types
import unittest
from pathlib import Path

PATH = Path(__file__).resolve().parents[2] / "tools" / "mutate"
mutate = types.ModuleType("mutate")
mutate.__file__ = str(PATH)
sys.dont_write_bytecode = True
importlib.machinery.SourceFileLoader("mutate", str(PATH)).exec_module(mutate)


def results(source, kind):
    """The sources that result from each mutation of one kind."""
    return sorted(mutate.mutated(source, found) for found in mutate.find_mutations(source) if found.kind == kind)


def has_ended(process):
    """Waits for a process that was killed; false if it goes on."""
    for _ in range(100):
        state = subprocess.run(["ps", "-o", "stat=", "-p", process], capture_output=True, text=True).stdout.strip()
        if not state or state.startswith("Z"):
            return True
        time.sleep(0.05)
    return False


class Mutations(unittest.TestCase):
    def test_comparisons_are_turned_and_shifted(self):
        self.assertEqual(["a <= b", "a >= b"], results("a < b", "comparison"))
        self.assertEqual(["a != b"], results("a == b", "comparison"))

    def test_templates_and_references_are_no_operators(self):
        self.assertEqual([], results("std::vector<T<U>> f(T&& value, U& other, V* third);", "comparison"))
        self.assertEqual([], results("std::vector<T<U>> f(T&& value, U& other, V* third);", "logic"))
        self.assertEqual([], results("std::vector<T<U>> f(T&& value, U& other, V* third);", "arithmetic"))

    def test_operators(self):
        self.assertEqual(["a || b"], results("a && b", "logic"))
        self.assertEqual(["a &&\n b"], results("a ||\n b", "logic"))
        self.assertEqual(["a * b - c", "a / b + c"], results("a * b + c", "arithmetic"))
        self.assertEqual(["--i"], results("++i", "arithmetic"))
        self.assertEqual(["f(false)"], results("f(true)", "boolean"))

    def test_constants_are_one_off(self):
        self.assertEqual(["x = 6U;", "x = 8U;"], results("x = 7U;", "constant"))
        self.assertEqual(["x = 1;"], results("x = 0;", "constant"))
        self.assertEqual([], results("x1 = 2.5 + 0xff;", "constant"))

    def test_conditions_are_negated(self):
        self.assertEqual(["if (!(f(a) && b)) {"], results("if (f(a) && b) {", "condition"))
        self.assertEqual([], results("if (const T* a = f()) {", "condition"))
        self.assertEqual(["while (!(a == b)) {"], results("while (a == b) {", "condition"))

    def test_returned_values_are_others(self):
        self.assertEqual(["return {};"], results("return f(a);", "returned value"))
        self.assertEqual([], results("return;", "returned value"))

    def test_statements_are_removed(self):
        around = "void f() {\n    %s\n}\n"
        for statement in ("g(a, b);", "m_a = b;", "++m_count;", "a.b->c(d);", "a[i] += 2;", "break;"):
            self.assertEqual([around % ";"], results(around % statement, "statement"), statement)
        for statement in ("return a;", "T a = b;", "const T& a = b;", "throw f(a);", "if (a) {"):
            self.assertEqual([], results(around % statement, "statement"), statement)

    def test_what_is_no_code_stays(self):
        for text in ("// a < 1", "/* a < 1\n && b */", '"a < 1 && \\" b"', "#if a < 1 && \\\n  b < 1",
                     "static_assert(a < 1 && b);"):
            self.assertEqual([], mutate.find_mutations(text), text)
        self.assertEqual(["a <= b; // a < 1", "a >= b; // a < 1"], results("a < b; // a < 1", "comparison"))

    def test_the_same_seed_draws_the_same(self):
        sources = {"a.cpp": "if (a < 1 && b) {", "b.cpp": "return c + 2;"}
        drawn = [list(mutate.draw(sources, seed)) for seed in (1, 1, 2)]
        self.assertEqual(drawn[0], drawn[1])
        self.assertNotEqual(drawn[0], drawn[2])
        self.assertEqual(sorted(drawn[0]), sorted(drawn[2]))
        self.assertEqual(len(set(drawn[0])), len(drawn[0]))

    def test_parts_share_out_what_a_seed_draws(self):
        sources = {"a.cpp": "if (a < 1 && b) {", "b.cpp": "return c + 2;"}
        drawn = list(mutate.draw(sources, 1))
        parts = [list(mutate.draw(sources, 1, mutate.part_of(f"{number}/3"))) for number in (1, 2, 3)]
        self.assertEqual([drawn[0::3], drawn[1::3], drawn[2::3]], parts)
        for text in ("", "1", "0/3", "4/3", "a/b"):
            with self.assertRaises(argparse.ArgumentTypeError, msg=text):
                mutate.part_of(text)

    def test_what_a_failed_stage_leaves_running_is_ended(self):
        with tempfile.TemporaryDirectory() as folder:
            tree = mutate.Tree(Path(folder), 1)
            tree.build.mkdir()
            for status, expected in ((0, None), (1, "stage: status 1")):
                command = f"sleep 60 > /dev/null 2>&1 & echo $! > process; exit {status}"
                stage = mutate.Stage("stage", [], ["sh", "-c", command], False)
                tree.limits = {"stage": 30}
                self.assertEqual(expected, tree.failure(stage))
                process = (tree.build / "process").read_text().strip()
                self.assertTrue(has_ended(process), process)

    def test_a_stage_has_a_time_limit(self):
        with tempfile.TemporaryDirectory() as folder:
            tree = mutate.Tree(Path(folder), 1)
            tree.build.mkdir()
            tree.limits = {"stage": 0.1}
            self.assertEqual("stage: time limit",
                             tree.failure(mutate.Stage("stage", [], ["sh", "-c", "sleep 60; true"], False)))


if __name__ == "__main__":
    unittest.main()
