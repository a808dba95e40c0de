# Makes entity-sheet.dxf: one cell per entity type the drawing view draws, each labelled, for
# the golden-picture test and the comparison with ezdxf's own renderer. Run with Debian's
# python3-ezdxf: python3 make_entity_sheet.py (writes beside this script).
import math
import os

import ezdxf
from ezdxf.math import Vec3

doc = ezdxf.new("R2010", setup=True)
doc.header["$LTSCALE"] = 1.0
doc.header["$PDMODE"] = 35
doc.header["$PDSIZE"] = 3.0
msp = doc.modelspace()
doc.layers.add("RED", color=1)
doc.layers.add("DASHED", color=3, linetype="DASHED")
doc.layers.add("OFF", color=5).off()
doc.layers.add("FROZEN", color=6).freeze()
doc.styles.add("HANGUL", font="NanumGothic.ttf")

CELL = 40.0


def cell(i):
    column, row = i % 6, i // 6
    return Vec3(column * CELL, -row * CELL)


def label(i, text):
    msp.add_text(text, dxfattribs={"height": 2.5, "style": "Standard"}).set_pos(cell(i) + (2, 2))


items = []


def add(name):
    def register(draw):
        items.append((name, draw))
        return draw
    return register


@add("LINE")
def _(o):
    msp.add_line(o + (5, 10), o + (35, 35))
    msp.add_line(o + (5, 35), o + (35, 10), dxfattribs={"layer": "DASHED"})


@add("XLINE RAY")
def _(o):
    msp.add_ray(o + (20, 20), (1, 0.5))
    msp.add_xline(o + (20, 20), (0.2, 1), dxfattribs={"color": 4})


@add("POINT")
def _(o):
    for k in range(3):
        msp.add_point(o + (10 + 10 * k, 22))


@add("CIRCLE ARC")
def _(o):
    msp.add_circle(o + (20, 22), 12)
    msp.add_arc(o + (20, 22), 7, 30, 240, dxfattribs={"color": 1})


@add("ELLIPSE")
def _(o):
    msp.add_ellipse(o + (20, 22), major_axis=(14, 4), ratio=0.5)
    msp.add_ellipse(o + (20, 22), major_axis=(4, 10), ratio=0.4, start_param=0, end_param=math.pi,
                    dxfattribs={"color": 2})


@add("SPLINE")
def _(o):
    msp.add_spline([o + (5, 10), o + (12, 35), o + (25, 12), o + (35, 33)])
    msp.add_open_spline([o + (5, 30), o + (15, 15), o + (25, 35), o + (35, 15)], degree=3,
                        dxfattribs={"color": 3})


@add("LWPOLYLINE")
def _(o):
    p = msp.add_lwpolyline([(5, 10, 0, 0, 0.5), (20, 10, 0, 0, 0), (30, 25, 1.5, 0.5, 0), (15, 35)],
                           format="xyseb", close=True)
    p.translate(o.x, o.y, 0)


@add("POLYLINE 2D 3D")
def _(o):
    msp.add_polyline2d([o + (5, 10), o + (15, 30), o + (25, 12)])
    msp.add_polyline3d([o + (20, 30, 0), o + (35, 15, 5), o + (30, 35, 10)], dxfattribs={"color": 1})


@add("SOLID TRACE 3DFACE")
def _(o):
    msp.add_solid([o + (5, 10), o + (15, 10), o + (5, 20), o + (15, 22)], dxfattribs={"color": 5})
    msp.add_trace([o + (20, 10), o + (35, 10), o + (20, 16), o + (35, 18)], dxfattribs={"color": 6})
    msp.add_3dface([o + (10, 25), o + (30, 25), o + (35, 35), o + (5, 35)])


@add("HATCH SOLID")
def _(o):
    h = msp.add_hatch(color=2)
    h.paths.add_polyline_path([o + (5, 8), o + (35, 8), o + (35, 36), o + (5, 36)], is_closed=True, flags=1)
    h.paths.add_polyline_path([o + (12, 15), o + (28, 15), o + (28, 29), o + (12, 29)], is_closed=True, flags=16)


@add("HATCH ANSI31")
def _(o):
    h = msp.add_hatch(color=3)
    h.set_pattern_fill("ANSI31", scale=0.5)
    h.paths.add_polyline_path([o + (5, 8), o + (35, 8), o + (35, 36), o + (5, 36)], is_closed=True, flags=1)
    edges = h.paths.add_edge_path(flags=16)
    edges.add_arc(o + (20, 22), 6, 0, 360)


@add("TEXT")
def _(o):
    msp.add_text("ABC 한글", dxfattribs={"height": 4, "style": "HANGUL", "rotation": 15}).set_pos(o + (6, 12))
    msp.add_text("R", dxfattribs={"height": 5, "width": 2, "color": 1}).set_pos(o + (30, 28), align="MIDDLE_CENTER")


@add("MTEXT")
def _(o):
    msp.add_mtext("첫 줄\\P{\\C1;빨강} 1\\S1/2;\\P\\H1.5x;Big", dxfattribs={
        "char_height": 3, "width": 30, "style": "HANGUL", "insert": o + (5, 34), "attachment_point": 1})


@add("ATTRIB ATTDEF")
def _(o):
    block = doc.blocks.new("TAGGED")
    block.add_circle((0, 0), 5)
    block.add_attdef("NAME", (6, -1.5), dxfattribs={"height": 3})
    ref = msp.add_blockref("TAGGED", o + (12, 22))
    ref.add_auto_attribs({"NAME": "밸브 V-1"})


@add("INSERT NESTED BYBLOCK")
def _(o):
    inner = doc.blocks.new("INNER")
    inner.add_line((-4, -4), (4, 4), dxfattribs={"color": 0})
    inner.add_circle((0, 0), 4, dxfattribs={"color": 0})
    outer = doc.blocks.new("OUTER")
    outer.add_blockref("INNER", (0, 0), dxfattribs={"color": 0})
    outer.add_blockref("INNER", (10, 0), dxfattribs={"color": 0, "rotation": 45, "xscale": 0.5, "yscale": 0.5})
    msp.add_blockref("OUTER", o + (12, 20), dxfattribs={"color": 1})
    msp.add_blockref("OUTER", o + (12, 31), dxfattribs={"color": 5, "rotation": 10})


@add("MINSERT")
def _(o):
    small = doc.blocks.new("SMALL")
    small.add_lwpolyline([(0, 0), (4, 0), (4, 4), (0, 4)], close=True)
    ref = msp.add_blockref("SMALL", o + (6, 10))
    ref.dxf.column_count = 4
    ref.dxf.row_count = 3
    ref.dxf.column_spacing = 7
    ref.dxf.row_spacing = 8


@add("DIMENSION")
def _(o):
    dim = msp.add_linear_dim(base=o + (5, 30), p1=o + (5, 15), p2=o + (35, 15), dimstyle="EZDXF")
    dim.render()


@add("LEADER")
def _(o):
    msp.add_leader([o + (8, 12), o + (20, 28), o + (32, 28)])


@add("LAYERS OFF FROZEN")
def _(o):
    msp.add_line(o + (5, 15), o + (35, 15), dxfattribs={"layer": "RED"})
    msp.add_line(o + (5, 22), o + (35, 22), dxfattribs={"layer": "OFF"})
    msp.add_line(o + (5, 29), o + (35, 29), dxfattribs={"layer": "FROZEN"})


@add("TRUE COLOUR LTYPE")
def _(o):
    line = msp.add_line(o + (5, 12), o + (35, 12))
    line.dxf.true_color = ezdxf.rgb2int((255, 128, 0))
    msp.add_line(o + (5, 22), o + (35, 22), dxfattribs={"linetype": "DASHDOT", "ltscale": 0.5})
    msp.add_line(o + (5, 32), o + (35, 32), dxfattribs={"linetype": "HIDDEN"})


for index, (name, draw) in enumerate(items):
    label(index, name)
    draw(cell(index))

doc.saveas(os.path.join(os.path.dirname(os.path.abspath(__file__)), "entity-sheet.dxf"))
