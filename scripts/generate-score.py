#!/usr/bin/env python3
"""Writes a synthetic score to stdout: so many measures of so many staves, some of them empty, some with rests.

Usage: scripts/generate-score.py [--measures 10000] [--staves 40] [--seed 1] > large.musicxml
The same arguments give the same bytes.
"""
import argparse
import random
import sys

parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
parser.add_argument("--measures", type=int, default=10000)
parser.add_argument("--staves", type=int, default=40)
parser.add_argument("--seed", type=int, default=1)
options = parser.parse_args()

STEPS = "CDEFGAB"
REST = """      <note>
        <rest measure="yes"/>
        <duration>8</duration>
        <voice>1</voice>
      </note>
"""
ATTRIBUTES = """      <attributes>
        <divisions>2</divisions>
        <key><fifths>0</fifths></key>
        <time><beats>4</beats><beat-type>4</beat-type></time>
        <clef><sign>G</sign><line>2</line></clef>
      </attributes>
"""


def note(draw, duration, kind):
    pitch = f"<step>{draw.choice(STEPS)}</step><octave>{draw.randint(3, 6)}</octave>"
    return f"""      <note>
        <pitch>{pitch}</pitch>
        <duration>{duration}</duration>
        <voice>1</voice>
        <type>{kind}</type>
        <stem>up</stem>
      </note>
"""


def measure(draw):
    """One in eight is empty, one in eight a whole-measure rest, the others are quarters or eighths."""
    choice = draw.randrange(8)
    if choice == 0:
        return ""
    if choice == 1:
        return REST
    if choice % 2:
        return "".join(note(draw, 1, "eighth") for _ in range(8))
    return "".join(note(draw, 2, "quarter") for _ in range(4))


def main():
    write = sys.stdout.write
    write('<?xml version="1.0" encoding="UTF-8"?>\n<score-partwise version="4.0">\n  <part-list>\n')
    for staff in range(1, options.staves + 1):
        write(f'    <score-part id="P{staff}"><part-name>Part {staff}</part-name></score-part>\n')
    write("  </part-list>\n")
    draw = random.Random(options.seed)
    for staff in range(1, options.staves + 1):
        write(f'  <part id="P{staff}">\n')
        for number in range(1, options.measures + 1):
            write(f'    <measure number="{number}">\n')
            write((ATTRIBUTES if number == 1 else "") + measure(draw))
            write("    </measure>\n")
        write("  </part>\n")
    write("</score-partwise>\n")


main()
