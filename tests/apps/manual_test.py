"""Reads the programs' pages as man does, and completes their words as bash does: manual_test.py BUILD"""

import os
import pty
import re
import select
import subprocess
import sys
import tempfile
import unittest

BUILD = os.path.abspath(sys.argv.pop(1))
MANUAL = os.path.join(BUILD, "manual")
PROGRAMS = ("qvdraw", "qvview", "shpc")


def output(*words, **options):
    return subprocess.run(words, capture_output=True, text=True, timeout=60, check=True, **options).stdout


def help_of(*words):
    return output(os.path.join(BUILD, words[0]), *words[1:], "--help")


def options_in(text):
    return set(re.findall(r"(?<![\w-])--?[a-z][\w-]*", text))


class Pages(unittest.TestCase):
    def test_they_are_well_formed_and_are_found_by_their_titles(self):
        for program in PROGRAMS:
            page = os.path.join(MANUAL, program + ".1")
            told = subprocess.run(["mandoc", "-Tlint", "-Wstyle", page], capture_output=True, text=True, timeout=60)
            self.assertEqual((told.returncode, told.stdout), (0, ""))
            self.assertRegex(output("mandoc", "-Tascii", page).replace("\b", ""), r"N.?A.?M.?E")
            with open(page, encoding="ascii") as file:
                self.assertRegex(file.read(), rf"(?m)^\.SH NAME\n{program} \\- \w+")

    def test_they_tell_every_command_and_option_that_the_programs_tell(self):
        commands = re.findall(r"(?m)^  (\w+) ", help_of("qvdraw").split("Subcommands:")[1])
        self.assertGreater(len(commands), 10)
        page = re.sub(".\b", "", output("mandoc", "-Tascii", os.path.join(MANUAL, "qvdraw.1")))
        for command in commands:
            part = re.search(rf"(?ms)^   {command} .*?(?=^   \w|^[A-Z])", page)[0]
            self.assertEqual(options_in(help_of("qvdraw", command)) - {"-h", "--help"}, options_in(part), command)
        for program in ("qvview", "shpc"):
            page = re.sub(".\b", "", output("mandoc", "-Tascii", os.path.join(MANUAL, program + ".1")))
            self.assertLessEqual(options_in(help_of(program)), options_in(page))


class Completion(unittest.TestCase):
    """A user at a terminal types, and presses the tabulator."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        for name in ("plan one.dxf", "plot.DXF", "notes.txt", "lib.slb", "sub/x"):
            path = os.path.join(cls.folder.name, name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            open(path, "w").close()
        child, cls.terminal = pty.fork()
        if child == 0:
            os.chdir(cls.folder.name)
            os.execve("/bin/bash", ["bash", "--norc", "--noprofile"],
                      {"PS1": "ready>", "TERM": "dumb", "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "INPUTRC": "/dev/null"})
        cls.child = child
        # Control-T tells the line as it stands, and empties it.
        settings = "bind 'set bell-style none'; bind 'set show-all-if-ambiguous on'; " \
                   "bind -x '\"\\C-t\": printf \"<%s>\\n\" \"$READLINE_LINE\"; READLINE_LINE=';"
        os.write(cls.terminal, f"{settings} cd {MANUAL}; . ./qvdraw; . ./qvview; . ./shpc; cd -; echo set''tled\n".encode())
        cls.read_until(cls, "settled\r\n")

    @classmethod
    def tearDownClass(cls):
        os.close(cls.terminal)
        os.waitpid(cls.child, 0)
        cls.folder.cleanup()

    def read_until(self, end):
        text = ""
        while not re.search(end, text):
            assert select.select([self.terminal], [], [], 20)[0], f"bash says no more than {text!r}"
            text += os.read(self.terminal, 65536).decode()
        return text

    def typed(self, line):
        """The line after the tabulator, or the words that are offered."""
        os.write(self.terminal, line.encode() + b"\t\x14")
        text = self.read_until(r"<.*>\r\n")
        offered = text.split("\n")[1:-2]
        return sorted(offered[0].split()) if offered else re.search("<(.*)>", text)[1]

    def test_words_are_completed(self):
        for line, answer in (
            ("qvdraw conv", "qvdraw convert "),
            ("qvdraw sli", ["slide", "slides"]),
            ("qvdraw render --wi", "qvdraw render --window "),
            ("qvdraw render --background ", ["black", "white"]),
            ("qvdraw plot --co", "qvdraw plot --color "),
            ("qvdraw --fo", "qvdraw --font "),
            ("qvdraw render --fo", "qvdraw render --font "),
            ("qvdraw --font a.shx rend", "qvdraw --font a.shx render "),
            ("qvview --lan", "qvview --language "),
            ("shpc --b", "shpc --bigfont "),
        ):
            self.assertEqual(self.typed(line), answer, line)

    def test_files_are_those_that_the_command_reads(self):
        for line, answer in (
            ("qvdraw info plan", "qvdraw info plan\\ one.dxf "),
            ("qvdraw info plo", "qvdraw info plot.DXF "),
            ("qvdraw info no", "qvdraw info no"),
            ("qvdraw info su", "qvdraw info sub/"),
            ("qvdraw slides ./l", "qvdraw slides ./lib.slb "),
            ("qvdraw demo --out su", "qvdraw demo --out sub/"),
            ("qvdraw demo --out no", "qvdraw demo --out no"),
            ("qvdraw render --view 30,20 plot.DXF -o no", "qvdraw render --view 30,20 plot.DXF -o notes.txt "),
            ("qvview plot.DXF plan", "qvview plot.DXF plan\\ one.dxf "),
        ):
            self.assertEqual(self.typed(line), answer, line)


if __name__ == "__main__":
    unittest.main()
