#!/usr/bin/python3
"""Draws every picture of Lumenor and writes the resource script that binds them.

Run from anywhere with Debian's Python and python3-pil:

    /usr/bin/python3 tools/art/generate_art.py [--sheet PATH]

Writes res/art/* (bitmaps, icons, animations), res/artwork_ids.h and res/artwork.rc,
and a contact sheet of everything (build/art/contact_sheet.png unless --sheet says
otherwise). The output is the same, byte for byte, on every run; the build never runs
this script, it uses the committed files.

Formats, chosen so that LoadImage, LoadBitmap and ImageList_AddMasked take them as they
are on every Windows version:
  * bitmaps are 24-bit BMPs (bottom-up, BITMAPINFOHEADER), except the check-box mask,
    which is a 1-bit BMP;
  * where a bitmap needs transparency it keys one colour instead of carrying alpha:
    the catalogue pictures key RGB(1,0,0) (the image list adds them with mask colour 1),
    the tree's check boxes, busy strip and done mark key magenta (0xFF00FF), and the
    erase dialog's background marks its cut-away corners with magenta;
  * icons hold 32-bit BGRA DIB images with an AND mask, at 16 and 32 pixels and more;
  * animations are GIF89a with a looping extension.
"""

import argparse
import math
import os
import struct
import sys

from PIL import Image, ImageDraw, ImageFont

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
ART_DIR = os.path.join(ROOT, "res", "art")

# ---------------------------------------------------------------------------------------
# Palette and type

DEEP = (12, 52, 84)          # deep blue: splash, headings
PRIMARY = (17, 104, 148)     # blue-teal: primary buttons, selected tabs, pictograms
TEAL = (22, 150, 156)        # teal: highlights, progress
ACCENT = (240, 154, 32)      # amber: the one accent (erase, one-click, warnings)
INK = (30, 42, 54)           # body text
MUTED = (104, 120, 134)      # secondary text, quiet pictograms
LINE = (200, 212, 222)       # borders
SURFACE = (241, 245, 248)    # light surfaces
TAB_IDLE = (228, 235, 241)   # unselected tabs
WHITE = (255, 255, 255)
DISABLED_BG = (226, 230, 234)
DISABLED_FG = (158, 168, 178)

MAGENTA = (255, 0, 255)      # transparent colour of the tree pictures and dialog corners
CATALOGUE_KEY = (1, 0, 0)    # mask colour 1 of the catalogue image list

# Catalogue families: one muted hue per category; its applications use shades of it.
FAMILY = [
    (36, 110, 186),   # Windows cache and history
    (20, 146, 166),   # internet browsing
    (44, 152, 104),   # instant messaging
    (206, 96, 58),    # office
    (138, 82, 182),   # multimedia
    (190, 132, 24),   # file sharing
    (58, 88, 178),    # mail
    (98, 112, 132),   # third-party applications
    # The rules' categories, after the fixed eight: hues none of the eight uses, so that
    # their applications and items, which show the category's own picture, stand apart.
    (190, 58, 102),   # web browsers today
    (0, 120, 212),    # Windows 10 and 11
    (104, 138, 32),   # applications today
    (146, 60, 140),   # community rules
    (146, 92, 58),    # the user's own rules
]

FONT_DIR = "/usr/share/fonts/truetype/dejavu"
_fonts = {}


def font(size, bold=False):
    key = (size, bold)
    if key not in _fonts:
        name = "DejaVuSans-Bold.ttf" if bold else "DejaVuSans.ttf"
        _fonts[key] = ImageFont.truetype(os.path.join(FONT_DIR, name), size)
    return _fonts[key]


def mix(a, b, t):
    return tuple(int(round(a[i] + (b[i] - a[i]) * t)) for i in range(3))


def lighter(c, t):
    return mix(c, WHITE, t)


def darker(c, t):
    return mix(c, (0, 0, 0), t)


# ---------------------------------------------------------------------------------------
# Drawing helpers

SS = 8  # supersampling factor for shapes


class Pen:
    """Draws on a supersampled RGBA canvas in the coordinates of a 16-unit grid.

    A pictogram is designed once on the 16-pixel grid (whole numbers are pixel edges)
    and rendered at any size; at 16 pixels its straight edges land on pixel edges."""

    def __init__(self, size, grid=16.0):
        self.size = size
        self.unit = SS * size / grid
        self.image = Image.new("RGBA", (size * SS, size * SS), (0, 0, 0, 0))
        self.draw = ImageDraw.Draw(self.image)

    def _p(self, x, y):
        return (x * self.unit, y * self.unit)

    def _box(self, x0, y0, x1, y1):
        return [x0 * self.unit, y0 * self.unit, x1 * self.unit - 1, y1 * self.unit - 1]

    def rect(self, x0, y0, x1, y1, fill):
        self.draw.rectangle(self._box(x0, y0, x1, y1), fill=fill)

    def rrect(self, x0, y0, x1, y1, r, fill=None, outline=None, width=0):
        self.draw.rounded_rectangle(self._box(x0, y0, x1, y1), radius=r * self.unit, fill=fill,
                                    outline=outline, width=int(round(width * self.unit)))

    def ellipse(self, x0, y0, x1, y1, fill=None, outline=None, width=0):
        self.draw.ellipse(self._box(x0, y0, x1, y1), fill=fill, outline=outline,
                          width=int(round(width * self.unit)))

    def poly(self, points, fill):
        self.draw.polygon([self._p(x, y) for x, y in points], fill=fill)

    def line(self, points, width, fill, caps=True):
        pts = [self._p(x, y) for x, y in points]
        w = width * self.unit
        self.draw.line(pts, fill=fill, width=int(round(w)), joint="curve")
        if caps:
            for x, y in (pts[0], pts[-1]):
                self.draw.ellipse([x - w / 2, y - w / 2, x + w / 2, y + w / 2], fill=fill)

    def arc(self, x0, y0, x1, y1, start, end, width, fill):
        self.draw.arc(self._box(x0, y0, x1, y1), start, end, fill=fill,
                      width=int(round(width * self.unit)))

    def text(self, cx, cy, s, size, fill, bold=True):
        f = ImageFont.truetype(os.path.join(FONT_DIR, "DejaVuSans-Bold.ttf" if bold else "DejaVuSans.ttf"),
                               int(round(size * self.unit)))
        self.draw.text(self._p(cx, cy), s, font=f, fill=fill, anchor="mm")

    def result(self):
        return self.image.resize((self.size, self.size), Image.BOX)


def glyph_image(glyph, size, *args, **kwargs):
    pen = Pen(size)
    glyph(pen, *args, **kwargs)
    return pen.result()


def paste_glyph(target, glyph, x, y, size, *args, **kwargs):
    img = glyph_image(glyph, size, *args, **kwargs)
    layer = Image.new("RGBA", target.size, (0, 0, 0, 0))
    layer.paste(img, (x, y))
    target.alpha_composite(layer)


def canvas(w, h, bg):
    return Image.new("RGBA", (w, h), bg + (255,))


def shapes(w, h):
    """A supersampled RGBA layer for shapes of a w x h picture, and its draw object."""
    img = Image.new("RGBA", (w * SS, h * SS), (0, 0, 0, 0))
    return img, ImageDraw.Draw(img)


def flatten(target, layer):
    target.alpha_composite(layer.resize(target.size, Image.BOX))


def ss_box(x0, y0, x1, y1):
    return [x0 * SS, y0 * SS, x1 * SS - 1, y1 * SS - 1]


def vgradient(img, box, top, bottom):
    x0, y0, x1, y1 = box
    d = ImageDraw.Draw(img)
    for y in range(y0, y1):
        t = (y - y0) / max(1, y1 - y0 - 1)
        d.line([(x0, y), (x1 - 1, y)], fill=mix(top, bottom, t) + (255,))


def text_center(img, cx, cy, s, size, fill, bold=False):
    d = ImageDraw.Draw(img)
    d.text((cx, cy), s, font=font(size, bold), fill=fill, anchor="mm")


def text_at(img, x, y, s, size, fill, bold=False, anchor="ls"):
    d = ImageDraw.Draw(img)
    d.text((x, y), s, font=font(size, bold), fill=fill, anchor=anchor)


def text_width(s, size, bold=False):
    return font(size, bold).getlength(s)


# ---------------------------------------------------------------------------------------
# Pictograms, on the 16-unit grid

def g_shield(p, c, mark=WHITE, spark=None):
    p.poly([(8, 0.8), (14.2, 2.8), (14.2, 7.6), (13.4, 10.4), (11.4, 12.9), (8, 15.2),
            (4.6, 12.9), (2.6, 10.4), (1.8, 7.6), (1.8, 2.8)], c)
    star = [(8, 3.6), (9.1, 6.9), (12.4, 8), (9.1, 9.1), (8, 12.4), (6.9, 9.1), (3.6, 8), (6.9, 6.9)]
    p.poly(star, mark)
    if spark:
        p.ellipse(10.5, 3.2, 12.5, 5.2, fill=spark)


def g_window(p, c):
    p.rrect(1, 2, 15, 14, 1.2, fill=c)
    p.rect(2, 5, 14, 13, WHITE)
    p.rect(3, 3, 4, 4, lighter(c, 0.6))
    p.rect(5, 3, 6, 4, lighter(c, 0.6))
    p.rect(4, 7, 12, 8, lighter(c, 0.35))
    p.rect(4, 10, 10, 11, lighter(c, 0.35))


def g_globe(p, c):
    # An odd-sized disc, so that the equator and the meridian sit on whole pixels.
    p.ellipse(1, 1, 16, 16, fill=c)
    p.ellipse(5, 1.6, 12, 15.4, outline=WHITE, width=1)
    p.rect(1.5, 8, 15.5, 9, WHITE)
    p.rect(3, 4, 14, 5, WHITE)
    p.rect(3, 12, 14, 13, WHITE)


def g_chat(p, c):
    p.rrect(1, 2, 15, 12, 3, fill=c)
    p.poly([(4, 11), (4, 15), (8.5, 11)], c)
    for x in (4, 7, 10):
        p.rect(x, 6, x + 2, 8, WHITE)


def g_document(p, c):
    p.poly([(3, 1), (10, 1), (13, 4), (13, 15), (3, 15)], c)
    p.poly([(10, 1), (13, 4), (10, 4)], lighter(c, 0.5))
    p.rect(5, 7, 11, 8, WHITE)
    p.rect(5, 9, 11, 10, WHITE)
    p.rect(5, 11, 9, 12, WHITE)


def g_media(p, c):
    p.rrect(1, 2, 15, 14, 2.5, fill=c)
    p.poly([(6, 4.8), (11.5, 8), (6, 11.2)], WHITE)


def g_share(p, c):
    p.line([(4, 8), (12, 3.5)], 1.5, c)
    p.line([(4, 8), (12, 12.5)], 1.5, c)
    for x, y in ((4, 8), (12, 3.5), (12, 12.5)):
        p.ellipse(x - 3, y - 3, x + 3, y + 3, fill=c)
        p.ellipse(x - 1.2, y - 1.2, x + 1.2, y + 1.2, fill=WHITE)


def g_envelope(p, c):
    p.rrect(1, 3, 15, 13, 1, fill=c)
    p.line([(2, 4.5), (8, 9), (14, 4.5)], 1.2, WHITE)


def g_cube(p, c):
    p.poly([(8, 1), (14.5, 4.5), (8, 8), (1.5, 4.5)], lighter(c, 0.35))
    p.poly([(1.5, 4.5), (8, 8), (8, 15), (1.5, 11.5)], c)
    p.poly([(8, 8), (14.5, 4.5), (14.5, 11.5), (8, 15)], darker(c, 0.25))


def g_browser(p, c):
    p.rrect(1, 1, 15, 15, 1.5, fill=c)
    # The open tab is white like the page it belongs to; the one beside it is closed.
    p.rrect(3, 3, 9, 7, 1, fill=WHITE)
    p.rect(2, 6, 14, 14, WHITE)
    p.rect(10, 4, 13, 5, lighter(c, 0.5))
    p.rrect(3.5, 7.5, 12.5, 9.5, 1, fill=lighter(c, 0.55))
    p.rect(4, 11, 12, 12, lighter(c, 0.3))


def g_panes(p, c):
    # A window of four panes: a 2-unit frame and cross bars, 4-unit panes.
    p.rrect(1, 1, 15, 15, 1.5, fill=c)
    for x in (3, 9):
        for y in (3, 9):
            p.rect(x, y, x + 4, y + 4, WHITE)


def g_app_grid(p, c):
    for x in (1, 6, 11):
        for y in (1, 6, 11):
            p.rrect(x, y, x + 4, y + 4, 1.2, fill=c)


def g_people(p, c):
    back = lighter(c, 0.3)
    p.ellipse(8, 1, 14, 7, fill=back)
    p.rrect(6.5, 8, 16.5, 18, 4, fill=back)
    # The one in front, cut free of the one behind by a white margin.
    p.ellipse(2.5, 3.5, 9.5, 10.5, fill=WHITE)
    p.ellipse(3, 4, 9, 10, fill=c)
    p.rrect(-0.5, 10.5, 12.5, 20, 5, fill=WHITE)
    p.rrect(0, 11, 12, 20, 5, fill=c)


def g_page_pencil(p, c):
    p.poly([(2, 1), (9, 1), (12, 4), (12, 15), (2, 15)], c)
    p.poly([(9, 1), (12, 4), (9, 4)], lighter(c, 0.5))
    p.rect(4, 6, 10, 7, WHITE)
    p.rect(4, 8, 10, 9, WHITE)
    p.rect(4, 10, 7, 11, WHITE)
    # The pencil writes on the page; a white margin keeps it apart from the page.
    lead = darker(c, 0.3)
    p.line([(14.2, 6.8), (8.2, 12.8)], 4.2, WHITE)
    p.line([(14.2, 6.8), (9, 12)], 2.2, lead, caps=False)
    p.poly([(7.4, 13.6), (8.3, 11.3), (9.7, 12.7)], lead)


def g_trash(p, c):
    p.rrect(6, 1, 10, 4, 1, outline=c, width=1)
    p.rect(2, 3, 14, 5, c)
    p.poly([(3, 6), (13, 6), (12, 15), (4, 15)], c)
    for x in (5.5, 7.5, 9.5):
        p.rect(x, 8, x + 1, 13, WHITE)


def g_shredder(p, c):
    p.rect(4, 1, 12, 7, WHITE)
    p.rrect(4, 1, 12, 8, 0.5, outline=c, width=1)
    p.rect(6, 3, 10, 4, c)
    p.rrect(1, 6, 15, 10, 1, fill=c)
    p.rect(11, 7.5, 13, 8.5, lighter(c, 0.6))
    for x in (3, 5, 7, 9, 11):
        p.rect(x, 11, x + 1, 15 if x % 4 == 3 else 14, c)


def g_gear(p, c, hole=WHITE):
    cx = cy = 8
    for i in range(8):
        a = math.radians(i * 45)
        ca, sa = math.cos(a), math.sin(a)
        pts = []
        for r, t in ((4.5, -1.3), (7.3, -1.1), (7.3, 1.1), (4.5, 1.3)):
            pts.append((cx + r * ca - t * sa, cy + r * sa + t * ca))
        p.poly(pts, c)
    p.ellipse(2.5, 2.5, 13.5, 13.5, fill=c)
    p.ellipse(5.5, 5.5, 10.5, 10.5, fill=hole)


def g_help(p, c):
    p.ellipse(1, 1, 15, 15, fill=c)
    p.text(8, 8.4, "?", 11, WHITE)


def g_bolt(p, c):
    p.poly([(9.5, 0.8), (2.8, 9.2), (7.2, 9.2), (6, 15.2), (13.2, 6.4), (8.8, 6.4), (10.6, 0.8)], c)


def g_power(p, c):
    p.arc(2, 2.5, 14, 14.5, -50, 230, 1.8, c)
    p.line([(8, 1.5), (8, 7.5)], 1.8, c)


def g_magnifier(p, c, lens=None):
    if lens:
        p.ellipse(2, 2, 11, 11, fill=lens)
    p.ellipse(1.5, 1.5, 11.5, 11.5, outline=c, width=2)
    p.line([(10, 10), (14, 14)], 2.6, c)


def g_book(p, c):
    p.poly([(1, 3), (7.4, 4), (7.4, 14), (1, 13)], c)
    p.poly([(8.6, 4), (15, 3), (15, 13), (8.6, 14)], darker(c, 0.2))
    p.rect(7.4, 4, 8.6, 14, lighter(c, 0.5))
    for y in (6.5, 9):
        p.line([(2.8, y), (5.8, y + 0.4)], 0.8, WHITE, caps=False)
        p.line([(10.2, y + 0.4), (13.2, y)], 0.8, WHITE, caps=False)


def g_lifebuoy(p, c):
    p.ellipse(1, 1, 15, 15, fill=c)
    p.ellipse(5, 5, 11, 11, fill=WHITE)
    for a in (45, 135, 225, 315):
        p.arc(1.5, 1.5, 14.5, 14.5, a - 14, a + 14, 3.4, WHITE)
    p.ellipse(6.3, 6.3, 9.7, 9.7, fill=(0, 0, 0, 0))


def g_check(p, c, width=2.2):
    p.line([(3, 8.5), (6.5, 12), (13, 4.5)], width, c)


def g_warning(p, c, mark=INK):
    p.poly([(8, 1), (15.3, 14.3), (0.7, 14.3)], c)
    p.rrect(7.1, 5, 8.9, 10.6, 0.8, fill=mark)
    p.ellipse(7.05, 11.4, 8.95, 13.3, fill=mark)


def g_letters(p, c, s):
    p.rrect(1, 1, 15, 15, 3, fill=c)
    p.rrect(1, 1, 15, 8, 3, fill=lighter(c, 0.12))
    p.rect(1, 5, 15, 8, lighter(c, 0.12))
    p.text(8, 8.5, s, 10 if len(s) == 1 else 7.5, WHITE)


# ---------------------------------------------------------------------------------------
# File writers (deterministic)

def save_bmp24(img, path, key=None):
    """24-bit BMP; pixels below half coverage become the key colour when given."""
    rgba = img.convert("RGBA")
    if key is not None:
        out = Image.new("RGB", rgba.size, key)
        px_in = rgba.load()
        px_out = out.load()
        for y in range(rgba.size[1]):
            for x in range(rgba.size[0]):
                r, g, b, a = px_in[x, y]
                if a >= 128:
                    # Keep the opaque colour, never the key itself.
                    c = (r, g, b)
                    if c == key:
                        c = (r, g, b + 1 if b < 255 else b - 1)
                    px_out[x, y] = c
    else:
        out = Image.new("RGB", rgba.size, WHITE)
        out.paste(rgba, (0, 0), rgba)
    out.save(path, format="BMP")
    return out


def save_mask_bmp(mask, path):
    """1-bit BMP: white (1) where the picture is transparent, black (0) where drawn."""
    mask.convert("1").save(path, format="BMP")


def _ico_entry(img):
    """One icon image: BITMAPINFOHEADER, 32-bit BGRA rows bottom-up, then the AND mask."""
    size = img.size[0]
    rgba = img.convert("RGBA")
    px = rgba.load()
    xor = bytearray()
    for y in range(size - 1, -1, -1):
        for x in range(size):
            r, g, b, a = px[x, y]
            xor += bytes((b, g, r, a))
    row_bytes = ((size + 31) // 32) * 4
    andmask = bytearray()
    for y in range(size - 1, -1, -1):
        row = bytearray(row_bytes)
        for x in range(size):
            if px[x, y][3] < 128:
                row[x // 8] |= 0x80 >> (x % 8)
        andmask += row
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(xor) + len(andmask), 0, 0, 0, 0)
    return header + bytes(xor) + bytes(andmask)


def save_ico(images, path):
    images = sorted(images, key=lambda im: im.size[0])
    entries = [_ico_entry(im) for im in images]
    out = bytearray(struct.pack("<HHH", 0, 1, len(images)))
    offset = 6 + 16 * len(images)
    for im, data in zip(images, entries):
        s = im.size[0]
        out += struct.pack("<BBBBHHII", s % 256, s % 256, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    for data in entries:
        out += data
    with open(path, "wb") as f:
        f.write(out)


def save_gif(frames, path, duration_ms):
    """Animated GIF with one palette shared by all frames, looping for ever."""
    w, h = frames[0].size
    strip = Image.new("RGB", (w, h * len(frames)))
    for i, fr in enumerate(frames):
        strip.paste(fr.convert("RGB"), (0, i * h))
    paletted = strip.quantize(colors=128, method=Image.Quantize.MEDIANCUT, dither=Image.Dither.NONE)
    palette = paletted.getpalette()
    parts = []
    for i in range(len(frames)):
        fr = paletted.crop((0, i * h, w, (i + 1) * h))
        fr.putpalette(palette)
        parts.append(fr)
    parts[0].save(path, format="GIF", save_all=True, append_images=parts[1:], duration=duration_ms,
                  loop=0, disposal=1, optimize=False)


# ---------------------------------------------------------------------------------------
# Resources: every picture is registered here with its number, file and C name.

RESOURCES = []   # (block, c_name, number, type, file, note)
PICTURES = {}    # c_name -> Image shown in the contact sheet


def register(block, name, number, kind, filename, image, note=""):
    RESOURCES.append((block, name, number, kind, filename, note))
    PICTURES[name] = (image, number, kind)


def write_bitmap(block, name, number, filename, img, key=None, note=""):
    out = save_bmp24(img, os.path.join(ART_DIR, filename), key)
    register(block, name, number, "BITMAP", filename, out, note)


def write_icon(block, name, number, filename, glyph_fn, sizes, note=""):
    images = [glyph_fn(s) for s in sizes]
    save_ico(images, os.path.join(ART_DIR, filename))
    register(block, name, number, "ICON", filename, images[-1] if len(images) == 1 else images[1], note)


def write_gif(block, name, number, filename, frames, duration, note=""):
    save_gif(frames, os.path.join(ART_DIR, filename), duration)
    register(block, name, number, "GIF", filename, frames[0].convert("RGBA"), note)


# ---------------------------------------------------------------------------------------
# Buttons

STATES = ("normal", "hot", "pressed", "disabled")

STYLE_COLOURS = {
    "primary": PRIMARY,
    "accent": (226, 122, 24),
}


def button(w, h, label, style, state, glyph=None, size=12, radius=4):
    """A picture button face: primary (filled blue), accent (filled amber) or secondary
    (white with a border). Pressed faces sink by one pixel."""
    img = canvas(w, h, WHITE)
    layer, d = shapes(w, h)
    shift = 1 if state == "pressed" else 0
    if style in STYLE_COLOURS:
        base = STYLE_COLOURS[style]
        top, bottom, fg, border = lighter(base, 0.12), base, WHITE, darker(base, 0.12)
        if state == "hot":
            top, bottom = lighter(base, 0.25), lighter(base, 0.1)
        elif state == "pressed":
            top, bottom, border = darker(base, 0.16), darker(base, 0.06), darker(base, 0.25)
    else:
        top, bottom, fg, border = WHITE, SURFACE, PRIMARY, LINE
        if state == "hot":
            top, bottom, border = lighter(PRIMARY, 0.9), lighter(PRIMARY, 0.82), lighter(PRIMARY, 0.45)
        elif state == "pressed":
            top, bottom, border = lighter(PRIMARY, 0.78), lighter(PRIMARY, 0.86), lighter(PRIMARY, 0.3)
    if state == "disabled":
        top, bottom, fg, border = DISABLED_BG, DISABLED_BG, DISABLED_FG, (210, 215, 220)
    # Face: a vertical gradient clipped to a rounded rectangle with a one-pixel border.
    face = Image.new("RGBA", (w, h), (0, 0, 0, 0))
    vgradient(face, (0, 0, w, h), top, bottom)
    mask_layer = Image.new("L", (w * SS, h * SS), 0)
    ImageDraw.Draw(mask_layer).rounded_rectangle(ss_box(0, 0, w, h), radius=radius * SS, fill=255)
    mask = mask_layer.resize((w, h), Image.BOX)
    d.rounded_rectangle(ss_box(0, 0, w, h), radius=radius * SS, fill=border + (255,))
    flatten(img, layer)
    inner_layer = Image.new("L", (w * SS, h * SS), 0)
    ImageDraw.Draw(inner_layer).rounded_rectangle(ss_box(1, 1, w - 1, h - 1), radius=(radius - 1) * SS, fill=255)
    inner = inner_layer.resize((w, h), Image.BOX)
    img.paste(face, (0, 0), inner)
    del mask
    # Content: optional pictogram, then the caption, centred as one group.
    f = font(size, True)
    tw = f.getlength(label)
    gsize = 16 if h >= 24 else 14
    gap = 6
    total = tw + (gsize + gap if glyph else 0)
    x = int(round((w - total) / 2))
    cy = h // 2 + shift
    if glyph:
        paste_glyph(img, glyph, x, cy - gsize // 2, gsize, fg)
        x += gsize + gap
    ImageDraw.Draw(img).text((x, cy), label, font=f, fill=fg, anchor="lm")
    return img


def button_set(block, stem, numbers, w, h, label, style, glyph=None, size=12, states=STATES):
    """Writes one picture per distinct number; numbers follow `states`."""
    done = set()
    for number, state in zip(numbers, states):
        if number in done:
            continue
        done.add(number)
        img = button(w, h, label, style, state, glyph, size)
        write_bitmap(block, f"IDB_{stem}_{state.upper()}", number, f"{stem.lower()}_{state}.bmp", img,
                     note=f'{w}x{h} "{label}" button, {state}')


# ---------------------------------------------------------------------------------------
# Main icon, tray animation and menu icons

def app_mark(size, sweep=None):
    """The product mark: a white shield with an amber light burst on a deep-blue tile.
    With `sweep` (0 to 3) an amber arc circles the tile, one quarter further per frame,
    and the burst turns blue so that the arc carries the motion."""
    r = 3.2 if size <= 16 else 3.6
    img = Image.new("RGBA", (size, size), (0, 0, 0, 0))
    vgradient(img, (0, 0, size, size), mix(DEEP, PRIMARY, 0.6), DEEP)
    tile = Pen(size)
    tile.rrect(0, 0, 16, 16, r, fill=(255, 255, 255, 255))
    img.putalpha(tile.result().split()[3])
    mark = Pen(size)
    k = 0.74
    off = 8 * (1 - k)
    shield = [(8, 0.8), (14.2, 2.8), (14.2, 7.6), (13.4, 10.4), (11.4, 12.9), (8, 15.2),
              (4.6, 12.9), (2.6, 10.4), (1.8, 7.6), (1.8, 2.8)]
    mark.poly([(off + x * k, off + 0.2 + y * k) for x, y in shield], WHITE)
    star = [(8, 3.6), (9.1, 6.9), (12.4, 8), (9.1, 9.1), (8, 12.4), (6.9, 9.1), (3.6, 8), (6.9, 6.9)]
    mark.poly([(off + x * k, off + 0.2 + y * k) for x, y in star], ACCENT if sweep is None else PRIMARY)
    if sweep is not None:
        start = -90 + 90 * sweep
        mark.arc(0.9, 0.9, 15.1, 15.1, start, start + 100, 1.6, ACCENT)
    img.alpha_composite(mark.result())
    return img


def icon_glyph(glyph, colour, **kw):
    return lambda s: glyph_image(glyph, s, colour, **kw)


def make_shell_icons():
    block = "Main window: program icon, notification-area animation and menu icons"
    write_icon(block, "IDI_MAIN", 128, "main.ico", app_mark, (16, 20, 24, 32, 48, 64),
               note="program icon: shield with a light burst on a deep-blue tile")
    # The timer shows frame values 0, 1, 2, 3 as icons 312, 313, 314, 311.
    for frame, number in enumerate((312, 313, 314, 311)):
        write_icon(block, f"IDI_TRAY_FRAME{frame}", number, f"tray_frame{frame}.ico",
                   lambda s, f=frame: app_mark(s, sweep=f), (16, 20, 24, 32),
                   note=f"busy notification icon, frame {frame} (arc at quarter {frame})")
    menu = [
        ("IDI_MENU_SECURITY", 299, "menu_security.ico", g_shield, PRIMARY, "Security(&S)"),
        ("IDI_MENU_JUNK", 386, "menu_junk.ico", g_trash, PRIMARY, "Junk(&J)"),
        ("IDI_MENU_SHREDDER", 297, "menu_shredder.ico", g_shredder, PRIMARY, "Shredder(&F)"),
        ("IDI_MENU_SETTINGS", 300, "menu_settings.ico", g_gear, PRIMARY, "Settings(&O)"),
        ("IDI_MENU_HELP", 231, "menu_help.ico", g_help, PRIMARY, "Help(&H)"),
        ("IDI_MENU_ONE_CLICK", 229, "menu_one_click.ico", g_bolt, ACCENT, "One-click Erase(&C)"),
        ("IDI_MENU_EXIT", 161, "menu_exit.ico", g_power, MUTED, "Exit(&C)"),
    ]
    for name, number, filename, glyph, colour, entry in menu:
        kw = {"mark": WHITE} if glyph is g_shield else {}
        if glyph is g_gear:
            kw = {"hole": (0, 0, 0, 0)}
        write_icon(block, name, number, filename, icon_glyph(glyph, colour, **kw), (16, 32),
                   note=f'menu entry {entry}')


# ---------------------------------------------------------------------------------------
# Main window tabs

TAB_W, TAB_H = 124, 36


def tab(label, glyph, state):
    img = canvas(TAB_W, TAB_H, TAB_IDLE)
    d = ImageDraw.Draw(img)
    if state == "normal":
        fg, gcol, bold = MUTED, MUTED, False
        d.line([(0, TAB_H - 1), (TAB_W - 1, TAB_H - 1)], fill=LINE)
        d.line([(TAB_W - 1, 8), (TAB_W - 1, TAB_H - 9)], fill=LINE)
    elif state == "hot":
        vgradient(img, (0, 0, TAB_W, TAB_H), lighter(PRIMARY, 0.88), lighter(PRIMARY, 0.8))
        fg, gcol, bold = DEEP, PRIMARY, False
        d.line([(0, TAB_H - 1), (TAB_W - 1, TAB_H - 1)], fill=lighter(PRIMARY, 0.5))
    else:
        d.rectangle([0, 0, TAB_W - 1, TAB_H - 1], fill=WHITE)
        d.rectangle([0, 0, TAB_W - 1, 2], fill=ACCENT)
        d.line([(0, 3), (0, TAB_H - 1)], fill=LINE)
        d.line([(TAB_W - 1, 3), (TAB_W - 1, TAB_H - 1)], fill=LINE)
        fg, gcol, bold = DEEP, PRIMARY, True
    f = font(12, bold)
    tw = f.getlength(label)
    x = int(round((TAB_W - (16 + 6 + tw)) / 2))
    cy = TAB_H // 2 + (1 if state == "selected" else 0)
    kw = {"mark": WHITE} if glyph is g_shield else {}
    paste_glyph(img, glyph, x, cy - 8, 16, gcol, **kw)
    d.text((x + 22, cy), label, font=f, fill=fg, anchor="lm")
    return img


def make_tabs():
    block = "Main window: tab strip, pictures per tab in the order normal, hot, selected"
    tabs = [
        ("SCAN", (366, 365, 364), "Privacy Scan", g_shield),
        ("JUNK", (357, 356, 355), "Junk Files", g_trash),
        ("SHRED", (351, 361, 362), "Shredder", g_shredder),
        ("SETTINGS", (202, 200, 199), "Settings", g_gear),
    ]
    for stem, numbers, label, glyph in tabs:
        for number, state in zip(numbers, ("normal", "hot", "selected")):
            write_bitmap(block, f"IDB_TAB_{stem}_{state.upper()}", number, f"tab_{stem.lower()}_{state}.bmp",
                         tab(label, glyph, state), note=f'{TAB_W}x{TAB_H} tab "{label}", {state}')


# ---------------------------------------------------------------------------------------
# Splash

SPLASH_W, SPLASH_H = 456, 300


def splash_base():
    img = canvas(SPLASH_W, SPLASH_H, DEEP)
    px = img.load()
    for y in range(SPLASH_H):
        for x in range(SPLASH_W):
            t = min(1.0, max(0.0, (x * 0.55 + y * 0.9) / (SPLASH_W * 0.55 + SPLASH_H * 0.9)))
            c = mix(mix(DEEP, PRIMARY, 0.55), DEEP, t)
            px[x, y] = c + (255,)
    # Soft rays of light from the upper left.
    layer, d = shapes(SPLASH_W, SPLASH_H)
    for i, (a, spread, alpha) in enumerate(((12, 5, 26), (24, 4, 20), (36, 6, 16), (50, 3, 18))):
        a0, a1 = math.radians(a - spread), math.radians(a + spread)
        r = 800
        pts = [(-40 * SS, -40 * SS), ((-40 + r * math.cos(a0)) * SS, (-40 + r * math.sin(a0)) * SS),
               ((-40 + r * math.cos(a1)) * SS, (-40 + r * math.sin(a1)) * SS)]
        d.polygon(pts, fill=(255, 255, 255, alpha))
    flatten(img, layer)
    return img


def make_splash():
    block = "Splash window"
    plain = splash_base()
    mark = app_mark(96)
    plain.alpha_composite(mark, (44, 84))
    text_at(plain, 162, 138, "Lumenor", 44, WHITE, bold=True)
    text_at(plain, 165, 166, "Privacy Trace Cleaner", 15, lighter(TEAL, 0.55))
    d = ImageDraw.Draw(plain)
    d.rectangle([165, 182, 165 + 36, 184], fill=ACCENT)
    text_at(plain, 165, 206, "Erase histories, caches, junk files", 12, lighter(PRIMARY, 0.65))
    text_at(plain, 165, 224, "and shred what must never come back.", 12, lighter(PRIMARY, 0.65))
    text_at(plain, 24, 280, "Starting\u2026", 11, lighter(PRIMARY, 0.55))
    text_at(plain, SPLASH_W - 24, 280, "Version " + program_version(), 11, lighter(PRIMARY, 0.55), anchor="rs")
    write_bitmap(block, "IDB_SPLASH", 227, "splash.bmp", plain,
                 note="456x300 splash: product mark, name and purpose")

    welcome = splash_base()
    welcome.alpha_composite(app_mark(64), (44, 40))
    text_at(welcome, 124, 84, "Welcome to Lumenor", 26, WHITE, bold=True)
    text_at(welcome, 125, 108, "Privacy Trace Cleaner", 13, lighter(TEAL, 0.55))
    lines = ["Scan for the traces that Windows and your", "applications leave, erase them in one click,",
             "clean junk files and shred private files."]
    for i, s in enumerate(lines):
        text_at(welcome, 44, 160 + 20 * i, s, 12, lighter(PRIMARY, 0.7))
    ImageDraw.Draw(welcome).rectangle([44, 138, 80, 140], fill=ACCENT)
    write_bitmap(block, "IDB_SPLASH_WELCOME", 228, "splash_welcome.bmp", welcome,
                 note="456x300 welcome picture (also the menu side bar's picture)")


# ---------------------------------------------------------------------------------------
# Settings and help pages

PAGE_W = 600


def make_settings():
    block = "Settings page"
    w, h = 580, 340
    img = canvas(w, h, WHITE)
    d = ImageDraw.Draw(img)
    vgradient(img, (0, 0, w, 56), lighter(PRIMARY, 0.9), WHITE)
    d.rectangle([0, 0, w - 1, h - 1], outline=LINE)
    wm = glyph_image(g_gear, 150, lighter(PRIMARY, 0.93), hole=(0, 0, 0, 0))
    img.alpha_composite(wm, (w - 170, h - 170))
    write_bitmap(block, "IDB_SETTINGS_PANEL", 219, "settings_panel.bmp", img,
                 note="580x340 panel drawn at (10,10) behind the settings controls")


HELP_W, HELP_H = 151, 166


def help_card(title, lines, glyph, state):
    img = canvas(HELP_W, HELP_H, WHITE)
    layer, d = shapes(HELP_W, HELP_H)
    shift = 1 if state == "pressed" else 0
    bg = {"normal": WHITE, "hot": lighter(PRIMARY, 0.92), "pressed": lighter(PRIMARY, 0.84)}[state]
    border = {"normal": LINE, "hot": lighter(PRIMARY, 0.35), "pressed": PRIMARY}[state]
    d.rounded_rectangle(ss_box(0, 0, HELP_W, HELP_H), radius=8 * SS, fill=border + (255,))
    d.rounded_rectangle(ss_box(1, 1, HELP_W - 1, HELP_H - 1), radius=7 * SS, fill=bg + (255,))
    disc = lighter(PRIMARY, 0.85) if state == "normal" else WHITE
    d.ellipse(ss_box(HELP_W // 2 - 32, 18 + shift, HELP_W // 2 + 32, 82 + shift), fill=disc + (255,))
    flatten(img, layer)
    paste_glyph(img, glyph, HELP_W // 2 - 20, 30 + shift, 40, PRIMARY)
    text_center(img, HELP_W // 2, 104 + shift, title, 14, DEEP, bold=True)
    for i, s in enumerate(lines):
        text_center(img, HELP_W // 2, 126 + 16 * i + shift, s, 11, MUTED)
    return img


def make_help():
    block = "Help page"
    # The page is white already; the picture is its heading band above the buttons.
    img = canvas(PAGE_W, 170, WHITE)
    vgradient(img, (0, 0, PAGE_W, 160), lighter(PRIMARY, 0.86), WHITE)
    wm = app_mark(120)
    wm.putalpha(wm.split()[3].point(lambda a: a * 14 // 100))
    img.alpha_composite(wm, (PAGE_W - 150, 22))
    text_at(img, 20, 62, "Help and Support", 24, DEEP, bold=True)
    ImageDraw.Draw(img).rectangle([20, 76, 56, 78], fill=ACCENT)
    text_at(img, 20, 104, "Read the manual, or visit our support site for answers", 12, INK)
    text_at(img, 20, 122, "to common questions and to contact the Lumenor team.", 12, INK)
    write_bitmap(block, "IDB_HELP_BACKGROUND", 232, "help_background.bmp", img,
                 note="600x170 heading band: title and introduction above the three buttons")
    cards = [
        ("SUPPORT", (250, 384, 249), "Online Help", ["Answers to", "common questions"], g_lifebuoy),
        ("MANUAL", (252, 385, 251), "User Manual", ["Everything about", "Lumenor, step by step"], g_book),
        ("CONTACT", (248, 383, 253), "Contact Us", ["Ask the Lumenor", "support team"], g_chat),
    ]
    for stem, numbers, title, lines, glyph in cards:
        for number, state in zip(numbers, ("normal", "hot", "pressed")):
            write_bitmap(block, f"IDB_HELP_{stem}_{state.upper()}", number, f"help_{stem.lower()}_{state}.bmp",
                         help_card(title, lines, glyph, state),
                         note=f'{HELP_W}x{HELP_H} help button "{title}", {state}')


# ---------------------------------------------------------------------------------------
# Catalogue pictures (image list of the item trees)

FIXED_CATALOGUE_PICTURES = 37  # indexes the fixed catalogue names; the rules' categories follow

# (index, resource number, C name, what it stands for, family, pictogram or letters)
CATALOGUE = [
    (0, 182, "WINDOWS", "Windows Cache and History", 0, g_window),
    (1, 183, "INTERNET", "Internet Browsing History", 1, g_globe),
    (2, 237, "MESSAGING", "Instant Messaging", 2, g_chat),
    (3, 247, "OFFICE", "MS Office", 3, g_document),
    (4, 321, "MULTIMEDIA", "Multimedia", 4, g_media),
    (5, 260, "FILE_SHARING", "File Sharing", 5, g_share),
    (6, 259, "MAIL", "Mail", 6, g_envelope),
    (7, 258, "THIRD_PARTY", "Third-Party Applications", 7, g_cube),
    (8, 310, "WINDOWS_ENTRIES", "Windows Entries", 0, "W"),
    (9, 246, "INTERNET_EXPLORER", "Internet Explorer", 1, "e"),
    (10, 309, "NETSCAPE", "Netscape Navigator 9.x", 1, "N"),
    (11, 308, "OPERA", "Opera 9.x", 1, "O"),
    (12, 238, "FIREFOX", "Mozilla Firefox 3.x", 1, "F"),
    (13, 316, "ICQ", "ICQ 6.5", 2, "I"),
    (14, 315, "YAHOO_MESSENGER", "Yahoo Instant Messager", 2, "Y"),
    (15, 317, "MSN_MESSENGER", "MSN Messager and Window Living Messager", 2, "M"),
    (16, 318, "SHARED_OFFICE", "Shared Office Resource", 3, "S"),
    (17, 319, "OFFICE_2003", "MS Office 2003", 3, "O"),
    (18, 323, "MEDIA_PLAYER", "Windows Media Player", 4, "W"),
    (19, 333, "WINAMP", "Winamp", 4, "A"),
    (20, 320, "REAL_PLAYER", "Real Player", 4, "R"),
    (21, 336, "DIVX", "DivX Player", 4, "D"),
    (22, 334, "QUICKTIME", "QuickTime", 4, "Q"),
    (23, 345, "ACDSEE", "ACDSee 5.0", 4, "AC"),
    (24, 347, "AZUREUS", "Azureus", 5, "Az"),
    (25, 349, "BITTORRENT", "BitTorrent", 5, "B"),
    (26, 348, "UTORRENT", "uTorrent", 5, "\u00b5"),
    (27, 373, "LIMEWIRE", "Limewire", 5, "L"),
    (28, 374, "BITCOMET", "BitComet", 5, "BC"),
    (29, 338, "OUTLOOK", "Outlook (kept in the list, shown by no node)", 6, "O"),
    (30, 339, "THUNDERBIRD", "Thunderbird", 6, "T"),
    (31, 342, "EUDORA", "Eudora", 6, "E"),
    (32, 343, "POCOMAIL", "PocoMail", 6, "P"),
    (33, 344, "INCREDIMAIL", "IncrediMail", 6, "iM"),
    (34, 390, "ACROBAT", "Adobe Acrobat", 7, "A"),
    (35, 391, "FLASH_PLAYER", "Macromedia Flash Player", 7, "f"),
    (36, 392, "DESKTOP_SEARCH", "Google Desktop Search", 7, "G"),
    # The rules' categories; their applications and items show the same picture.
    (37, 393, "BROWSERS_TODAY", "Web Browsers Today", 8, g_browser),
    (38, 394, "WINDOWS_TODAY", "Windows 10 and 11", 9, g_panes),
    (39, 395, "APPLICATIONS_TODAY", "Applications Today", 10, g_app_grid),
    (40, 396, "COMMUNITY_RULES", "Community Rules (the community's winapp2.ini)", 11, g_people),
    (41, 397, "OWN_RULES", "every category of the user's own rule files", 12, g_page_pencil),
]


def make_catalogue():
    fixed_block = ("Item trees: the catalogue pictures, image-list indexes 0 to 36 in this order, "
                   "16x16, background RGB(1,0,0)")
    rules_block = ("Item trees: the rules' category pictures, image-list indexes 37 to 41, "
                   "16x16, background RGB(1,0,0)")
    shade_step = {}
    for index, number, stem, label, family, art in CATALOGUE:
        block = fixed_block if index < FIXED_CATALOGUE_PICTURES else rules_block
        base = FAMILY[family]
        if callable(art):
            img = glyph_image(art, 16, base)
        else:
            n = shade_step.get(family, 0)
            shade_step[family] = n + 1
            shade = darker(base, 0.08 * (n % 3)) if n % 2 == 0 else lighter(base, 0.06 * (n % 3 + 1))
            img = glyph_image(g_letters, 16, shade, art)
        # Soft edges are finished against the tree's white; the rest becomes the key.
        white = Image.new("RGBA", img.size, WHITE + (255,))
        px, src = white.load(), img.load()
        for y in range(16):
            for x in range(16):
                if src[x, y][3] < 128:
                    px[x, y] = (0, 0, 0, 0)
        solid = Image.new("RGBA", img.size, WHITE + (255,))
        solid.alpha_composite(img)
        solid.putalpha(white.split()[3])
        write_bitmap(block, f"IDB_CATALOGUE_{stem}", number, f"catalogue_{index:02d}_{stem.lower()}.bmp", solid,
                     key=CATALOGUE_KEY, note=f"index {index}: {label}")


# ---------------------------------------------------------------------------------------
# Scan page: buttons, check boxes, busy animation

def check_cell(state):
    """A 16x16 check box cell: 0 none, 1 unticked, 2 partly ticked, 3 ticked."""
    pen = Pen(16)
    if state == 0:
        return pen.result()
    if state == 3:
        pen.rrect(1.5, 1.5, 14.5, 14.5, 2.5, fill=PRIMARY)
        pen.line([(4.3, 8.2), (7, 10.9), (11.8, 5.4)], 1.9, WHITE)
    else:
        pen.rrect(1.5, 1.5, 14.5, 14.5, 2.5, fill=mix(LINE, PRIMARY, 0.35) if state == 2 else MUTED)
        pen.rrect(2.5, 2.5, 13.5, 13.5, 1.6, fill=WHITE)
        if state == 2:
            pen.rrect(5, 5, 11, 11, 1, fill=PRIMARY)
    return pen.result()


def make_scan_page():
    block = "Privacy scan page: picture buttons, four pictures each in the order normal, hot, pressed, disabled"
    button_set(block, "SCAN", (207, 210, 209, 180), 104, 27, "Scan", "primary", g_magnifier)
    button_set(block, "STOP", (273, 274), 128, 29, "Stop", "accent", None, states=("normal", "pressed"))
    button_set(block, "DELETE_ROW", (214, 213, 212, 211), 104, 27, "Delete", "secondary", g_trash)
    button_set(block, "ERASE", (215, 218, 217, 216), 104, 27, "Erase", "accent", g_bolt)
    button_set(block, "SELECT_ALL", (327, 326, 325), 149, 21, "Select All", "secondary", size=11,
               states=("normal", "hot", "pressed"))
    button_set(block, "SELECT_NONE", (324, 332, 331), 149, 21, "Select None", "secondary", size=11,
               states=("normal", "hot", "pressed"))
    button_set(block, "SELECT_DEFAULT", (330, 329, 328), 149, 21, "Select Default", "secondary", size=11,
               states=("normal", "hot", "pressed"))

    block = "Item trees: check-box state pictures, 4 cells of 16x16 (none, unticked, partly ticked, ticked)"
    strip = Image.new("RGBA", (64, 16), (0, 0, 0, 0))
    for state in range(4):
        strip.alpha_composite(check_cell(state), (16 * state, 0))
    write_bitmap(block, "IDB_TREE_CHECKS", 184, "tree_checks.bmp", strip, key=MAGENTA,
                 note="64x16 check-box strip, magenta background")
    mask = Image.new("L", (64, 16), 255)
    mpx, spx = mask.load(), strip.load()
    for y in range(16):
        for x in range(64):
            if spx[x, y][3] >= 128:
                mpx[x, y] = 0
    save_mask_bmp(mask, os.path.join(ART_DIR, "tree_checks_mask.bmp"))
    register(block, "IDB_TREE_CHECKS_MASK", 185, "BITMAP", "tree_checks_mask.bmp", mask.convert("RGBA"),
             "64x16 1-bit mask of the check-box strip, white where transparent")

    block = "Item tree: busy strip (8 frames of 16x16) and done mark, magenta background"
    strip = Image.new("RGBA", (128, 16), (0, 0, 0, 0))
    for frame in range(8):
        pen = Pen(16)
        pen.arc(2, 2, 14, 14, 0, 360, 2.4, lighter(TEAL, 0.7))
        start = -90 + 45 * frame
        pen.arc(2, 2, 14, 14, start, start + 110, 2.4, TEAL)
        strip.alpha_composite(pen.result(), (16 * frame, 0))
    write_bitmap(block, "IDB_TREE_BUSY", 187, "tree_busy.bmp", strip, key=MAGENTA,
                 note="128x16 strip: 8 frames of a turning arc")
    pen = Pen(16)
    pen.ellipse(1, 1, 15, 15, fill=TEAL)
    pen.line([(4.5, 8.3), (7, 10.8), (11.6, 5.6)], 1.9, WHITE)
    write_bitmap(block, "IDB_TREE_DONE", 188, "tree_done.bmp", pen.result(), key=MAGENTA,
                 note="16x16 done mark: white tick on a teal disc")


# ---------------------------------------------------------------------------------------
# Animations

def busy_frames():
    """Scan animation: a magnifier circles over a document whose lines light up."""
    w, h, n = 120, 90, 12
    frames = []
    for i in range(n):
        img = canvas(w, h, WHITE)
        layer, d = shapes(w, h)
        # Document.
        d.rounded_rectangle(ss_box(34, 8, 86, 82), radius=4 * SS, fill=LINE + (255,))
        d.rounded_rectangle(ss_box(35, 9, 85, 81), radius=3 * SS, fill=SURFACE + (255,))
        d.polygon([(72 * SS, 9 * SS), (85 * SS, 22 * SS), (72 * SS, 22 * SS)], fill=LINE + (255,))
        a = 2 * math.pi * i / n
        mx, my = 60 + 17 * math.cos(a), 46 + 14 * math.sin(a)
        for row in range(7):
            y = 28 + 7 * row
            lit = abs(y - my) < 7
            length = (40, 30, 44, 36, 24, 40, 32)[row]
            colour = TEAL if lit else lighter(MUTED, 0.45)
            d.rounded_rectangle(ss_box(41, y, 41 + min(length, 38), y + 3), radius=1.5 * SS, fill=colour + (255,))
        flatten(img, layer)
        glass = Image.new("RGBA", (w, h), (0, 0, 0, 0))
        gl, gd = shapes(w, h)
        r = 15
        gd.ellipse(ss_box(mx - r, my - r, mx + r, my + r), fill=lighter(TEAL, 0.6) + (90,))
        gd.ellipse(ss_box(mx - r, my - r, mx + r, my + r), outline=PRIMARY + (255,), width=4 * SS)
        hx, hy = mx + r * 0.72, my + r * 0.72
        gd.line([(hx * SS, hy * SS), ((hx + 13) * SS, (hy + 13) * SS)], fill=DEEP + (255,), width=7 * SS)
        glass.alpha_composite(gl.resize((w, h), Image.BOX))
        img.alpha_composite(glass)
        frames.append(img)
    return frames


def erase_frames():
    """Erase animation: documents slide into a beam of light and leave as sparkles."""
    w, h, n = 272, 147, 16
    frames = []
    for i in range(n):
        img = canvas(w, h, WHITE)
        layer, d = shapes(w, h)
        # A stack of waiting documents.
        for k in range(3):
            x, y = 24 + 4 * k, 36 - 4 * k
            d.rounded_rectangle(ss_box(x, y, x + 52, y + 68), radius=4 * SS, fill=LINE + (255,))
            d.rounded_rectangle(ss_box(x + 1, y + 1, x + 51, y + 67), radius=3 * SS, fill=WHITE + (255,))
        for row in range(5):
            y = 38 + 10 * row
            d.rounded_rectangle(ss_box(40, y, 40 + (34, 26, 36, 30, 20)[row], y + 4), radius=2 * SS,
                                fill=lighter(MUTED, 0.4) + (255,))
        # The document on its way: from the stack into the beam.
        t = i / n
        x = 40 + 104 * t
        y = 28 + 6 * math.sin(math.pi * t)
        doc_w = 52
        visible = min(doc_w, max(0, 154 - x))
        if visible > 2:
            d.rounded_rectangle(ss_box(x, y, x + visible, y + 68), radius=4 * SS, fill=PRIMARY + (255,))
            d.rounded_rectangle(ss_box(x + 1, y + 1, x + visible - 1, y + 67), radius=3 * SS,
                                fill=lighter(PRIMARY, 0.85) + (255,))
            for row in range(5):
                yy = y + 12 + 10 * row
                length = min((34, 26, 36, 30, 20)[row], visible - 12)
                if length > 2:
                    d.rounded_rectangle(ss_box(x + 8, yy, x + 8 + length, yy + 4), radius=2 * SS,
                                        fill=PRIMARY + (255,))
        # The beam, in front of the document entering it.
        d.rounded_rectangle(ss_box(150, 12, 162, 132), radius=6 * SS, fill=lighter(TEAL, 0.75) + (255,))
        d.rounded_rectangle(ss_box(153, 16, 159, 128), radius=3 * SS, fill=lighter(TEAL, 0.35) + (255,))
        # Sparkles leaving on the right.
        for k in range(6):
            phase = (i / n + k / 6) % 1.0
            sx = 172 + 84 * phase
            sy = 72 + 40 * math.sin(k * 1.7 + phase * 3) * (0.3 + phase)
            size = 7 * (1 - phase) + 2
            colour = ACCENT if k % 2 == 0 else TEAL
            alpha = int(255 * (1 - phase * 0.6))
            cx, cy = sx * SS, sy * SS
            s = size * SS
            d.polygon([(cx, cy - s), (cx + s * 0.3, cy - s * 0.3), (cx + s, cy), (cx + s * 0.3, cy + s * 0.3),
                       (cx, cy + s), (cx - s * 0.3, cy + s * 0.3), (cx - s, cy), (cx - s * 0.3, cy - s * 0.3)],
                      fill=colour + (alpha,))
        flatten(img, layer)
        frames.append(img)
    return frames


def make_animations():
    write_gif("Privacy scan and junk pages: busy animation", "IDR_GIF_BUSY", 206, "busy.gif", busy_frames(), 90,
              note="120x90, 12 frames: a magnifier circling over a document")
    write_gif("Erase progress dialog", "IDR_GIF_ERASE", 245, "erase.gif", erase_frames(), 70,
              note="272x147, 16 frames: documents dissolving in a beam of light")


# ---------------------------------------------------------------------------------------
# Erase progress dialog

ERASE_W, ERASE_H = 429, 302


def make_erase_dialog():
    block = "Erase progress dialog"
    img = canvas(ERASE_W, ERASE_H, WHITE)
    dd = ImageDraw.Draw(img)
    # Lower band behind the counters, the warning and the buttons.
    dd.rectangle([0, 166, ERASE_W - 1, ERASE_H - 1], fill=SURFACE)
    dd.line([(0, 166), (ERASE_W - 1, 166)], fill=LINE)
    layer, d = shapes(ERASE_W, ERASE_H)
    d.rounded_rectangle(ss_box(0, 0, ERASE_W, ERASE_H), radius=10 * SS, outline=DEEP + (255,), width=SS)
    flatten(img, layer)
    # Cut the corners: every pixel whose centre lies outside the rounded outline is pure
    # magenta, so the window's region follows the frame; the outline's soft pixels inside
    # were blended with the dialog's own colours, never with magenta.
    px = img.load()
    r = 10
    for y in range(ERASE_H):
        for x in range(ERASE_W):
            cx = r if x < r else ERASE_W - r if x >= ERASE_W - r else None
            cy = r if y < r else ERASE_H - r if y >= ERASE_H - r else None
            if cx is not None and cy is not None:
                if math.hypot(x + 0.5 - cx, y + 0.5 - cy) > r:
                    px[x, y] = MAGENTA + (255,)
    # Heading and picture on the left of the animation.
    img.alpha_composite(app_mark(48), (24, 20))
    text_at(img, 24, 96, "Erasing", 18, DEEP, bold=True)
    text_at(img, 24, 116, "traces\u2026", 18, DEEP, bold=True)
    text_at(img, 24, 138, "Please wait.", 11, MUTED)
    text_at(img, 24, 160, "Progress", 10, MUTED)
    # Counter wells behind the two digit displays.
    for top, label in ((176, "Deleted:"), (213, "Failed:")):
        well, wd = shapes(ERASE_W, ERASE_H)
        wd.rounded_rectangle(ss_box(149, top - 3, 246, top + 27), radius=4 * SS, fill=(18, 30, 40, 255))
        flatten(img, well)
        text_at(img, 140, top + 17, label, 13, INK, bold=True, anchor="rs")
    write_bitmap(block, "IDB_ERASE_BACKGROUND", 236, "erase_background.bmp", img,
                 note="429x302 dialog picture, magenta outside the rounded corners")

    cells = canvas(48, 11, WHITE)
    cl, cd = shapes(48, 11)
    cd.rounded_rectangle(ss_box(0, 0, 22, 11), radius=2 * SS, fill=TEAL + (255,))
    cd.rounded_rectangle(ss_box(24, 0, 46, 11), radius=2 * SS, fill=LINE + (255,))
    flatten(cells, cl)
    ImageDraw.Draw(cells).line([(2, 1), (19, 1)], fill=lighter(TEAL, 0.4))
    write_bitmap(block, "IDB_ERASE_CELLS", 254, "erase_cells.bmp", cells,
                 note="48x11: lit progress cell at x 0, unlit at x 24 (24x11 each)")

    warn = canvas(275, 42, SURFACE)
    paste_glyph(warn, g_warning, 6, 6, 28, ACCENT)
    text_at(warn, 42, 18, "Some traces could not be deleted.", 11, INK, bold=True)
    text_at(warn, 42, 34, "They may be in use by another program.", 11, MUTED)
    write_bitmap(block, "IDB_ERASE_WARNING", 341, "erase_warning.bmp", warn,
                 note="275x42 warning shown when some deletions failed")

    bblock = "Erase progress dialog: picture buttons, in the order normal, hot, pressed"
    for stem, numbers, label, style in (("ERASE_CLOSE", (239, 241, 240), "Close", "primary"),
                                        ("ERASE_CANCEL", (242, 244, 243), "Cancel", "secondary")):
        done = set()
        for number, state in zip(numbers, ("normal", "hot", "pressed")):
            if number in done:
                continue
            done.add(number)
            write_bitmap(bblock, f"IDB_{stem}_{state.upper()}", number, f"{stem.lower()}_{state}.bmp",
                         button(64, 20, label, style, state, size=11, radius=3),
                         note=f'64x20 "{label}" button, {state}')


# ---------------------------------------------------------------------------------------
# Pictures the pages need that carry no fixed number: the settings page's save button,
# the junk page's buttons and tabs, the shred button's two looks.

def make_page_extras():
    block = "Settings page: save button, in the order normal, hot, pressed, disabled"
    button_set(block, "SETTINGS_SAVE", (501, 502, 503, 504), 104, 27, "Save", "primary")
    block = "Junk page: set-up start button and result page buttons, normal, hot, pressed, disabled"
    button_set(block, "JUNK_START", (511, 512, 513, 514), 104, 27, "Start", "primary", g_magnifier)
    button_set(block, "JUNK_STOP", (515, 516, 517, 518), 104, 27, "Stop", "accent")
    button_set(block, "JUNK_DELETE", (519, 520, 521, 522), 104, 27, "Delete", "secondary", g_trash)
    button_set(block, "JUNK_DELETE_ALL", (523, 524, 525, 526), 104, 27, "Delete All", "accent")
    block = "Junk page: two-tab strip, pictures per tab in the order normal, hot, selected"
    for stem, numbers, label, glyph in (("SETUP", (531, 532, 533), "Set up", g_gear),
                                        ("RESULTS", (534, 535, 536), "Results", g_document)):
        for number, state in zip(numbers, ("normal", "hot", "selected")):
            write_bitmap(block, f"IDB_JUNK_TAB_{stem}_{state.upper()}", number,
                         f"junk_tab_{stem.lower()}_{state}.bmp", tab(label, glyph, state),
                         note=f'{TAB_W}x{TAB_H} junk tab "{label}", {state}')
    block = "Shred page: shred button, idle look then running look, each normal, hot, pressed, disabled"
    button_set(block, "SHRED", (541, 542, 543, 544), 104, 27, "Shred", "accent", g_shredder)
    button_set(block, "SHRED_STOP", (545, 546, 547, 548), 104, 27, "Stop", "primary")


# ---------------------------------------------------------------------------------------
# Resource script, ids header, contact sheet

HEADER_COLUMNS = 120  # the column limit of the project's .clang-format


def write_header_and_script():
    blocks = []
    for block, name, number, kind, filename, note in RESOURCES:
        if not blocks or blocks[-1][0] != block:
            blocks.append((block, []))
        blocks[-1][1].append((name, number, kind, filename, note))
    h = ["// Numbers of the program's pictures: bitmaps, icons and GIF animations, by page.",
         "// Written by tools/art/generate_art.py together with res/artwork.rc; edit the script,",
         "// not this file. Picture buttons list their pictures in the order the skinned",
         "// button takes them: normal, hot (mouse over), pressed, disabled.",
         "#pragma once", ""]
    rc = ["// Pictures of the program, drawn by tools/art/generate_art.py (do not edit by hand).",
          '#include "artwork_ids.h"', ""]
    for block, items in blocks:
        h.append(f"// {block}")
        rc.append(f"// {block}")
        width = max(len(n) for n, *_ in items)
        # The header is laid out as clang-format lays it out (the project formats every
        # header with it): definitions unpadded, the block's comments in one column two
        # spaces after its longest definition.
        definitions = [f"#define {name} {number}" for name, number, *_ in items]
        column = max(len(d) for d in definitions) + 2
        for definition, (name, number, kind, filename, note) in zip(definitions, items):
            h.append(f"{definition.ljust(column)}// {note}")
            rc.append(f'{name.ljust(width)} {kind.ljust(6)} "res/art/{filename}"')
        h.append("")
        rc.append("")
    too_long = [line for line in h if len(line) > HEADER_COLUMNS]
    if too_long:
        sys.exit(f"res/artwork_ids.h: lines longer than {HEADER_COLUMNS} columns, which clang-format "
                 f"would rearrange: {too_long}")
    with open(os.path.join(ROOT, "res", "artwork_ids.h"), "w", newline="\n") as f:
        f.write("\n".join(h))
    with open(os.path.join(ROOT, "res", "artwork.rc"), "w", newline="\n") as f:
        f.write("\n".join(rc))


def contact_sheet(path):
    """Every picture on one page, labelled with its number, for looking the set over."""
    items = [(name,) + PICTURES[name] for _, name, *_ in RESOURCES]
    col_w, pad = 620, 12
    x = y = pad
    row_h = 0
    placed = []
    for name, img, number, kind in items:
        scale = 2 if img.size[0] <= 64 and img.size[1] <= 32 else 1
        w, h = img.size[0] * scale, img.size[1] * scale + 14
        if x + w > 1240:
            x, y = pad, y + row_h + pad
            row_h = 0
        placed.append((x, y, name, img, number, kind, scale))
        x += max(w, 60) + pad
        row_h = max(row_h, h)
    sheet = Image.new("RGB", (1240 + pad, y + row_h + pad), (214, 220, 226))
    d = ImageDraw.Draw(sheet)
    for x, y, name, img, number, kind, scale in placed:
        shown = img.convert("RGBA")
        if scale != 1:
            shown = shown.resize((img.size[0] * scale, img.size[1] * scale), Image.NEAREST)
        backdrop = Image.new("RGBA", shown.size, WHITE + (255,))
        backdrop.alpha_composite(shown)
        sheet.paste(backdrop.convert("RGB"), (x, y + 14))
        d.text((x, y), f"{number} {kind[0]}", font=font(10), fill=INK)
    del col_w
    os.makedirs(os.path.dirname(path), exist_ok=True)
    sheet.save(path)


def program_version():
    """The version as the program tells it: major.minor, from res/version.h."""
    parts = {}
    with open(os.path.join(ROOT, "res", "version.h"), encoding="utf-8") as header:
        for line in header:
            words = line.split()
            if len(words) == 3 and words[0] == "#define" and words[1].startswith("LUMENOR_VERSION_"):
                parts[words[1][len("LUMENOR_VERSION_"):]] = words[2]
    return "%s.%s" % (parts["MAJOR"], parts["MINOR"])


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--sheet", default=os.path.join(ROOT, "build", "art", "contact_sheet.png"))
    args = parser.parse_args()
    os.makedirs(ART_DIR, exist_ok=True)
    for old in os.listdir(ART_DIR):
        os.remove(os.path.join(ART_DIR, old))
    make_splash()
    make_shell_icons()
    make_tabs()
    make_settings()
    make_help()
    make_catalogue()
    make_scan_page()
    make_animations()
    make_erase_dialog()
    make_page_extras()
    write_header_and_script()
    contact_sheet(args.sheet)
    numbers = {}
    for _, name, number, kind, *_ in RESOURCES:
        if (kind, number) in numbers:
            sys.exit(f"{kind} {number} drawn twice: {numbers[(kind, number)]} and {name}")
        numbers[(kind, number)] = name
    print(f"{len(RESOURCES)} pictures written to {ART_DIR}; contact sheet {args.sheet}")


if __name__ == "__main__":
    main()
