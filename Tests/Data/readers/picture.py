"""Prints the size and the first pixel of a PNG without interlacing, after checking every part."""
import struct
import sys
import zlib

data = open(sys.argv[1], "rb").read()
assert data[:8] == b"\x89PNG\r\n\x1a\n", "no PNG"
place, parts = 8, {}
while place < len(data):
    length, kind = struct.unpack(">I4s", data[place : place + 8])
    content = data[place + 8 : place + 8 + length]
    (checksum,) = struct.unpack(">I", data[place + 8 + length : place + 12 + length])
    assert checksum == zlib.crc32(kind + content), kind
    parts[kind] = parts.get(kind, b"") + content
    place += 12 + length
assert place == len(data) and b"IEND" in parts, "cut short"
width, height, depth, colour = struct.unpack(">IIBB", parts[b"IHDR"][:10])
pixels = zlib.decompress(parts[b"IDAT"])
channels = {2: 3, 6: 4}[colour]
assert depth == 8 and len(pixels) == height * (1 + width * channels), "rows are missing"
print("%dx%d #%s" % (width, height, pixels[1:4].hex()))
