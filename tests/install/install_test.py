"""Installs the library and builds on it: README.md's example, found by CMake and by pkg-config, and all of examples/.

install_test.py SOURCE BUILD [SYSTEM COMPILER EMULATOR]: for another system, programs are built by its compiler and run by
the emulator, beside the installed DLLs.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

from examples import Examples

source, build = sys.argv[1:3]
system, compiler, emulator = sys.argv[3:] or (None, None, None)
cross = [f"-DCMAKE_SYSTEM_NAME={system}", f"-DCMAKE_CXX_COMPILER={compiler}", "-DCMAKE_FIND_ROOT_PATH=/usr/x86_64-w64-mingw32",
         "-DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH"] if system else []

# A program's own file of a name that the library has too.
HOST_HEADER = "#pragma once\nconst int kOwn = 0;\n"
CMAKE = """cmake_minimum_required(VERSION 3.22)
project(example CXX)
find_package(qvtools REQUIRED {components})
if(NOT EXISTS ${{qvtools_FONTS_DIR}}/txt.shx)
  message(FATAL_ERROR "no font in ${{qvtools_FONTS_DIR}}")
endif()
add_executable(example main.cpp)
target_link_libraries(example {targets})
"""
TREE = """cmake_minimum_required(VERSION 3.22)
project(example CXX)
add_custom_target(fonts ALL)
{how}
if(NOT qvtools_FONTS_DIR OR NOT TARGET qvtools::viewer)
  message(FATAL_ERROR "the tree tells not what an installed library tells")
endif()
add_executable(example main.cpp)
target_link_libraries(example qvtools::qvtools)
"""


def run(*words, **options):
    subprocess.run(words, check=True, stdout=subprocess.DEVNULL, timeout=1800, **options)


def output(*words, **options):
    return subprocess.run(words, check=True, capture_output=True, text=True, timeout=60, **options).stdout


def example_in(folder, code, components="", targets="qvtools::qvtools"):
    (folder / "platform").mkdir(parents=True)
    (folder / "platform/host.h").write_text(HOST_HEADER)
    (folder / "main.cpp").write_text('#include "platform/host.h"\n' + code)
    (folder / "CMakeLists.txt").write_text(CMAKE.format(components=components, targets=targets))
    return folder


def build_example(folder, prefix, *settings):
    run("cmake", "-G", "Ninja", "-S", folder, "-B", folder / "build", f"-DCMAKE_PREFIX_PATH={prefix}", *cross, *settings)
    run("cmake", "--build", folder / "build")


def check_program(prefix, folder):
    """Runs the example where its font is, on Windows from beside the DLLs, and sees that it has drawn."""
    place = prefix / "share/qvtools"
    if system:
        run(emulator, shutil.copy(folder / "build/example.exe", prefix / "bin"), cwd=place)
    else:
        run(folder / "build/example", cwd=place)
    assert (place / "beam.dxf").stat().st_size > 1000


def check_pkg_config(prefix, folder):
    """The prefix is where the files lie, wherever that is."""
    moved = prefix.rename(prefix.with_name("moved"))
    libraries = next(moved.rglob("qvtools.pc")).parent
    environment = {**os.environ, "PKG_CONFIG_PATH": str(libraries)}
    for package in ("qvtools", "qvtools-plot", "qvtools-qt"):
        if (libraries / f"{package}.pc").exists():
            flags = output("pkg-config", "--cflags", "--libs", package, env=environment).split()
            assert f"-L{libraries.parent}" in [str(pathlib.Path(flag[:2] + os.path.normpath(flag[2:]))) for flag in flags]
    if (moved / "bin/qvdraw").exists():
        version = output("pkg-config", "--modversion", "qvtools", env=environment)
        assert output(moved / "bin/qvdraw", "--version") == "qvdraw " + version
    fonts = output("pkg-config", "--variable=fontsdir", "qvtools", env=environment).strip()
    assert os.path.exists(fonts + "/txt.shx"), fonts
    flags = output("pkg-config", "--cflags", "--libs", "qvtools", env=environment).split()
    run("c++", "-std=c++20", folder / "main.cpp", "-o", folder / "by-pkg-config", *flags)
    older = subprocess.run(["c++", "-std=c++17", "-fsyntax-only", folder / "main.cpp", *flags], capture_output=True, text=True)
    first = re.search(r"error: (.*)", older.stderr)
    assert first and "qvtools needs C++20" in first[1], older.stderr[:500]


def program_with_tree(folder, code, how):
    """A program that has the library's tree in its own, and targets of its own that are called as ours could be."""
    example_in(folder, code)
    (folder / "CMakeLists.txt").write_text(TREE.format(how=how.format(source=source)))
    return folder


def check_tree(folder, code):
    """A program that has the whole tree in its own builds of it what it needs, and nothing else."""
    program = program_with_tree(folder, code, "add_subdirectory({source} qvtools EXCLUDE_FROM_ALL)")
    run("cmake", "-G", "Ninja", "-S", program, "-B", folder / "build")
    known = output("ninja", "-C", folder / "build", "-t", "targets", "all")
    planned = output("ninja", "-C", folder / "build", "-n", "-v")
    assert "libqvtools.so:" in known and "qvtools_fonts:" in known
    assert not re.search(r"qvdraw|qvview/|qvtests", known), "programs and tests are nobody else's"
    assert "libqvtools.so" in planned and "-Werror" not in planned and "shpc" not in planned


def check_static(folder, code):
    """The library alone, as a static one, each source with its own includes only, in the tree of a program that fetches it."""
    program = program_with_tree(folder / "program", code, """include(FetchContent)
FetchContent_Declare(qvtools SOURCE_DIR {source})
FetchContent_MakeAvailable(qvtools)""")
    run("cmake", "-G", "Ninja", "-S", program, "-B", folder / "library", "-DBUILD_SHARED_LIBS=OFF", "-DQVTOOLS_QT=OFF", "-DQVTOOLS_PLOT=OFF",
        "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O0 -Werror", "-DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON",
        f"-DCMAKE_INSTALL_PREFIX={folder}/prefix")
    run("cmake", "--build", folder / "library", "--target", "example", "qvtools_viewer", "shpc", "qvtools_fonts")
    run(folder / "library/example", cwd=next((folder / "library").rglob("fonts/txt.shx")).parents[1])
    run("cmake", "--install", folder / "library")
    assert list((folder / "prefix").rglob("libqvtools.a")) and not list((folder / "prefix").rglob("libqvtools.so"))
    example = example_in(folder / "example", code)
    build_example(example, folder / "prefix")
    check_program(folder / "prefix", example)


def main():
    readme = pathlib.Path(source, "README.md").read_text(encoding="utf-8")
    code = re.search(r"```cpp\n(.*?)```", readme, re.S).group(1)
    with tempfile.TemporaryDirectory() as directory:
        folder = pathlib.Path(directory)
        prefix = folder / "prefix"
        run("cmake", "--install", build, "--prefix", prefix)
        assert not list((prefix / "include").rglob("internal")), "private headers are installed"  # the manual shows some
        example = example_in(folder / "example", code)
        # Who asks for the library alone gets on without Qt.
        build_example(example, prefix, "-DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON")
        check_program(prefix, example)
        if list(prefix.rglob("qvtools-qt-targets.cmake")):
            with_qt = example_in(folder / "with_qt", '#include "qvtools/platform/qt/qt_context.h"\n' + code,
                                 "COMPONENTS qt", "qvtools::qt")
            build_example(with_qt, prefix)
        if list(prefix.rglob("qvtools-plot-targets.cmake")):
            built = Examples(pathlib.Path(source), prefix, folder / "all", cross, emulator).check_all()
            assert ("embedded_view" in built) == bool(list(prefix.rglob("qvtools-qt_widgets-targets.cmake"))), built
            assert ("embedded_view32" in built) == (system == "Windows"), built
        qvdraw = prefix / "bin/qvdraw"
        if qvdraw.exists():
            # The library and the fonts are found from where the program is.
            elsewhere = {name: value for name, value in os.environ.items() if name != "LD_LIBRARY_PATH"}
            run(qvdraw, "demo", "--out", folder / "out", env=elsewhere)
            assert (folder / "out/beam.png").stat().st_size > 1000
        if not system:
            check_pkg_config(prefix, example)
            check_tree(folder / "tree", code)
            check_static(folder / "static", code)


main()
