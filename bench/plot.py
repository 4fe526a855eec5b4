"""Draws the figures: bars of ratios, and curves of growth."""

import math

WIDTH = 900
BAR = 24
LEFT = 430
STYLE = """<style>
  svg { background: #fff; }
  text { font: 12px sans-serif; fill: #14222f; }
  .title { font-size: 14px; font-weight: bold; }
  .met { fill: #4c8c5a; }
  .missed { fill: #b5654a; }
  .peer { fill: #9aa7b4; }
  .limit { stroke: #14222f; stroke-width: 2; }
  .one { stroke: #37597a; stroke-dasharray: 4 3; }
  .axis { stroke: #9aa7b4; }
  .curve { fill: none; stroke: #37597a; stroke-width: 2; }
  .point { fill: #37597a; }
  .linear { fill: none; stroke: #9aa7b4; stroke-dasharray: 3 3; }
</style>
"""


def text(x, y, words, more=""):
    escaped = words.replace("&", "&amp;").replace("<", "&lt;").replace("`", "")
    return f'<text x="{x:.0f}" y="{y:.0f}"{more}>{escaped}</text>\n'


def line(x1, y1, x2, y2, name):
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" class="{name}"/>\n'


def bars(rows, top):
    """A bar for each ratio, a tick at its target, a dashed line where both cost the same."""
    scale = (WIDTH - LEFT - 90) / 2.0
    drawing = text(20, top + 18, "Cost as a ratio to the yardstick of the same run (tick: target)",
                   ' class="title"')
    at = lambda ratio: LEFT + min(ratio, 2.0) * scale
    bottom = top + 34 + BAR * len(rows)
    drawing += line(at(1), top + 30, at(1), bottom, "one")
    for number, row in enumerate(rows):
        y = top + 34 + BAR * number
        kind = "peer" if row.met is None else "met" if row.met else "missed"
        drawing += text(20, y + 14, row.what)
        drawing += (f'<rect x="{LEFT}" y="{y + 2}" width="{max(at(row.ratio) - LEFT, 1):.1f}" '
                    f'height="{BAR - 7}" class="{kind}"/>\n')
        drawing += text(at(row.ratio) + 6, y + 14, f"{row.ratio:.2f}")
        if row.limit is not None:
            drawing += line(at(row.limit), y, at(row.limit), y + BAR - 3, "limit")
    return drawing, bottom


def curve(drawn, left, top, width, height):
    """Both axes are logarithmic: a straight line of slope one is linear growth."""
    points = drawn.points
    logs = [(math.log10(x), math.log10(max(y, 0.01))) for x, y in points]
    low_x, high_x = logs[0][0], max(logs[-1][0], logs[0][0] + 1)
    low_y = min(y for _, y in logs)
    high_y = max(max(y for _, y in logs), low_y + 1)
    place = lambda x, y: (left + (x - low_x) / (high_x - low_x) * width,
                          top + height - (y - low_y) / (high_y - low_y) * height)
    drawing = text(left, top - 10, f"{drawn.title}: ms of CPU over {drawn.unit}", ' class="title"')
    drawing += line(left, top + height, left + width, top + height, "axis")
    drawing += line(left, top, left, top + height, "axis")
    places = [place(x, y) for x, y in logs]
    drawing += '<polyline class="curve" points="{}"/>\n'.format(
        " ".join(f"{x:.1f},{y:.1f}" for x, y in places))
    start = high_y - (high_x - low_x)
    first = place(low_x if start >= low_y else high_x - (high_y - low_y), max(start, low_y))
    last = place(high_x, high_y)
    drawing += line(*first, *last, "linear")
    for (x, y), (size, spent) in zip(places, points):
        drawing += f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" class="point"/>\n'
        drawing += text(x - 4, top + height + 16, f"{size:,}", ' text-anchor="middle"')
        drawing += text(x - 8, y - 6, f"{spent:.3g}", ' text-anchor="end"' if x > left + 40 else "")
    return drawing


def plot(rows, curves):
    shown = [row for row in rows if row.ratio is not None]
    drawing, bottom = bars(shown, 10)
    height = bottom
    for number, drawn in enumerate(curves):
        left = 60 + (number % 2) * 440
        top = bottom + 70 + (number // 2) * 260
        drawing += curve(drawn, left, top, 350, 160)
        height = top + 200
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{height + 20:.0f}" '
            f'viewBox="0 0 {WIDTH} {height + 20:.0f}">\n')
    return head + STYLE + drawing + "</svg>\n"
