"""A screenshot as a PNG file."""

import struct
import zlib

from Xlib import X


def _chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def save(root, path):
    """Writes what the root window shows, 24 or 32 bits deep, little endian."""
    size = root.get_geometry()
    data = root.get_image(0, 0, size.width, size.height, X.ZPixmap, 0xFFFFFFFF).data
    pixels = bytearray(3 * size.width * size.height)
    pixels[0::3], pixels[1::3], pixels[2::3] = data[2::4], data[1::4], data[0::4]
    stride = 3 * size.width
    rows = b"".join(b"\0" + bytes(pixels[y * stride:(y + 1) * stride]) for y in range(size.height))
    header = struct.pack(">IIBBBBB", size.width, size.height, 8, 2, 0, 0, 0)
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + _chunk(b"IHDR", header) + _chunk(b"IDAT", zlib.compress(rows, 6)) +
                     _chunk(b"IEND", b""))
