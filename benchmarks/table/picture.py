"""The table as a picture: for each line how much of its goal is used, in SVG."""

from xml.sax.saxutils import escape

import goals

ROW, TOP, NAMES, WIDTH, FIGURES = 22, 34, 330, 420, 190
SCALE = 1.5  # the goal is at 1; longer bars are cut here
COLOURS = {"met": "#2a7d4f", "missed": "#b3442e"}


def used(goal, row):
    """1: just so; less is better."""
    if goal.ratio is not None:
        return goals.ratio(row) / goal.ratio
    return row["ours"] / goal.most if goal.most is not None else goal.least / max(row["ours"], 1e-9)


def draw(file, lines):
    """`lines`: those of the table with the row behind each."""
    by_name = {goal.name: goal for goal in goals.GOALS}
    height = TOP + ROW * len(lines) + 10
    goal_x = NAMES + WIDTH / SCALE
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{NAMES + WIDTH + FIGURES}" height="{height}" '
             'font-family="DejaVu Sans, sans-serif" font-size="12">',
             '<rect width="100%" height="100%" fill="#ffffff"/>',
             f'<text x="{goal_x}" y="16" text-anchor="middle" fill="#444444">goal</text>',
             f'<text x="{NAMES}" y="16" fill="#444444">shorter is better</text>']
    for index, (line, row) in enumerate(lines):
        y = TOP + ROW * index
        share = min(used(by_name[line[0]], row), SCALE)
        figures = line[1] + (f", ratio {line[3]}" if line[3] != "-" else "")
        parts += [f'<text x="{NAMES - 8}" y="{y + 11}" text-anchor="end" fill="#222222">{escape(line[0])}</text>',
                  f'<rect x="{NAMES}" y="{y}" width="{max(1, share / SCALE * WIDTH):.0f}" height="{ROW - 8}" fill="{COLOURS[line[5]]}"/>',
                  f'<text x="{NAMES + WIDTH + 8}" y="{y + 11}" fill="#222222">{escape(figures)}</text>']
    parts.append(f'<line x1="{goal_x}" y1="{TOP - 10}" x2="{goal_x}" y2="{height - 8}" stroke="#222222" stroke-dasharray="4 3"/>')
    file.write_text("\n".join([*parts, "</svg>"]) + "\n", encoding="utf-8")
