import os
import shutil
import subprocess

from tree import ROOT, TreeTest

REAL_TOOLS = "bash awk cat comm dirname env git mktemp nproc readlink rm sed sort touch xargs".split()

FAKES = {
    "id": 'echo "${FAKE_UID:-0}"',
    "dpkg-query": 'shift 3\nfor p; do [[ " $FAKE_MISSING " == *" $p "* ]] || echo "installed $p"; done',
    "apt-get": 'echo "apt-get $*" >>"$FAKE_LOG"',
    "cmake": 'echo "cmake $*" >>"$FAKE_LOG"; mkdir -p "$2/build/$4"; touch "$2/build/$4/build.ninja"',
    "ninja": """
        [[ " $* " != *" -n "* ]] || { echo "${FAKE_WORK:-ninja: no work to do.}"; exit; }
        echo "ninja $*" >>"$FAKE_LOG"
        echo "main.cpp: it does not compile"
        exit "${FAKE_BUILD_STATUS:-0}" """,
    "ctest": 'echo "ctest $*" >>"$FAKE_LOG"; exit "${FAKE_TEST_STATUS:-0}"',
    "clang-format-14": 'echo "clang-format-14 $*" >>"$FAKE_LOG"',
}
SUDO = 'echo "sudo $*" >>"$FAKE_LOG"; "$@"'
CLI = 'echo "in $PWD:"; printf "<%s>" "$@"; cat; exit 3'


class Dev(TreeTest):
    """The script in a tree of its own, with fake tools: they write down how they were called."""

    def setUp(self):
        super().setUp()
        self.tools = self.root / "fake tools"
        self.tools.mkdir()
        for name in [*REAL_TOOLS, "mkdir"]:
            (self.tools / name).symlink_to(shutil.which(name))
        for name, text in FAKES.items():
            self.program(self.tools / name, text)
        self.project = self.root / "a clone"
        (self.project / "tools").mkdir(parents=True)
        shutil.copy(ROOT / "dev", self.project / "dev")
        self.write(
            "a clone/tools/debian_packages", "build g++ cmake # why\n\ntest gtest\nformat clang\ncheck tidy\n"
        )
        self.write("a clone/CMakePresets.json")
        self.cli = self.project / "build/dev/bin/velarc-cli"
        self.cli.parent.mkdir(parents=True)
        self.program(self.cli, CLI)
        self.log = self.write("log")

    def program(self, file, text):
        file.write_text(f"#!{shutil.which('bash')}\n{text}\n", encoding="utf-8")
        file.chmod(0o755)

    def dev(self, *arguments, script=None, stdin="", **environment):
        return subprocess.run(
            [script or self.project / "dev", *arguments],
            cwd=self.root,
            env={"PATH": str(self.tools), "FAKE_LOG": str(self.log), **environment},
            input=stdin,
            capture_output=True,
            text=True,
            check=False,
        )

    def calls(self):
        return self.log.read_text(encoding="utf-8").splitlines()

    def test_deps_are_silent_where_nothing_is_missing(self):
        done = self.dev("deps")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        self.assertEqual(self.calls(), [])

    def test_deps_install_only_what_is_missing(self):
        done = self.dev("deps", FAKE_MISSING="cmake tidy")
        self.assertEqual((done.returncode, done.stdout), (0, ""))
        self.assertEqual(
            self.calls(),
            [
                "apt-get -qq update",
                "apt-get -qq install --yes --no-install-recommends cmake tidy",
            ],
        )

    def test_deps_use_sudo_only_for_a_plain_user(self):
        self.program(self.tools / "sudo", SUDO)
        self.dev("deps", FAKE_MISSING="cmake")
        self.assertEqual([call for call in self.calls() if call.startswith("sudo")], [])
        self.dev("deps", FAKE_MISSING="cmake", FAKE_UID="1000")
        self.assertEqual(len([call for call in self.calls() if call.startswith("sudo")]), 2)

    def test_without_root_or_sudo_deps_say_what_is_missing(self):
        done = self.dev("deps", FAKE_MISSING="cmake tidy", FAKE_UID="1000")
        self.assertEqual(done.returncode, 1)
        self.assertIn("root or sudo: cmake tidy", done.stderr)
        self.assertEqual(self.calls(), [])

    def test_a_command_installs_only_its_own_groups(self):
        self.dev("test", FAKE_MISSING="gtest tidy")
        self.assertIn("apt-get -qq install --yes --no-install-recommends gtest", self.calls())

    def test_a_group_that_is_not_listed_is_refused(self):
        done = self.dev("deps", "tests")
        self.assertEqual(done.returncode, 1)
        self.assertIn("no group 'tests'", done.stderr)

    def test_build_configures_once_and_builds_only_what_is_to_do(self):
        self.dev("build")
        self.assertEqual(self.calls(), [f"cmake -S {self.project} --preset dev"])
        self.dev("build")
        self.assertEqual(len(self.calls()), 1)
        self.dev("build", FAKE_WORK="[1/1] main.o")
        self.assertEqual(self.calls()[1].split(" -C ")[0], "ninja --quiet")

    def test_changed_presets_configure_the_build_anew(self):
        self.dev("build")
        os.utime(self.project / "CMakePresets.json", (2**32, 2**32))
        self.dev("build")
        self.assertEqual(self.calls(), [f"cmake -S {self.project} --preset dev"] * 2)

    def fuzzer(self, name, status=0):
        target = self.project / "build/fuzz/bin" / f"velarc_fuzz_{name}"
        target.parent.mkdir(parents=True, exist_ok=True)
        self.program(target, f'echo "fuzz {name} $*" >>"$FAKE_LOG"; echo "the find"; exit {status}')

    def fuzzed(self):
        return [call for call in self.calls() if call.startswith("fuzz ")]

    def test_fuzzing_feeds_every_target_for_so_long(self):
        for name in ("letters", "numbers"):
            self.fuzzer(name)
        done = self.dev("check", "--fuzz", "7")
        self.assertEqual((done.returncode, done.stdout), (0, ""))
        self.assertIn(f"cmake -S {self.project} --preset fuzz", self.calls())
        self.assertEqual([call.split()[1:3] for call in self.fuzzed()],
                         [["letters", "-max_total_time=7"], ["numbers", "-max_total_time=7"]])
        self.assertTrue(self.fuzzed()[0].endswith(f"{self.project}/tests/fuzz/seeds/letters"))

    def test_a_find_of_the_fuzzer_is_shown_and_fails(self):
        self.fuzzer("letters", status=77)
        done = self.dev("check", "--fuzz")
        self.assertEqual(done.returncode, 1)
        self.assertIn("the find", done.stderr)
        self.assertIn("-max_total_time=60", self.fuzzed()[0])

    def test_fuzzing_for_no_time_or_without_targets_is_refused(self):
        for arguments in (["soon"], ["0"], ["5", "6"]):
            self.assertEqual(self.dev("check", "--fuzz", *arguments).returncode, 1)
        self.assertEqual(self.calls(), [])
        self.assertIn("no target", self.dev("check", "--fuzz", "5").stderr)

    def test_a_failed_build_shows_why_on_standard_error(self):
        done = self.dev("build", FAKE_WORK="[1/1] main.o", FAKE_BUILD_STATUS="1")
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertIn("main.cpp: it does not compile", done.stderr)
        self.assertIn("the build failed", done.stderr)

    def test_a_build_that_succeeds_keeps_what_it_printed_to_itself(self):
        done = self.dev("build", FAKE_WORK="[1/1] main.o")
        self.assertEqual((done.returncode, done.stdout), (0, ""))
        self.assertNotIn("does not compile", done.stderr)

    def test_cli_passes_arguments_standard_input_folder_and_status_on(self):
        done = self.dev("cli", "run", "A title", "--", "-x", stdin="typed in\n")
        self.assertEqual(done.stdout, f"in {self.root}:\n<run><A title><--><-x>typed in\n")
        self.assertEqual(done.returncode, 3)

    def test_cli_adds_nothing_to_standard_output_when_it_has_to_build(self):
        done = self.dev("cli", "actions", FAKE_WORK="[1/1] main.o")
        self.assertEqual(done.stdout, f"in {self.root}:\n<actions>")
        self.assertIn("Building build/dev", done.stderr)

    def test_the_script_works_through_a_link(self):
        link = self.root / "link to dev"
        link.symlink_to(self.project / "dev")
        self.dev("build", script=link)
        self.assertEqual(self.calls(), [f"cmake -S {self.project} --preset dev"])

    def test_tests_run_in_the_build_that_was_asked_for(self):
        self.dev("test", "-R", "actions")
        self.assertIn(f"--test-dir {self.project}/build/dev ", self.calls()[-1])
        self.assertTrue(self.calls()[-1].endswith(" -R actions"))
        self.dev("test", "--asan")
        self.assertIn(f"--test-dir {self.project}/build/asan ", self.calls()[-1])

    def test_tests_that_fail_fail_the_command(self):
        self.assertEqual(self.dev("test", FAKE_TEST_STATUS="8").returncode, 8)

    def test_run_opens_the_window_where_there_is_a_display(self):
        self.program(self.cli.with_name("velarc"), 'printf "window <%s>" "$@"')
        done = self.dev("run", "velarc://x", DISPLAY=":0")
        self.assertEqual(done.stdout, "window <velarc://x>")

    def test_run_shows_an_action_in_the_terminal_where_there_is_no_display(self):
        self.program(self.cli.with_name("velarc"), "echo window")
        self.program(self.cli, 'printf "<%s>" "$@"')
        done = self.dev("run")
        self.assertEqual(done.returncode, 0)
        self.assertIn("<run><One-Sentence Summary><", done.stdout)
        self.assertNotIn("window", done.stdout)

    def test_an_unknown_command_is_refused_with_the_list_of_those_there_are(self):
        done = self.dev("tset")
        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertIn("there is no command 'tset'", done.stderr)
        self.assertIn("  test [ARGUMENTS]", done.stderr)

    def test_no_colours_outside_a_terminal(self):
        done = self.dev("build", FAKE_WORK="[1/1] main.o")
        self.assertNotIn("\x1b", done.stdout + done.stderr)

    def test_format_takes_every_source_that_git_knows_or_would_take(self):
        subprocess.run(["git", "init", "-q", self.project], check=True, env=os.environ)
        self.write("a clone/src/base/text file.h")
        self.write("a clone/src/base/text.cpp")
        self.dev("format")
        self.assertEqual(
            self.calls(), ["clang-format-14 -i -- src/base/text file.h src/base/text.cpp"]
        )

    def package_maker(self, status=0):
        maker = self.write("a clone/tools/package.sh")
        self.program(maker, f'echo "{self.project}/build/package/velarc.deb"; exit {status}')

    def clean_root(self, status):
        first_hour = self.write("a clone/tests/e2e/clean_root.sh")
        self.program(first_hour, f'echo "clean_root $*" >>"$FAKE_LOG"; exit {status}')

    def test_package_says_where_it_is(self):
        self.package_maker()
        done = self.dev("package")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stdout, f"{self.project}/build/package/velarc.deb\n")

    def test_first_hour_is_that_of_the_package_in_a_clean_root(self):
        self.package_maker()
        self.clean_root(0)
        self.assertEqual(self.dev("e2e").returncode, 0)
        build = f"{self.project}/build"
        self.assertEqual(
            self.calls()[-1],
            f"clean_root {build}/e2e {build}/package/velarc.deb {build}/dev/bin/velarc_scripted_https",
        )

    def test_first_hour_without_a_clean_root_is_that_of_a_prefix(self):
        self.package_maker()
        self.clean_root(77)
        self.assertEqual(self.dev("e2e").returncode, 0)
        self.assertTrue(self.calls()[-1].startswith("ctest "))
        self.assertIn("^e2e_first_hour$", self.calls()[-1])

    def test_first_hour_that_fails_is_no_reason_to_try_another(self):
        self.package_maker()
        self.clean_root(1)
        self.assertEqual(self.dev("e2e").returncode, 1)
        self.assertTrue(self.calls()[-1].startswith("clean_root "))

    def test_first_hour_needs_its_package(self):
        self.package_maker(status=1)
        self.clean_root(0)
        self.assertEqual(self.dev("e2e").returncode, 1)
        self.assertEqual([call for call in self.calls() if "clean_root" in call], [])
