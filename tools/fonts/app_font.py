#!/usr/bin/python3
"""Cuts the app's own face out of an installed Noto Sans CJK SC weight.

The face keeps, glyph for glyph, what the app's texts draw (Latin, the
punctuation and arrows of the key legends, and every non-ASCII character of
the given sources) under its own family name. Text drawn in it looks exactly
as in the full face, but a window that shows only these texts never opens
the full face, whose tables cost megabytes once loaded. Characters it lacks
(names the user types) are drawn by the full face behind it.

    app_font.py OUTPUT FONT_FILE FACE_INDEX FAMILY STYLE SOURCE...
"""
import sys

from fontTools import subset
from fontTools.ttLib import TTFont

# Latin with its supplements, general punctuation, the euro and trade
# marks, arrows.
LATIN = [*range(0x20, 0x7F), *range(0xA0, 0x250), *range(0x2000, 0x2070), 0x20AC, 0x2122, *range(0x2190, 0x2200)]


def main(output, font_file, index, family, style, *sources):
    characters = set(LATIN)
    for source in sources:
        with open(source, encoding="utf-8") as text:
            characters.update(ord(c) for c in text.read() if ord(c) > 0x7F)
    options = subset.Options()
    options.layout_features = ["*"]  # shaping as in the full face
    options.name_IDs = ["*"]
    options.font_number = int(index)
    font = subset.load_font(font_file, options)
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=characters)
    subsetter.subset(font)
    postscript = family.replace(" ", "") + "-" + style
    for record in font["name"].names:
        if record.nameID in (1, 16):
            record.string = family
        elif record.nameID in (2, 17):
            record.string = style
        elif record.nameID == 4:
            record.string = family + " " + style
        elif record.nameID in (3, 6):
            record.string = postscript
    if "CFF " in font:
        font["CFF "].cff.fontNames = [postscript]
    subset.save_font(font, output, options)


if __name__ == "__main__":
    if len(sys.argv) < 6:
        sys.exit(__doc__)
    main(*sys.argv[1:])
