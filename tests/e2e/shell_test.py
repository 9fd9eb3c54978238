"""velarc-cli as somebody meets it who has just installed it."""

import json
import os
import shlex
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

from desktop import BIN, PREFIX, DesktopTest, environment, run, start, wait_until

JOKE = "Tell Me a Joke"
PLAIN = "Focus Sprint Planner"  # its offline answer holds the whole input


def shell(script, **options):
    """Status, standard output and standard error of a script of bash; velarc-cli is on its PATH."""
    env = options.pop("env", environment())
    env["PATH"] = f"{BIN}:{os.environ['PATH']}"
    ended = subprocess.run(["bash", "-c", script], capture_output=True, timeout=60, env=env,
                           **options)
    return ended.returncode, ended.stdout.decode(), ended.stderr.decode()


class Shell(DesktopTest):
    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory(dir="/tmp")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def test_pipe_and_here_document_are_the_input(self):
        for script in [f"echo 'of the sea' | velarc-cli run '{PLAIN}'",
                       f"velarc-cli run '{PLAIN}' <<END\nof the sea\nEND",
                       f"velarc-cli run '{PLAIN}' - <<<'of the sea'"]:
            status, out, err = shell(script)
            self.assertEqual((status, err), (0, ""), script)
            self.assertIn("of the sea", out)
            self.assertTrue(out.endswith("\n") and not out.endswith("\n\n"))

    def test_failure_is_seen_by_the_shell(self):
        status, out, err = shell("velarc-cli run Nope x || exit 7")
        self.assertEqual((status, out), (7, ""))
        self.assertIn("No action is called", err)
        self.assertEqual(shell(f"velarc-cli run '{JOKE}' ' ' && echo yes")[:2],
                         (3, "Input is empty.\n"))

    def test_list_is_made_for_cut_and_grep(self):
        status, out, _ = shell("velarc-cli actions | grep -F 'Joke' | cut -f 1")
        self.assertEqual((status, out.strip()), (0, self.action(JOKE)))

    def test_json_holds_the_result(self):
        status, out, _ = run("velarc-cli", "run", JOKE, "cats", "--json")
        answer = json.loads(out)
        self.assertEqual(status, 0)
        self.assertEqual(list(answer), ["dialog", "provider", "model", "payload"])
        self.assertEqual(answer["payload"], {"type": "text", "text": answer["dialog"]})
        self.assertEqual(answer["provider"], "localFallback")

    def test_twenty_megabytes_go_through(self):
        text = b"word " * 4_000_000
        (self.folder / "input").write_bytes(text)
        status, out, err = shell(f"velarc-cli run '{PLAIN}' < input | wc -c", cwd=self.folder)
        self.assertEqual((status, err), (0, ""))
        self.assertGreater(int(out), len(text) - 10)

    def test_closed_standard_output_ends_it_without_a_word(self):
        script = f"velarc-cli run '{PLAIN}' < input | head -c 1 > /dev/null; echo ${{PIPESTATUS[0]}}"
        (self.folder / "input").write_bytes(b"word " * 400_000)
        self.assertEqual(shell(script, cwd=self.folder), (0, f"{128 + signal.SIGPIPE}\n", ""))

    def test_closed_standard_output_that_nobody_is_told_of_is_a_failure(self):
        (self.folder / "input").write_bytes(b"word " * 400_000)
        script = (f"trap '' PIPE; velarc-cli run '{PLAIN}' < input | head -c 1 > /dev/null; "
                  "echo ${PIPESTATUS[0]}")
        status, out, err = shell(script, cwd=self.folder)
        self.assertEqual((status, out), (0, "1\n"))
        self.assertEqual(err, "velarc-cli: the answer could not be written.\n")

    def test_streams_that_are_closed_from_the_start_do_no_harm(self):
        self.assertEqual(shell(f"velarc-cli run '{JOKE}' <&-")[:2], (3, "Input is empty.\n"))
        self.assertEqual(shell(f"velarc-cli run '{JOKE}' cats >&-")[0], 1)
        status, out, _ = shell(f"velarc-cli run '{JOKE}' cats 2>&-")
        self.assertEqual(status, 0)
        self.assertIn("cats", out)
        self.assertEqual(len(json.loads(run("velarc-cli", "actions", "--json")[1])),
                         len(self.actions))

    def test_file_gets_the_result_to_the_byte(self):
        file = self.folder / "a b"
        status, out, _ = shell(f"velarc-cli run '{JOKE}' cats -o {shlex.quote(str(file))}")
        self.assertEqual(status, 0)
        self.assertEqual(file.read_text() + "\n", out)
        self.assertEqual(shell(f"velarc-cli run '{JOKE}' cats -o - > out", cwd=self.folder)[0], 0)
        self.assertEqual((self.folder / "out").read_text(), file.read_text())
        self.assertEqual(
            shell(f"velarc-cli run '{JOKE}' cats -o /dev/stdout > out", cwd=self.folder)[0], 0)
        self.assertEqual((self.folder / "out").read_text(), file.read_text())

    def test_interruption_amid_the_input_leaves_nothing_half_written(self):
        file = self.folder / "result"
        file.write_text("before")
        with start("velarc-cli", "run", PLAIN, "--output", file, stdin=subprocess.PIPE,
                   stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            process.stdin.write(b"half of it")
            process.stdin.flush()
            self.wait_for_handler(process, signal.SIGINT)
            process.send_signal(signal.SIGINT)
            out, err = process.communicate(timeout=20)
        self.assertEqual((process.returncode, out, err), (130, b"", b""))
        self.assertEqual([path.name for path in self.folder.iterdir()], ["result"])
        self.assertEqual(file.read_text(), "before")

    @staticmethod
    def wait_for_handler(process, number):
        def is_caught():
            lines = Path(f"/proc/{process.pid}/status").read_text(encoding="ascii").splitlines()
            caught = next(line for line in lines if line.startswith("SigCgt:")).split()[1]
            return int(caught, 16) >> (number - 1) & 1
        wait_until(is_caught, "the handler of the signal")

    def test_end_of_the_terminal_ends_it_too(self):
        with start("velarc-cli", "run", PLAIN, stdin=subprocess.PIPE) as process:
            self.wait_for_handler(process, signal.SIGHUP)
            process.send_signal(signal.SIGHUP)
            self.assertEqual(process.wait(20), 128 + signal.SIGHUP)
            process.stdin.close()

    def test_without_a_home_it_works(self):
        for home in [None, "/nowhere", "/dev/null/nowhere"]:
            bare = environment(HOME=home, XDG_DATA_HOME=None, XDG_CONFIG_HOME=None,
                               XDG_STATE_HOME=None, XDG_CACHE_HOME=None, XDG_RUNTIME_DIR=None,
                               DBUS_SESSION_BUS_ADDRESS=None)
            status, out, err = run("velarc-cli", "run", JOKE, "cats", env=bare)
            self.assertEqual((status, err), (0, ""))
            self.assertIn("cats", out)

    def test_home_that_cannot_be_written_is_read(self):
        home = self.folder / "home"
        other = environment(HOME=str(home), XDG_DATA_HOME=str(home), XDG_CONFIG_HOME=str(home))
        home.mkdir()
        before = run("velarc-cli", "actions", env=other)
        for path in [home, home / "velarc", *home.joinpath("velarc").iterdir()]:
            path.chmod(path.stat().st_mode & ~0o222)
        try:
            self.assertEqual(run("velarc-cli", "actions", env=other), before)
            self.assertEqual(run("velarc-cli", "run", JOKE, "cats", env=other)[0], 0)
        finally:
            for path in [home, home / "velarc"]:
                path.chmod(0o700)

    def test_every_locale_gives_the_same_bytes(self):
        outputs = {run("velarc-cli", "run", PLAIN, "\u00fcber \U0001f600", env=environment(
            LC_ALL=locale, LANG=locale)) for locale in ["C", "POSIX", "C.UTF-8", "de_DE.UTF-8",
                                                        "tr_TR.UTF-8", "ja_JP.eucJP", "nonsense"]}
        self.assertEqual(len(outputs), 1, outputs)
        status, out, err = outputs.pop()
        self.assertEqual((status, err), (0, ""))
        self.assertIn("\u00fcber \U0001f600", out)

    def test_place_that_needs_no_path(self):
        link = self.folder / "v"
        link.symlink_to(BIN / "velarc-cli")
        self.assertEqual(subprocess.run([link, "--version"], check=True, stdout=subprocess.PIPE)
                         .stdout.split()[0], b"velarc-cli")

    def test_no_clipboard_is_told_and_loses_nothing(self):
        self.store_copying_action()
        status, out, err = run("velarc-cli", "run", "Copying", "cats")
        self.assertEqual(status, 0)
        self.assertIn("cats", out)
        self.assertEqual(err, "velarc-cli: There is no clipboard to copy the result to.\n")

    def store_copying_action(self):
        key = "velarc.actions.v1"
        library = json.loads(self.store.read(key))
        copying = {**library[0], "name": "Copying", "id": "11111111-2222-4333-8444-555555555555",
                   "provider": "localFallback", "skills": [], "outputFormat": "text",
                   "actionDestination": {"type": "output", "output": "copyToClipboard"},
                   "systemPrompt": "{User_Input} {Clipboard}"}
        self.store.write(key, [*library, copying])


class Completion(DesktopTest):
    def complete(self, *words):
        script = f"""
            source {PREFIX}/share/bash-completion/completions/velarc-cli
            COMP_WORDS=({' '.join(shlex.quote(word) for word in words)})
            COMP_CWORD=$((${{#COMP_WORDS[@]}} - 1))
            "$(complete -p "${{COMP_WORDS[0]}}" | sed 's/.* -F \\([^ ]*\\) .*/\\1/')"
            printf '%s\\n' "${{COMPREPLY[@]}}"
        """
        status, out, err = shell(script)
        self.assertEqual((status, err), (0, ""))
        return out.splitlines()

    def test_bash_completes_verbs_options_and_titles(self):
        self.assertEqual(self.complete("velarc-cli", "a"), ["actions"])
        self.assertEqual(self.complete("velarc-cli", "run", "--o"), ["--output"])
        self.assertEqual(self.complete("velarc-cli", "run", "tell"), ["Tell\\ Me\\ a\\ Joke"])
        self.assertEqual(self.complete("velarc-cli", "run", "Tell\\ Me"),
                         ["Tell\\ Me\\ a\\ Joke"])
        self.assertEqual(self.complete("velarc-cli", "run", "'Tell M"), [JOKE])
        self.assertEqual(self.complete("velarc-share", "--action", "tell"),
                         ["Tell\\ Me\\ a\\ Joke"])
        self.assertEqual(len(self.complete("velarc-cli", "run", "")), len(self.actions))

    def test_fish_completes_verbs_and_titles(self):
        def complete(line):
            script = f"""
                source {PREFIX}/share/fish/vendor_completions.d/velarc-cli.fish
                source {PREFIX}/share/fish/vendor_completions.d/velarc-share.fish
                complete -C {shlex.quote(line)}
            """
            env = environment(PATH=f"{BIN}:{os.environ['PATH']}")
            ended = subprocess.run(["fish", "--no-config", "-c", script], check=True, env=env,
                                   capture_output=True, text=True, timeout=60)
            return [option.split("\t")[0] for option in ended.stdout.splitlines()]
        self.assertEqual(complete("velarc-cli a"), ["actions"])
        self.assertEqual(complete("velarc-cli run Tell"), [JOKE])
        self.assertEqual(complete("velarc-share --action Tell"), [JOKE])

    def test_zsh_reads_the_completion(self):
        file = PREFIX / "share/zsh/site-functions/_velarc"
        self.assertEqual(file.read_text().splitlines()[0],
                         "#compdef velarc velarc-cli velarc-share")
        subprocess.run(["zsh", "-n", file], check=True)


class Installed(unittest.TestCase):
    def test_desktop_files_are_valid(self):
        for file in ["applications/com.tolmar.velarc.desktop",
                     "Thunar/sendto/com.tolmar.velarc.desktop"]:
            ended = subprocess.run(["desktop-file-validate", PREFIX / "share" / file], check=False,
                                   capture_output=True, text=True)
            self.assertEqual((ended.returncode, ended.stdout), (0, ""))

    def test_places_of_the_programs_are_those_of_the_prefix(self):
        for file in ["applications/com.tolmar.velarc.desktop",
                     "dbus-1/services/com.tolmar.velarc.service",
                     "dbus-1/services/com.tolmar.velarc.Actions.service"]:
            text = (PREFIX / "share" / file).read_text()
            self.assertNotIn("@", text)
            program = next(line for line in text.splitlines() if line.startswith("Exec="))
            self.assertTrue(os.access(shlex.split(program[5:])[0], os.X_OK), program)

    def test_manual_pages_have_no_mistakes(self):
        for page in sorted((PREFIX / "share/man/man1").iterdir()):
            ended = subprocess.run(["man", "--warnings", "-l", page], check=True, text=True,
                                   capture_output=True, env=environment(LC_ALL="C.UTF-8"))
            self.assertEqual(ended.stderr, "", page)
            self.assertIn("SYNOPSIS", ended.stdout)


if __name__ == "__main__":
    unittest.main()
