# Renders a drawing's model space with ezdxf's drawing add-on and matplotlib into a PNG of
# the given size showing exactly the given window, on the background our view uses, so the
# two pictures can be compared pixel for pixel.
# Usage: ezdxf_render.py DRAWING OUT.png WIDTH HEIGHT X1,Y1,X2,Y2
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import ezdxf
from ezdxf.addons.drawing import Frontend, RenderContext
from ezdxf.addons.drawing.matplotlib import MatplotlibBackend

drawing, out, width, height, window = sys.argv[1:6]
width, height = int(width), int(height)
x1, y1, x2, y2 = (float(v) for v in window.split(","))
doc = ezdxf.readfile(drawing)
dpi = 100
fig = plt.figure(figsize=(width / dpi, height / dpi), dpi=dpi)
ax = fig.add_axes([0, 0, 1, 1])
ax.set_axis_off()
background = "#212830"
fig.patch.set_facecolor(background)
ax.set_facecolor(background)
Frontend(RenderContext(doc), MatplotlibBackend(ax, adjust_figure=False)).draw_layout(
    doc.modelspace(), finalize=False)
ax.set_xlim(x1, x2)
ax.set_ylim(y1, y2)
ax.set_aspect("auto")
fig.savefig(out, dpi=dpi, facecolor=background)
