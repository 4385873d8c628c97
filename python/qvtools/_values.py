"""Results that hold values only."""

from typing import Any, List, NamedTuple, Tuple

Point = Tuple[float, float]


class Notice(UserWarning):
    """What the library tells without failing: a coordinate that is no number, a name that flat readers mistake."""


class Rect(NamedTuple):
    """A rectangle in drawing units."""

    left: float
    bottom: float
    right: float
    top: float

    @property
    def width(self) -> float:
        return self.right - self.left

    @property
    def height(self) -> float:
        return self.top - self.bottom


class Layer(NamedTuple):
    """A layer of a document; shown is False when it is off or frozen."""

    name: str
    color: int
    ltype: str
    shown: bool


class LType(NamedTuple):
    """A line type: dashes (above 0), gaps (below 0) and dots (0)."""

    name: str
    description: str
    elements: List[float]


class Style(NamedTuple):
    """A text style: its fonts, its height (0: each text has its own) and the width of its letters."""

    name: str
    font: str
    big_font: str
    height: float
    width_factor: float


class CaughtPoint(NamedTuple):
    """A point that a pointer catches, its kind, and the entity whose point it is."""

    x: float
    y: float
    kind: str
    entity: Any


class ImportedKind(NamedTuple):
    """What became of one kind of entity of a file."""

    name: str
    taken: int
    converted: int
    left_out: int
    becomes: str
    reason: str
    line: int


class Remark(NamedTuple):
    """Something that was mended, shortened or lost (loss), how often, and in which line first (0: in none)."""

    text: str
    count: int
    line: int
    loss: bool


class ImportReport(NamedTuple):
    """What an import made of a file (qv::ImportReport); summary is one line, text all of it."""

    kinds: List[ImportedKind]
    remarks: List[Remark]
    release: str
    binary: bool
    encoding: str
    encoding_source: str
    unit: str
    unit_source: str
    scale: float
    offset: Point
    layout: str
    layouts: List[str]
    complete: bool
    broken_line: int
    summary: str
    text: str

    def __str__(self) -> str:
        return self.text


class Sheet(NamedTuple):
    """A sheet frame in a drawing: its edges, the border within, its paper, its scale, and what its title block says."""

    edge: Rect
    border: Rect
    paper: str
    scale: float
    name: str
    number: str


class Page(NamedTuple):
    """A page of a plot: what is on it, its paper, its scale, whether all of it is on the paper, its size in mm, its file."""

    source: str
    sheet: str
    paper: str
    scale: float
    fits: bool
    size: Tuple[float, float]
    file: str


class PlotReport(NamedTuple):
    """The pages of a plot, and what is not on them though the drawing has it."""

    pages: List[Page]
    remarks: List[str]


class Svg(str):
    """A drawing as SVG: a str that a notebook shows."""

    def _repr_svg_(self) -> str:
        return str(self)


class SheetFrame(NamedTuple):
    """The rectangles of a sheet that was drawn: paper, frame, title block, countersign block."""

    paper: Rect
    inside: Rect
    title: Rect
    countersign: Rect


class BarItem(NamedTuple):
    """A bar of a list: its mark, its shape ("straight", "bent", "bent_twice", "cranked", "stirrup" or "tie") with the
    legs a, b and c in mm (qv::BarShape), grade, diameter, count, and its length; 0: that of its legs."""

    mark: str
    shape: str
    grade: int
    diameter: int
    count: int
    a: float = 0
    b: float = 0
    c: float = 0
    length: float = 0


class BarSum(NamedTuple):
    """All bars of one grade and diameter: length in m, mass in kg."""

    grade: int
    diameter: int
    length: float
    mass: float


class SlideItem(NamedTuple):
    """A "line" or a "solid" of a slide in a colour."""

    kind: str
    color: int
    points: List[Point]


class Concrete(NamedTuple):
    """A grade of concrete; stresses and moduli in N/mm2 (Con_Prop)."""

    name: str
    fc: float
    fcm: float
    ft: float
    fck: float
    fcmk: float
    ftk: float
    Ec: float
    Gc: float
    nu: float
    alpha: float


class Steel(NamedTuple):
    """A grade of reinforcement, N/mm2 (Rein_Prop)."""

    name: str
    fy: float
    fy2: float
    fyk: float
    Es: float
