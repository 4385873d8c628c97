"""The programs under examples/ and the steps of docs/first-drawing.md: built together on an installed library, and run.

examples.py SOURCE PREFIX FOLDER leaves in FOLDER what they write.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys

# A page's step is the program before it with a block put in before a line.
BLOCK = re.compile(r"<!-- (?:first|before: ([^\n]*)) -->\n\n```cpp\n(.*?)```", re.S)

# What each program is run with, in its own folder; what it says; the files that it writes, each with its least size in bytes;
# words that it rejects, and what it says of them.
HOUSE = "../drawings/house.dxf"
EXAMPLES = {
    "first_drawing": ([""], ["beam.pdf: A3, 1:25"], {"beam.dxf": 45000, "beam.png": 25000, "beam.pdf": 20000}, None, ""),
    "beam_schedule": (["beams.txt"], ["5 of 5 beams are safe"], {"beams.dxf": 50000, "beams.png": 30000, "beams.pdf": 25000},
                      "bad.txt", '"KL-1 300 700" is no beam'),
    "storey_plan": (["--sample storey.dat", "storey.dat"], ["20 columns, 17 beams"],
                    {"storey.dxf": 45000, "storey.png": 30000, "storey.pdf": 20000}, "bad.txt", "is no whole database"),
    # The length of the walls' outlines is known: the walls' areas, within and without, are those of the rooms and the house.
    "measure_layers": ([HOUSE], [r"A-WALL +7 +113\.24 +13\.19\b", r"A-WALL-FILL +\d+ +0\.00 +13\.19\b", r"A-WINDOW +24 +38\.40\b"],
                       {"layers.dxf": 50000, "layers.png": 15000}, "bad.txt", "bad.txt: "),
    "over_plan": ([HOUSE], ["lengths times 1000, 1 HATCH, 20 LWPOLYLINE"],
                  {"framing.dxf": 50000, "framing.png": 30000, "framing.pdf": 20000}, "missing.dxf", "missing.dxf: "),
    "pick_window": ([f"{HOUSE} 0 5000 5000 9200"],
                    [r"\(-2530, -3220\) to \(12120, 9120\)", "6 inside: 2 TEXT 1 SOLID 3 INSERT",
                     "12 crossing: 2 TEXT 4 POLYLINE 5 SOLID 1 INSERT"], {"picked.png": 10000}, f"{HOUSE} 0 0 1 x", "x: is no number"),
    # 0.00406 q a^4 / D for a square plate.
    "slab_field": (["6 6 120 10"], [r"middle: 11\.70\d mm"], {"slab.field": 60000, "slab.dxf": 50000, "slab.png": 30000},
                   "6 6 0 10", "0: is no such size"),
    "slide_icons": (["details.slb"], ["12 slides"], {"icons.png": 3000}, "bad.txt", "bad.txt: is not there, or no slide library"),
    "embedded_view": (["../beam_schedule/beams.dxf window.png"], [], {"window.png": 15000}, "missing.dxf", "missing.dxf: "),
    "embedded_view32": (["../beam_schedule/beams.dxf window.png"], [], {"window.png": 8000}, "missing.dxf", "missing.dxf: "),
}

CMAKE = """cmake_minimum_required(VERSION 3.22)
project(all CXX)
add_subdirectory(examples)
"""
CMAKE_OF_STEPS = """find_package(qvtools REQUIRED COMPONENTS plot)
add_executable(steps steps.cpp)
target_link_libraries(steps qvtools::plot)
target_compile_definitions(steps PRIVATE FONTS="${qvtools_FONTS_DIR}/")
target_precompile_headers(steps REUSE_FROM first_drawing)
"""


def lines_of(program):
    return [line for line in program.splitlines() if line]


def steps_of(page):
    """The programs of a page, as lists of lines that are not empty."""
    programs = []
    for before, code in BLOCK.findall(page):
        lines = list(programs[-1]) if programs else []
        places = [i for i, line in enumerate(lines) if line.strip() == before] if programs else [0]
        assert len(places) == 1, f'"{before}" is no line of the program before'
        lines[places[0]:places[0]] = lines_of(code)
        programs.append(lines)
    return programs


def check_pages(source):
    """Both pages make the example, step by step; returns the steps."""
    folder = source / "examples/first_drawing"
    pages = [(source / "docs" / name).read_text(encoding="utf-8") for name in ("first-drawing.md", "first-drawing.zh.md")]
    steps = [steps_of(page) for page in pages]
    assert len(steps[0]) == 10 and steps[0] == steps[1], "the two pages are not the same program"
    assert steps[0][-1] == lines_of((folder / "main.cpp").read_text(encoding="utf-8")), "the last step is not the example"
    for page in pages:
        assert "```cmake\n" + (folder / "CMakeLists.txt").read_text() + "```" in page, "a page has another CMakeLists.txt"
    return steps[0]


def source_of_steps(steps):
    """One program that runs the step that it is told."""
    start = steps[0].index("int main() {")
    functions = ["\n".join(step[start:]).replace("int main()", f"int step{i}()") for i, step in enumerate(steps)]
    calls = ", ".join(f"step{i}" for i in range(len(steps)))
    return "\n".join([*steps[0][:start], *functions, f"int (*const kSteps[])() = {{{calls}}};",
                      "int main(int, char** words) { return kSteps[words[1][0] - '0'](); }", ""])


class Examples:
    """The examples in a folder of their own, where they are built, and the steps, if not for another system: its programs
    are run by the emulator."""

    def __init__(self, source, prefix, folder, settings=(), emulator=None):
        self.prefix, self.folder, self.emulator = prefix, folder / "examples", emulator
        self.steps = check_pages(source)
        shutil.copytree(source / "examples", self.folder)
        (folder / "steps.cpp").write_text(source_of_steps(self.steps), encoding="utf-8")
        (folder / "CMakeLists.txt").write_text(CMAKE if emulator else CMAKE + CMAKE_OF_STEPS)
        self.build = folder / "build"
        quiet = {"check": True, "stdout": subprocess.DEVNULL, "timeout": 1800}
        subprocess.run(["cmake", "-G", "Ninja", "-S", folder, "-B", self.build, f"-DCMAKE_PREFIX_PATH={prefix}", *settings], **quiet)
        subprocess.run(["cmake", "--build", self.build], **quiet)

    def command(self, program):
        """The words that run a built program; another system's is run beside the DLLs."""
        if not self.emulator:
            return [program]
        return [self.emulator, shutil.copy(program.with_suffix(".exe"), self.prefix / "bin")]

    def run(self, command, words, folder):
        environment = {**os.environ, "QT_QPA_PLATFORM": "offscreen"}
        return subprocess.run([*command, *words.split()], cwd=folder, capture_output=True, text=True, errors="replace", timeout=120,
                              env=environment)

    def check(self, name):
        calls, says, files, bad, rejects = EXAMPLES[name]
        folder = self.folder / name
        command = self.command(self.build / "examples" / name / name)
        for words in calls:
            ran = self.run(command, words, folder)
            assert ran.returncode == 0, (name, words, ran.stderr)
        for text in says:
            assert re.search(text, ran.stdout), (name, text, ran.stdout)
        for file, least in files.items():
            assert (folder / file).stat().st_size >= least, (name, file, (folder / file).stat().st_size)
        if bad:
            (folder / "bad.txt").write_text("KL-1 300 700\n")
            told = self.run(command, bad, folder)
            assert told.returncode == 1 and rejects in told.stderr, (name, told.returncode, told.stderr)

    def check_steps(self):
        """Each step draws more than the one before."""
        command, drawn = [self.build / "steps"], 0
        for i, step in enumerate(self.steps):
            folder = self.build / f"step-{i + 1}"
            folder.mkdir()
            ran = self.run(command, str(i), folder)
            assert ran.returncode == 0, (step, ran.stderr)
            size = (folder / "beam.dxf").stat().st_size
            assert size > drawn or i in (1, 9), f"step {i + 1} adds nothing"
            drawn = size
            assert (folder / "beam.png").exists() == (i > 0) and (folder / "beam.pdf").exists() == (i > 8)

    def check_all(self):
        built = [name for name in EXAMPLES if (self.build / "examples" / name).is_dir()]
        for name in built:
            self.check(name)
        if not self.emulator:
            self.check_steps()
        return built


if __name__ == "__main__":
    print(*Examples(*map(lambda word: pathlib.Path(word).resolve(), sys.argv[1:4])).check_all())
