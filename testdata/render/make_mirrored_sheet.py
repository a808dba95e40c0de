# Makes mirrored-sheet.dxf: entities whose plane faces away (extrusion 0,0,-1), drawn mirrored
# seen from above, for the comparison with ezdxf's own renderer. Run with Debian's
# python3-ezdxf: python3 make_mirrored_sheet.py (writes beside this script).
import os

import ezdxf

doc = ezdxf.new("R2010")
msp = doc.modelspace()
away = {"extrusion": (0, 0, -1)}
msp.add_arc((10, 10), 5, 0, 90, dxfattribs=away)
msp.add_circle((30, 10), 4, dxfattribs=away)
msp.add_lwpolyline([(40, 0, 0, 0, 0.5), (50, 0, 0, 0, 0), (50, 10)], format="xyseb", dxfattribs=away)
msp.add_text("MIRROR", dxfattribs={"height": 3, "extrusion": (0, 0, -1), "insert": (-60, 20, 0)})
msp.add_solid([(0, 30), (10, 30), (0, 40), (10, 42)], dxfattribs=away)
block = doc.blocks.new("B")
block.add_line((0, 0), (5, 2))
block.add_circle((5, 2), 1)
msp.add_blockref("B", (-20, -20), dxfattribs=away)
msp.add_ellipse((70, 10), major_axis=(5, 2), ratio=0.5, start_param=0, end_param=3, dxfattribs=away)
msp.add_line((0, 0), (80, 50))
doc.saveas(os.path.join(os.path.dirname(os.path.abspath(__file__)), "mirrored-sheet.dxf"))
