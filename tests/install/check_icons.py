"""check_icons.py THEME NAME SIZE ...: the PNG pictures of an icon have the size of their folder, and a drawing."""
import pathlib
import struct
import sys
import zlib

THE_LEAST_DRAWN = 2  # bytes a row that differ from those beside them; the first of each row names its filter


def chunks(png):
    at = 8
    while at < len(png):
        length, kind = struct.unpack_from(">I4s", png, at)
        yield kind, png[at + 8:at + 8 + length]
        at += 12 + length


def fault(png, size):
    if png[:8] != b"\x89PNG\r\n\x1a\n" or struct.unpack_from(">II", png, 16) != (size, size):
        return f"is not a picture of {size} pixels"
    pixels = zlib.decompress(b"".join(data for kind, data in chunks(png) if kind == b"IDAT"))
    drawn = sum(1 for byte in pixels if byte)
    return None if drawn > THE_LEAST_DRAWN * size else "is empty"


theme, name, *sizes = sys.argv[1:]
faults = []
for size in map(int, sizes):
    file = pathlib.Path(theme, f"{size}x{size}", f"{name}.png")
    found = fault(file.read_bytes(), size) if file.exists() else "is missing"
    if found:
        faults.append(f"{file} {found}")
sys.exit("\n".join(faults) if faults else 0)
