#!/usr/bin/env python3
"""The Python module: what it hands over, what it refuses, and what outlives what."""

import gc
import math
import os
import pathlib
import random
import tempfile
import threading
import unittest
import warnings

import numpy as np
import qvtools as qv


def drawing():
    """A document with something of every kind that can be made."""
    document = qv.Document()
    document.add_layer("墙体", 3)
    document.add_ltype("DASHED", [6, -3])
    document.add_points((5, 5))
    document.add_lines([(0, 0), (10, 0, )], [(10, 0), (10, 20)], layer=["0", "墙体"], color=[1, 2], ltype="DASHED")
    document.add_style("HZ")
    document.add_texts((1, 2, 3), "框架梁 KL-1", 2.5, rotation=30, style="HZ")
    document.add_circles((50, 50), 5)
    document.add_arcs((80, 50), [4], 0, 90, color=5)
    document.add_polyline([(0, 30), (10, 30), (10, 40)], bulges=[0, 1, 0], width=0.5, closed=True)
    document.add_solids([(0, 60), (4, 60), (0, 64), (4, 64)])
    document.add_faces([[(0, 70, 1), (4, 70, 2), (4, 74, 3), (0, 74, 4)]])
    return document


class InFolder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def path(self, name):
        return self.folder / name


class Documents(InFolder):
    def test_what_is_saved_is_read(self):
        for read in (qv.read, qv.read_flat):
            document = drawing()
            document.save(self.path("墙.dxf"))
            again = read(self.path("墙.dxf"))
            self.assertEqual([repr(e) for e in again.entities], [repr(e) for e in document.entities])
            self.assertEqual(again.extent(), document.extent())
            self.assertIn(qv.Layer("墙体", 3, "CONTINUOUS", True), again.layers)
            self.assertTrue(again.complete)
        self.assertIsNone(qv.read_flat(self.path("墙.dxf")).report)
        self.assertEqual([k.taken for k in qv.read(self.path("墙.dxf")).report.kinds if k.name == "LINE"], [2])

    def test_import_makes_flat_entities_and_tells(self):
        groups = ["0", "SECTION", "2", "BLOCKS", "0", "BLOCK", "8", "0", "2", "门", "70", "0", "10", "1", "20", "0", "0", "LINE",
                  "8", "0", "10", "0", "20", "0", "11", "9", "21", "0", "0", "ENDBLK", "0", "ENDSEC",
                  "0", "SECTION", "2", "ENTITIES", "0", "MTEXT", "8", "0", "10", "0", "20", "0", "40", "3", "1", "两行\\P文字",
                  "0", "INSERT", "8", "0", "2", "门", "10", "5", "20", "5", "0", "ENDSEC", "0", "EOF", ""]
        self.path("a.dxf").write_text("\n".join(groups), encoding="utf-8")
        shares = []
        document = qv.read(self.path("a.dxf"), progress=shares.append)
        self.assertIn("MTEXT", document.report.summary)
        self.assertEqual([e.text for e in document.entities if e.kind == "TEXT"], ["两行", "文字"])
        self.assertEqual([e.kind for e in document.blocks["门"].entities], ["LINE"])
        self.assertEqual(document.blocks["门"].base, (1, 0, 0))
        self.assertEqual([e.block for e in document.pick((0, 0, 20, 20)) if e.kind == "INSERT"], ["门"])

    def test_columns_are_what_the_objects_are(self):
        document = drawing()
        for kind in ("POINT", "LINE", "TEXT", "CIRCLE", "ARC", "POLYLINE", "SOLID", "3DFACE", "INSERT"):
            columns = document.columns(kind)
            objects = [e for e in document.entities if e.kind == kind]
            self.assertEqual(len(columns["index"]), len(objects))
            vertices = {"offsets", "points", "bulges", "start_widths", "end_widths"} if kind == "POLYLINE" else set()
            for row, entity in enumerate(objects):
                self.assertEqual(document.entities[int(columns["index"][row])], entity)
                for name in set(columns) - vertices - {"index"}:
                    np.testing.assert_array_equal(columns[name][row], getattr(entity, name))
                for name in vertices - {"offsets"}:
                    part = slice(*columns["offsets"][row:row + 2])
                    np.testing.assert_array_equal(columns[name][part], getattr(entity, name))

    def test_entities_are_the_documents_own(self):
        document = drawing()
        line = document.entities[1]
        line.start, line.layer, line.color = (1, 2), "墙体", qv.BY_LAYER
        self.assertEqual(document.entities[1].start, (1, 2, 0))
        self.assertEqual(document.columns("LINE")["layer"].tolist(), ["墙体", "墙体"])
        polyline = next(e for e in document.entities if e.kind == "POLYLINE")
        self.assertAlmostEqual(polyline.area, 50 + math.pi * 25 / 2, places=4)
        polyline.points = [(0, 0), (4, 0), (4, 3), (0, 3)]
        polyline.bulges = 0
        self.assertEqual((polyline.area, polyline.length, len(polyline.start_widths)), (12, 14, 4))
        count = len(document.entities)
        document.remove([line, polyline])
        self.assertEqual(len(document.entities), count - 2)
        self.assertEqual((line.start, polyline.area), ((1, 2, 0), 12))
        self.assertEqual([e.kind for e in document.entities[-2:]], ["SOLID", "3DFACE"])
        self.assertEqual(len(list(document.entities)), count - 2)

    def test_entities_and_columns_outlive_their_document(self):
        document = drawing()
        text, columns, pixels = document.entities[3], document.columns("LINE"), document.picture(200).pixels
        expected = columns["end"].copy(), pixels.sum()
        del document
        gc.collect()
        self.assertEqual(text.text, "框架梁 KL-1")
        np.testing.assert_array_equal(columns["end"], expected[0])
        self.assertEqual(pixels.sum(), expected[1])

        document = drawing()
        circle, entities, block = document.entities[4], document.entities, document.columns("TEXT")["text"]
        document.close()
        for use in (lambda: circle.radius, lambda: setattr(circle, "radius", 2), lambda: entities[0], lambda: len(entities),
                    document.extent, document.picture, lambda: document.columns("LINE"), lambda: document.add_points((0, 0)),
                    lambda: document.save(self.path("a.dxf")), lambda: document.pick((0, 0, 1, 1)), lambda: repr(circle)):
            with self.assertRaisesRegex(qv.Error, "closed"):
                use()
        self.assertEqual(block.tolist(), ["框架梁 KL-1"])

    def test_picks_and_catches(self):
        document = drawing()
        self.assertEqual([e.kind for e in document.pick((40, 40, 60, 60))], ["CIRCLE"])
        self.assertEqual(document.pick((50, 40, 60, 60)), [])
        self.assertEqual([e.kind for e in document.pick((50, 40, 60, 60), crossing=True)], ["CIRCLE"])
        self.assertEqual([e.kind for e in document.pick([(40, 40), (70, 40), (50, 70)])], ["CIRCLE"])
        document.entities[4].center = (500, 500)
        self.assertEqual(document.pick((40, 40, 60, 60)), [])
        best = document.catch((10.2, 0.1), 1, kinds=["end", "middle"])[0]
        self.assertEqual((best.x, best.y, best.kind), (10, 0, "end"))

    def test_bad_arguments_are_refused(self):
        document, entity = drawing(), drawing().entities[0]
        composer = qv.Composer(50)
        cases = [
            (TypeError, lambda: document.add_lines("a", "b")),
            (TypeError, lambda: document.add_lines([(0, 0)], [("x", "y")])),
            (TypeError, lambda: document.add_lines([(0j, 0)], [(1, 1)])),
            (ValueError, lambda: document.add_lines([[0, 0, 0, 0]], [(1, 1)])),
            (ValueError, lambda: document.add_lines([(0, 0)] * 3, [(1, 1)] * 2)),
            (ValueError, lambda: document.add_lines([(0, 0), (1, 1, 1)], (1, 1))),
            (ValueError, lambda: document.add_lines([(0, 0)] * 2, (1, 1), layer=["0"] * 3)),
            (ValueError, lambda: document.add_circles(np.zeros((2, 2, 2)), 1)),
            (ValueError, lambda: document.add_faces(np.zeros((3, 3)))),
            (ValueError, lambda: document.add_polyline([(0, 0)])),
            (TypeError, lambda: document.add_texts((0, 0), 5, 1)),
            (ValueError, lambda: document.add_texts((0, 0), "a\0b", 1)),
            (qv.Error, lambda: document.add_lines((0, 0), (1, 1), layer="WALL")),
            (qv.Error, lambda: document.add_layer("墙体")),
            (ValueError, lambda: document.add_layer("L" * 30)),
            (ValueError, lambda: document.columns("SPLINE")),
            (IndexError, lambda: document.entities[99]),
            (IndexError, lambda: document.entities[-99]),
            (ValueError, lambda: setattr(document.entities[1], "layer", "L" * 30)),
            (ValueError, lambda: setattr(document.entities[1], "start", [(0, 0), (1, 1)])),
            (TypeError, lambda: setattr(document.entities[1], "color", "red")),
            (ValueError, lambda: document.remove(entity)),
            (ValueError, lambda: document.picture((0, 10))),
            (ValueError, lambda: document.picture(background=(300, 0, 0))),
            (ValueError, lambda: document.plot(self.path("a.pdf"), paper="A9")),
            (qv.Error, lambda: document.plot(self.path("a.doc"))),
            (OSError, lambda: document.plot(self.path("a.pdf"), pens=self.path("none.ctb"))),
            (ValueError, lambda: document.pick((0, 0, 1))),
            (OSError, lambda: qv.read(self.path("none.dxf"))),
            (OSError, lambda: qv.read_flat(self.folder)),
            (TypeError, lambda: qv.read(5)),
            (ValueError, lambda: qv.read(__file__, unit="ells")),
            (qv.Error, lambda: qv.read(__file__)),
            (qv.Error, lambda: qv.read_flat(__file__)),
            (ZeroDivisionError, lambda: qv.read(self.path("big.dxf"), progress=lambda share: 1 / 0)),
            (qv.Error, lambda: qv.read(self.path("big.dxf"), progress=lambda share: False)),
            (qv.Error, lambda: document.save(self.path("none/a.dxf"))),
            (OSError, lambda: qv.load_fonts(self.path("none.shx"))),
            (qv.Error, lambda: qv.load_fonts(__file__)),
            (ValueError, lambda: qv.Composer(0)),
            (TypeError, lambda: composer.line(1, 2, 3)),
            (TypeError, lambda: composer.line(1, 2, 3, "4")),
            (TypeError, lambda: composer.line(1, 2, 3, 4, color=5)),
            (TypeError, lambda: composer.line(1, 2, 3, x1=4)),
            (qv.Error, lambda: composer.pop()),
            (AttributeError, lambda: composer.saved(colour=1).__enter__()),
            (ValueError, lambda: composer.sheet("A7")),
            (ValueError, lambda: composer.bar_text(1, 9, 20)),
            (ValueError, lambda: setattr(composer, "layer", "L" * 99)),
        ]
        big = qv.Document()
        big.add_lines(np.zeros((50000, 2)), np.ones((50000, 2)))
        big.save(self.path("big.dxf"))
        before = len(document.entities)
        for error, call in cases:
            with self.subTest(line=call.__code__.co_firstlineno), self.assertRaises(error):
                call()
        self.assertEqual(len(document.entities), before)
        with self.assertRaisesRegex(qv.Error, r"Layer Name Error ! \(墙\)"):
            document.add_points((0, 0), layer="墙")
        with self.assertWarnsRegex(qv.Notice, "Not A Finite Number"):
            document.add_points((np.nan, 0))
            document.save(self.path("nan.dxf"))

    def test_another_thread_does_not_meet_a_document_half_way(self):
        document, n = qv.Document(), 400000
        others = []

        def ask():
            while len(others) < 1000 and thread.is_alive():
                try:
                    others.append(len(document.entities))
                except qv.Error as error:
                    others.append(str(error))

        thread = threading.Thread(target=lambda: document.add_lines(np.zeros((n, 2)), np.ones((n, 2))))
        thread.start()
        ask()
        thread.join()
        self.assertLessEqual(set(others), {0, n, "The document is in use by another thread"})
        self.assertEqual(len(document.entities), n)


class Composing(InFolder):
    def test_arrays_compose_what_single_calls_do(self):
        start, end = np.random.default_rng(1).uniform(0, 9000, (2, 50, 2)).astype(np.float32)
        one, all_at_once = qv.Composer(50), qv.Composer(50)
        for sgt in (one, all_at_once):
            sgt.rotation, sgt.shift_x, sgt.color = 30, 500, 3
        for a, b in zip(start, end):
            one.line(*a, *b)
        all_at_once.lines(start, end)
        self.assertEqual([repr(e) for e in one.entities], [repr(e) for e in all_at_once.entities])
        self.assertAlmostEqual(one.entities[0].start[0], one.placed(*start[0])[0])

    def test_settings_come_back(self):
        sgt = qv.Composer(50)
        sgt.add_layer("BEAM")
        with self.assertRaises(ZeroDivisionError), sgt.saved(layer="BEAM", color=1, dimension_offset=700):
            self.assertEqual((sgt.layer, sgt.color, sgt.dimension_offset), ("BEAM", 1, 700))
            1 / 0
        self.assertEqual((sgt.layer, sgt.color, sgt.dimension_offset), ("0", 7, 100))
        with sgt.detail(1000, 1000, 10) as detail:
            self.assertEqual(detail.on_sheet(10, 0), (1050, 1000))
            sgt.line(0, 0, 10, 0)
        self.assertEqual(sgt.entities[-1].end, (1050, 1000, 0))
        with self.assertRaises(qv.Error):
            detail.pen(1)

    def test_every_symbol_draws(self):
        sgt = qv.Composer(50)
        points = [(0, 0), (900, 0), (900, 900)]
        chart = {"x_range": (0, 2), "y_range": (0, 9)}
        special = {
            "sheet": (), "table": (0, 0, [["编号", "b"], ["c", "d"]]), "notes": (0, 0, 100, ["一", "二"], "说明"),
            "bar_list": (0, 0, [qv.BarItem("1", "stirrup", 1, 8, 20, 300, 600)]), "leaders": ("left", 0, [(0, 0, "4", 1)]),
            "axis_grid": (0, 0, [6000, 6000], [5400]), "dimension_chain": ("below", [0, 500, 900], 0), "path": (points,),
            "polyline": (points,), "lines": (points, points[::-1]), "circles": (points, 5), "points": (points,),
            "bar_path": (points,), "bars_label": (0, 900, points, 500, "4"), "dimensions": (points,),
            "beam_section": (0, 0, 300, 600, 25, [(4, 3, 25, 1)], (1, 8, 100, 2)), "sheet_text": (0, 0, 250, "左", "right"),
            "fitted_text": ((0, 0, 900, 300), "左", 250), "underlay": (drawing(),), "axes": ((0, 0, 90, 90), (0, 2), (0, 9)),
            "curve": ((0, 0, 90, 90), [0, 1, 2], [1, 4, 9])}
        document = set(dir(qv.Document)) | {"move_to", "move_by", "push", "pop", "saved", "detail", "placed", "band", "bar_text",
                                            "stirrup_text", "strand_text"}
        for name in sorted(set(dir(sgt)) - document):
            method = getattr(sgt, name)
            if not callable(method):
                continue
            with self.subTest(name):
                arguments = special.get(name)
                if arguments is None:
                    first = method.__doc__.splitlines()[0]
                    wanted = [p for p in first[first.index("(") + 1:first.rindex(")")].split(", ")[1:] if " = " not in p]
                    arguments = ["KL-1" if p.endswith("str") else 100 * (i + 1) for i, p in enumerate(wanted)]
                before = len(sgt.entities)
                method(*arguments, **(chart if name == "curve" else {}))
                self.assertGreater(len(sgt.entities), before)
        self.assertIn("编号", [e.text for e in sgt.entities if e.kind == "TEXT"])

    def test_pictures_and_plots(self):
        sgt = qv.Composer(50)
        sgt.sheet("A3", title={"drawing": "KL-1 配筋图", "number": "结施-11"})
        picture = sgt.picture(400)
        self.assertEqual(picture.size[0], 400)
        self.assertEqual(picture.pixels.shape, (picture.size[1], 400, 3))
        self.assertTrue((picture.pixels == 255).any() and (picture.pixels == 0).any())
        red = sgt.picture((50, 50), background=(255, 0, 10)).pixels[0, 0]
        self.assertEqual(red.tolist(), [255, 0, 10])
        for png in (picture._repr_png_(), sgt._repr_png_(), picture.png()):
            self.assertEqual(png[:8], b"\x89PNG\r\n\x1a\n")
        picture.save(self.path("a.png"))
        report = sgt.plot(self.path("a.pdf"), pens="any -> 0.35 black")
        self.assertEqual((report.pages[0].paper, report.pages[0].scale, report.pages[0].fits), ("A3", 50, True))
        self.assertIn("KL-1", report.pages[0].sheet)
        self.assertTrue(self.path("a.pdf").read_bytes().startswith(b"%PDF"))
        self.assertTrue(sgt.svg()._repr_svg_().rstrip().endswith("</svg>"))
        self.assertEqual(sgt.sheets()[0].paper, "A3")


class Data(InFolder):
    def test_texts_are_str(self):
        document = qv.Document()
        for text in ("plain", "柱 Z-1 %%c φ", "ö", "😀", "", "\u00b0 100%"):
            document.add_texts((0, 0), text, 1)
            self.assertEqual(document.entities[-1].text, {"ö": "\\U+00F6", "😀": "\\U+D83D\\U+DE00"}.get(text, text))
        sign = qv.Composer.bar_text(4, 3, 25)
        document.add_texts((0, 0), sign, 1)
        self.assertEqual((document.entities[-1].text, sign[0], sign[2:]), (sign, "4", "25"))
        self.assertGreater(qv.text_width("梁梁", 10), 1.5 * qv.text_width("梁", 10))

    def test_databases_come_back(self):
        rng = random.Random(7)
        letters = "abc =%梁钢\\#[]\"'.,\t"
        word = lambda most: "".join(rng.choice(letters) for _ in range(rng.randint(0, most)))
        segments = {f"S{i}": {f"k{k}{word(5).strip()}": word(40) for k in range(5)} for i in range(30)}
        segments = {s: {k: v for k, v in items.items() if " = " not in k and not k.endswith(" =")}
                    for s, items in segments.items()}
        segments["long"] = {"k": "%" * 1021, "empty": ""}
        qv.write_database(self.path("a.dat"), segments, version="V 1")
        self.assertEqual(qv.read_database(self.path("a.dat")), segments)
        good = self.path("a.dat").read_bytes()
        for bad in ({"s": {"a = b": "1"}}, {"s": {"a": "two\nlines"}}, {"": {}}, {"s": {"a": "1" * 2050}}, {"##s": {}}):
            with self.assertRaises(ValueError):
                qv.write_database(self.path("a.dat"), bad)
        with self.assertRaises(TypeError):
            qv.write_database(self.path("a.dat"), {"s": {"a": 1}})
        self.assertEqual(self.path("a.dat").read_bytes(), good)
        with self.assertRaises(qv.Error):
            qv.read_database(__file__)
        self.assertEqual((qv.concrete(30).name, qv.bar_area(25, 2)), ("C30", 981.8))
        self.assertRaises(KeyError, qv.concrete, 31)

    def test_fields(self):
        points = [(0, 0), (2, 0), (2, 1), (0, 1)]
        field = qv.Field(points, [0, 2, 2, 0], [(0, 1, 2), (0, 3, 2)])
        self.assertEqual(field.triangles.tolist(), [[0, 1, 2], [0, 2, 3]])
        x = np.linspace(0.1, 1.9, 7)
        np.testing.assert_allclose(field.value(x, 0.3), x, rtol=1e-5)
        self.assertEqual(field.contains([1, 5], [0.3, 0.5]).tolist(), [True, False])
        field.save(self.path("a.field"))
        again = qv.Field.read(self.path("a.field"))
        np.testing.assert_array_equal(again.values, field.values)
        np.testing.assert_array_equal(again.points, np.float32(points))
        self.assertTrue((again.picture((400, 300)).pixels[150, 300] > 0).any())
        for error, call in ((IndexError, lambda: qv.Field(points, [0, 1, 2, 3], [(0, 1, 4)])),
                            (ValueError, lambda: qv.Field(points, [0, 1], [])),
                            (TypeError, lambda: qv.Field(points, [0, 1, 2, 3], [(0.5, 1, 2)])),
                            (IndexError, lambda: setattr(field, "value_index", 5)),
                            (qv.Error, lambda: qv.Field([(0, 0)], [1], []).picture()),
                            (qv.Error, lambda: qv.Field.read(__file__)), (OSError, lambda: qv.Field.read("none"))):
            with self.assertRaises(error):
                call()

    def test_slides(self):
        slide = qv.Slide()
        slide.color(1)
        slide.line(0, 0, 40, 30)
        slide.solid(0, 0, 5, 0, 5, 5, 0, 5)
        self.assertEqual(slide.items[0], ("line", 1, [(0, 0), (40, 30)]))
        self.assertEqual([e.kind for e in slide.document().entities], ["LINE", "SOLID"])
        self.assertTrue((slide.picture((100, 80)).pixels[..., 0] == 255).any())
        slide.save_script(self.path("a.scr"))
        self.assertRaises(qv.Error, qv.Slide.read, self.path("a.scr"))
        self.assertRaises(qv.Error, qv.SlideLibrary, self.path("a.scr"))


if __name__ == "__main__":
    warnings.simplefilter("error", DeprecationWarning)
    unittest.main()
