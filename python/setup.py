"""Builds the module by the library's own CMake files, the library within it, with the fonts beside it."""

import pathlib
import re
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

SOURCE = pathlib.Path(__file__).resolve().parent.parent


class CMakeBuild(build_ext):
    def build_extension(self, extension):
        package = pathlib.Path(self.get_ext_fullpath(extension.name)).resolve().parent
        build = pathlib.Path(self.build_temp).resolve()
        build.mkdir(parents=True, exist_ok=True)
        options = {
            "CMAKE_BUILD_TYPE": "Release", "CMAKE_INSTALL_PREFIX": package.parent, "QVTOOLS_PYTHON_DIR": ".",
            "CMAKE_INSTALL_DATADIR": ".", "BUILD_SHARED_LIBS": "OFF", "CMAKE_UNITY_BUILD": "ON",
            "QVTOOLS_QT": "OFF", "QVTOOLS_PROGRAMS": "OFF", "QVTOOLS_TESTS": "OFF",
            "Python_EXECUTABLE": sys.executable,
        }
        try:
            import pybind11
            options["pybind11_DIR"] = pybind11.get_cmake_dir()
        except ImportError:
            pass  # of the system, where CMake finds it
        run = lambda *command: subprocess.run(command, check=True)
        run("cmake", "-S", SOURCE, "-B", build, "-G", "Ninja", *(f"-D{name}={value}" for name, value in options.items()))
        run("cmake", "--build", build, "--target", "qvtools_python", "fonts", "chinese_font",
            *(["-j", str(self.parallel)] if self.parallel else []))
        for component in ("python", "fonts"):
            run("cmake", "--install", build, "--component", component)


def version():
    header = (SOURCE / "src/qvtools/version.h").read_text(encoding="utf-8")
    return ".".join(re.findall(r"^#define QVTOOLS_VERSION_(?:MAJOR|MINOR|PATCH) (\d+)$", header, re.M))


setup(
    version=version(),
    packages=["qvtools"],
    ext_modules=[Extension("qvtools._core", [])],
    cmdclass={"build_ext": CMakeBuild},
    zip_safe=False,
)
