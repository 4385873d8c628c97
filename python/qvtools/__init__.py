"""Structural drawings from Python: read, compose, measure, show and plot DXF drawings.

    import qvtools as qv

    plan = qv.read("plan.dxf")              # a drawing of any program; plan.report tells what became of it
    lines = plan.columns("LINE")            # NumPy arrays: lines["start"], lines["layer"], ...
    plan.picture()                          # shown in a notebook; .save("plan.png")
    plan.plot("plan.pdf", paper="A3", scale=100)

    sgt = qv.Composer(50)                   # a sheet of 1:50, in millimetres of the building
    sgt.sheet("A2", title={"drawing": "KL-1 配筋图"})
    sgt.rect(5000, 9000, 6000, 600)
    sgt.save("beam.dxf")

Text is str; the library keeps it as GBK, and characters that GBK lacks as \\U+XXXX. What the library reports as an
error is raised as Error with its words, in the brackets what it is about; what it tells without failing is a warning,
Notice. Files that cannot be read raise OSError, arguments that make no sense TypeError, ValueError or IndexError.

The two free fonts are loaded when the module is imported: from the folder that $QVTOOLS_FONTS names, from the package, or
from share/qvtools/fonts of an installation. load_fonts loads others.

Docstrings name the library's own call in brackets; its manual says more.
"""

import contextlib as _contextlib
import os as _os
import pathlib as _pathlib
import warnings as _warnings

from . import _values
from ._core import (BY_LAYER, Arc, Block, Circle, Composer, Detail, Document, Entities, Entity, Error, Face, Field, Insert,
                    Line, Picture, Point, Polyline, Slide, SlideLibrary, Solid, Text, __version__, bar_area, bar_mass,
                    bar_sums, concrete, load_fonts, plot, read, read_database, read_flat, steel, text_width, wrap_text,
                    write_database)
from ._values import (BarItem, BarSum, CaughtPoint, Concrete, ImportedKind, ImportReport, Layer, LType, Notice, Page,
                      PlotReport, Rect, Remark, Sheet, SheetFrame, SlideItem, Steel, Style, Svg)

__all__ = [
    # drawings
    "read", "read_flat", "Document", "Composer", "plot", "Picture", "Svg",
    # their parts
    "Entities", "Entity", "Point", "Line", "Text", "Circle", "Arc", "Polyline", "Solid", "Face", "Insert", "Block", "Detail",
    # fonts, slides, data
    "load_fonts", "text_width", "wrap_text", "Slide", "SlideLibrary", "read_database", "write_database", "Field", "concrete",
    "steel", "bar_area", "bar_mass", "bar_sums",
    # values
    "BarItem", "BarSum", "CaughtPoint", "Concrete", "ImportReport", "ImportedKind", "LType", "Layer", "Page", "PlotReport",
    "Rect", "Remark", "Sheet", "SheetFrame", "SlideItem", "Steel", "Style",
    # what goes wrong
    "Error", "Notice", "BY_LAYER",
]


def _font_folder():
    """The first folder that has the text font; None where there is none."""
    here = _pathlib.Path(__file__).resolve().parent
    named = _os.environ.get("QVTOOLS_FONTS")
    folders = [_pathlib.Path(named)] if named else []
    folders += [here / "fonts"] + [parent / "share/qvtools/fonts" for parent in here.parents]
    return next((folder for folder in folders if (folder / "txt.shx").is_file()), None)


def _load_free_fonts():
    folder = _font_folder()
    if folder is None:
        _warnings.warn("no shape fonts were found: texts have no width and are not drawn", Notice, stacklevel=3)
        return
    big = folder / "hztxt.shx"
    load_fonts(folder / "txt.shx", big if big.is_file() else None)


@_contextlib.contextmanager
def _saved(self, **settings):
    """Sets attributes of a composer in a with statement, and brings all settings back at its end.

    with sgt.saved(color=1, layer="BEAM", rotation=30): ... (Push_ENV, Pop_ENV)
    """
    self.push()
    try:
        for name, value in settings.items():
            if not hasattr(type(self), name):
                raise AttributeError(f"a composer has no setting {name}")
            setattr(self, name, value)
        yield self
    finally:
        if not self.closed:
            self.pop()


_saved.__name__ = "saved"
_saved.__qualname__ = "Composer.saved"
Composer.saved = _saved
_load_free_fonts()
