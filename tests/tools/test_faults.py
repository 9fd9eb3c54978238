import subprocess
import sys

from tree import ROOT, TreeTest


class Faults(TreeTest):
    def run_check(self):
        tool = ROOT / "tools" / "check_sizes.py"
        return subprocess.run(
            [sys.executable, tool, self.root], capture_output=True, text=True, check=False
        )

    def test_a_tree_without_faults_ends_with_0_and_says_nothing(self):
        self.write("src/base/text.h", "\n")
        done = self.run_check()
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))

    def test_a_fault_is_printed_and_ends_with_1(self):
        self.write("src/base/text.h", "\n" * 151)
        done = self.run_check()
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stdout, "src/base/text.h: 151 lines, 150 at most\n")
