#!/usr/bin/env python3
"""Writes data/StatusReportLayout.rtf, the layout of a project's first status report, from the parts below.

What the program looks for in it: bookmarks around the texts of the head; a table of four-cell rows that is not the
first row of the document, with a mark in its colour in the first and third cell; two pictures with an identity, the
budget plot first; and at the very end the key, in which each letter is followed by a word in its colour.
"""
import os
import struct
import zlib

COLORS = [(0, 0, 0), (0, 130, 60), (176, 128, 0), (200, 30, 30), (31, 56, 100), (110, 110, 110), (230, 235, 243)]
BLACK, GREEN, YELLOW, RED, BLUE, GREY, PALE = range(1, 8)
WIDTH = 9600  # twips between the margins
PICTURE = (1512, 945, 9071, 5669)  # pixels, twips

ROWS = [
    ("Scope", "What is to be delivered, and changes to it"),
    ("Time", "Milestones and finish against the plan"),
    ("Cost", "Spent and to come against the budget"),
    ("Quality", "Tests, reviews, defects"),
    ("Risk", "What may go wrong, and what is done about it"),
]


def placeholder():
    """A PNG of the size of the pictures, pale grey: the place that the first report fills."""
    wide, high = PICTURE[:2]
    line = b"\0" + b"\xff" * ((wide + 7) // 8)

    def chunk(name, data):
        return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))

    return (
        b"\x89PNG\r\n\x1a\n"
        + chunk(b"IHDR", struct.pack(">IIBBBBB", wide, high, 1, 3, 0, 0, 0))
        + chunk(b"PLTE", bytes([200, 200, 200, 246, 246, 246]))
        + chunk(b"IDAT", zlib.compress(line * high, 9))
        + chunk(b"IEND", b"")
    ).hex()


def bookmark(name, text):
    return rf"{{\*\bkmkstart {name}}}{text}{{\*\bkmkend {name}}}"


def paragraph(text, style=r"\sa100"):
    return rf"\pard\plain\f0\fs20\cf{BLACK}{style} {text}\par"


def heading(text, before=240):
    return paragraph(text, rf"\sb{before}\sa80\keepn\b\fs26\cf{BLUE}")


def cell_ends(widths, shade):
    line = r"\brdrs\brdrw10\brdrcf%d" % GREY
    edges = "".join(rf"\clbrdr{side}{line}" for side in "tlbr")
    ends, text = 0, ""
    for width in widths:
        ends += width
        text += rf"\clvertalc{edges}" + (rf"\clcbpat{PALE}" if shade else "") + rf"\cellx{ends}"
    return text


def row(widths, cells, shade=False):
    head = r"\trhdr" if shade else ""
    return "\n".join([rf"\trowd\trgaph90{head}\trkeep{cell_ends(widths, shade)}", *cells, r"\row"])


def cell(text, style=r"\ql"):
    return rf"\pard\plain\intbl\f0\fs20\cf{BLACK}{style}\sb40\sa40 {text}\cell"


def mark():
    return rf"\pard\plain\intbl\f0\fs24\b\qc\sb40\sa40{{\cf{GREEN} G}}\cell"


def picture(identity):
    wide, high, goal_wide, goal_high = PICTURE
    return paragraph(
        rf"{{\pict\pngblip\picw{wide}\pich{high}\picwgoal{goal_wide}\pichgoal{goal_high}"
        rf"\picscalex100\picscaley100{{\*\blipuid {identity}}}" + "\n" + placeholder() + "}",
        r"\qc\sb60\sa60",
    )


def bullet(text):
    return paragraph(r"\bullet\tab " + text, r"\fi-300\li300\tx300\sa60")


def document():
    colors = "".join(rf"\red{r}\green{g}\blue{b};" for r, g, b in COLORS)
    yield r"{\rtf1\ansi\ansicpg1252\deff0\uc1"
    yield r"{\fonttbl{\f0\fswiss\fcharset0 Arial;}}"
    yield rf"{{\colortbl;{colors}}}"
    yield r"{\info{\title Status report}}"
    yield r"\paperw11906\paperh16838\margl1153\margr1153\margt900\margb900"
    yield rf"{{\footer\pard\plain\f0\fs16\cf{GREY}\qr Page {{\field{{\*\fldinst PAGE}}{{\fldrslt 1}}}}\par}}"
    yield paragraph("Status report", rf"\sa40\b\fs36\cf{BLUE}")
    yield paragraph(bookmark("VortanDescription", "What the project is about"), rf"\sa120\fs22\cf{GREY}")
    head = [WIDTH // 3] * 3
    yield row(
        head,
        [
            cell(r"{\b Project: }" + bookmark("VortanProject", "name")),
            cell(r"{\b Journal: }" + bookmark("VortanJournal", "date")),
            cell(r"{\b Manager: }" + bookmark("VortanManager", "name")),
        ],
        shade=True,
    )
    yield heading("Summary")
    yield paragraph("Where the project stands, in two or three sentences.")
    yield heading("Status")
    table = [1300, 2900, 1300, WIDTH - 5500]
    bold = r"\b"
    yield row(
        table,
        [
            cell("Previous", r"\qc" + bold),
            cell("Subject", bold),
            cell("Present", r"\qc" + bold),
            cell("Remarks", bold),
        ],
        shade=True,
    )
    for name, remark in ROWS:
        yield row(table, [mark(), cell(name), mark(), cell(remark, rf"\cf{GREY}")])
    yield heading("Cost")
    yield picture("a7c1d20e5b3f49d8920c6b1e4f8a3d71")
    yield r"\pard\plain\page"
    yield heading("Schedule", 0)
    yield picture("3e90b6f4187a4c25b5d2e07f61c98a44")
    yield heading("Accomplishments")
    yield bullet("What was finished since the last report.")
    yield heading("Plans")
    yield bullet("What is to be done until the next report.")
    yield heading("Issues")
    yield bullet("What needs a decision or help, of whom, and until when.")
    words = [("G", GREEN, "on plan"), ("Y", YELLOW, "to be watched"), ("R", RED, "action needed")]
    key = r"\tab ".join(rf"{letter}{{\cf{color}  {text}}}" for letter, color, text in words)
    yield paragraph("Marks: " + r"\tab " + key, r"\sb300\fs18\tx900\tx2900\tx5400")
    yield "}"


def main():
    target = os.path.join(os.path.dirname(__file__), "..", "data", "StatusReportLayout.rtf")
    with open(target, "w", encoding="ascii", newline="\r\n") as file:
        file.write("\n".join(document()) + "\n")


if __name__ == "__main__":
    main()
