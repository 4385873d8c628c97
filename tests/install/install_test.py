"""Installs the library and builds README.md's example on it, found by CMake and by pkg-config."""

import os
import re
import shutil
import subprocess
import sys
import tempfile

source, build = sys.argv[1:3]


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
    run("cmake", "-S", example, "-B", example + "/build", "-DCMAKE_PREFIX_PATH=" + prefix)
    run("cmake", "--build", example + "/build")
    run(example + "/build/example", cwd=example)
    assert os.path.getsize(example + "/beam.dxf") > 1000

    if shutil.which("pkg-config"):
        libraries = next(root for root, _, files in os.walk(prefix) if "qvtools.pc" in files)
        flags = subprocess.run(
            ["pkg-config", "--define-variable=prefix=" + prefix, "--cflags", "--libs", "qvtools"],
            check=True, capture_output=True, text=True, env={**os.environ, "PKG_CONFIG_PATH": libraries},
        ).stdout.split()
        run("c++", "-std=c++20", example + "/main.cpp", "-o", example + "/by-pkg-config", *flags)
