"""Installs the library and builds README.md's example on it, found by CMake and by pkg-config.

install_test.py SOURCE BUILD [SYSTEM COMPILER EMULATOR]: for another system, the example is built by its compiler and run
by the emulator, beside the installed DLLs.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

source, build = sys.argv[1:3]
system, compiler, emulator = sys.argv[3:] or (None, None, None)


def run(*words, **options):
    subprocess.run(words, check=True, stdout=subprocess.DEVNULL, timeout=300, **options)


with tempfile.TemporaryDirectory() as directory:
    prefix = os.path.join(directory, "prefix")
    run("cmake", "--install", build, "--prefix", prefix)
    example = os.path.join(directory, "example")
    os.mkdir(example)
    with open(os.path.join(source, "README.md"), encoding="utf-8") as file:
        code = re.search(r"```cpp\n(.*?)```", file.read(), re.S).group(1)
    with open(os.path.join(example, "main.cpp"), "w", encoding="utf-8") as file:
        file.write(code)
    with open(os.path.join(example, "CMakeLists.txt"), "w", encoding="utf-8") as file:
        file.write(
            "cmake_minimum_required(VERSION 3.22)\nproject(example CXX)\nfind_package(qvtools REQUIRED)\n"
            "add_executable(example main.cpp)\ntarget_link_libraries(example qvtools::qvtools)\n"
        )
    cross = [f"-DCMAKE_SYSTEM_NAME={system}", f"-DCMAKE_CXX_COMPILER={compiler}"] if system else []
    run("cmake", "-S", example, "-B", example + "/build", "-DCMAKE_PREFIX_PATH=" + prefix, *cross)
    run("cmake", "--build", example + "/build")
    place = prefix + "/bin" if system else example
    run(*([emulator, example + "/build/example.exe"] if system else [example + "/build/example"]), cwd=place)
    assert os.path.getsize(place + "/beam.dxf") > 1000

    qvdraw = prefix + "/bin/qvdraw"
    if os.path.exists(qvdraw):
        # The library and the fonts are found from where the program is.
        elsewhere = {name: value for name, value in os.environ.items() if name != "LD_LIBRARY_PATH"}
        run(qvdraw, "demo", "--out", directory + "/out", env=elsewhere)
        assert os.path.getsize(directory + "/out/beam.png") > 1000

    if shutil.which("pkg-config") and not system:
        libraries = next(root for root, _, files in os.walk(prefix) if "qvtools.pc" in files)
        flags = subprocess.run(
            ["pkg-config", "--define-variable=prefix=" + prefix, "--cflags", "--libs", "qvtools"],
            check=True, capture_output=True, text=True, env={**os.environ, "PKG_CONFIG_PATH": libraries},
        ).stdout.split()
        run("c++", "-std=c++20", example + "/main.cpp", "-o", example + "/by-pkg-config", *flags)
