"""Recomputes the decoding of random lines of every kind and compares it with decode_dump, field by field.

Usage: decode_check.py DECODE_DUMP. Lines come from a fixed seed. All numbers must be equal, not merely close.
"""

import math
import random
import re
import struct
import subprocess
import sys

SLOTS = 13
SCALARS = ("Format Time Hundredths DayFraction ElapsedCount Error Pressure Temp Voltage VSubB VBack Trans TBgnd "
           "LEDDrive Temp2 Temp3 ElapsedHundredths").split()
ARRAYS = "Gain Sig SigOff Ref RefOff Snorm SnormF Bgnd".split()
NUMBER = re.compile(rb"[ \t]*([+-]?(?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][+-]?[0-9]+)?)")


# --- numbers ----------------------------------------------------------------------------------------

def single(value):
    """The value as a 32-bit float."""
    try:
        return struct.unpack("<f", struct.pack("<f", value))[0]
    except OverflowError:
        return math.copysign(math.inf, value)


def val(text):
    found = NUMBER.match(text)
    if not found:
        return 0.0
    value = float(found.group(1))
    return value if math.isfinite(value) else 0.0


def whole(value, bits):
    """Rounded, halves to even; 0 when it does not fit."""
    value = round(value)
    return value if -(1 << bits - 1) <= value < 1 << bits - 1 else 0


def hexa(line, position, width):
    """A field at a position counted from 1: the value of its leading hexadecimal digits."""
    field = line[position - 1:position - 1 + width]
    digits = re.match(rb"[0-9A-Fa-f]*", field).group(0)
    return int(digits, 16) if digits else 0


def hexa16(line, position):
    value = hexa(line, position, 4)
    return value if value < 32768 else 0


# --- classification ---------------------------------------------------------------------------------

def checksum_ok(line):
    if len(line) < 2:
        return False
    expected = hexa(line, len(line) - 1, 2)
    total = sum(line[1:-2])
    return expected in (total % 256, (total + line[0]) % 256)


def number_chars(line):
    return re.match(rb"[-+.]*[0-9]", line) is not None


HEX_KINDS = {b"D": 1, b"T": 2, b"H": 3, b"V": 4, b"A": 5, b"C": 6, b"I": 7}
DECIMAL_KINDS = {5: 8, 6: 10, 13: 10, 11: 9, 12: 9, 53: 11, 15: 13, 19: 14, 21: 15, 8: 16, 16: 18}


def classify(line):
    if line[:1] == b"*":
        return HEX_KINDS.get(line[1:2], 0) if checksum_ok(line) else 0
    if line.count(b",") == 54:
        return 12
    return DECIMAL_KINDS.get(line.count(b","), 0) if number_chars(line) else 0


# --- decoders ---------------------------------------------------------------------------------------

def new_sample():
    sample = {name: 0 for name in SCALARS}
    sample.update({name: [0] * SLOTS for name in ARRAYS})
    return sample


def clear(sample, *names):
    for name in names:
        sample[name] = [0] * SLOTS


def corvane_hex(line, s, shift):
    s["Time"] = hexa(line, 3, 8)
    s["Hundredths"] = hexa(line, 11, 2) if shift else 0
    for i in range(8):
        s["Snorm"][i] = hexa(line, 11 + shift + 4 * i, 4)
        s["Gain"][i] = hexa(line, 43 + shift + i, 1)
    s["Pressure"] = hexa(line, 51 + shift, 4)
    s["Temp"] = single(hexa(line, 55 + shift, 2) / 5 - 10)
    s["Error"] = hexa(line, 57 + shift, 2)
    clear(s, "Sig", "SigOff", "Ref", "RefOff")


def verbose_hex(line, s):
    s["Time"] = hexa(line, 3, 8)
    s["Hundredths"] = 0
    clear(s, "Snorm")
    for i in range(8):
        at = 11 + 18 * i
        s["Sig"][i] = hexa(line, at, 4)
        s["SigOff"][i] = hexa16(line, at + 4)
        s["Ref"][i] = hexa(line, at + 8, 4)
        s["RefOff"][i] = hexa16(line, at + 12)
        s["Bgnd"][i] = hexa(line, at + 16, 2)
        s["Gain"][i] = hexa(line, 155 + i, 1)
    s["Pressure"] = hexa(line, 163, 4)
    for name, position in (("Temp", 167), ("Voltage", 169), ("VSubB", 171), ("VBack", 173)):
        s[name] = hexa(line, position, 2)
    for i in range(9):
        reference = s["Ref"][i] - s["RefOff"][i]
        s["SnormF"][i] = single((s["Sig"][i] - s["SigOff"][i]) / reference) if reference else 0


def verbose_decimal(record, s):
    values = [val(field) for field in record.split(b",")]
    values += [None] * 60

    def take(count):
        taken = [0.0 if v is None else v for v in values[:count]]
        del values[:count]
        return taken

    s["Time"] = 0
    s["Hundredths"] = 0
    clear(s, "Snorm")
    s["ElapsedCount"] = whole(take(1)[0], 32)
    s["DayFraction"] = s["ElapsedCount"] * 1.1574074074074073e-5 / 100
    for i in range(8):
        signal, signal_off, reference, reference_off = take(4)
        s["Sig"][i], s["Ref"][i] = whole(signal, 32), whole(reference, 32)
        s["SigOff"][i], s["RefOff"][i] = whole(signal_off, 16), whole(reference_off, 16)
    take(8)
    s["Gain"][:8] = [whole(v, 16) for v in take(8)]
    s["Temp"] = 0 if values[0] is None else single(values[0] / 5 - 10)
    take(1)
    s["Pressure"] = single(take(1)[0])
    s["Voltage"] = single(max(v / 10 for v in take(2)))


def tidal_hex(line, s, model):
    s["Format"] = model
    s["Time"] = hexa(line, 3, 8)
    s["Hundredths"] = hexa(line, 11, 2)
    s["Sig"][0] = s["SnormF"][0] = hexa(line, 13, 4)
    s["SigOff"][0] = 0
    s["Gain"][0] = hexa(line, 17, 1)
    trans = hexa(line, 18, 6)
    s["Trans"] = trans - 16777216 if trans >= 8388608 else trans
    s["Pressure"] = hexa(line, 24, 4)
    s["Temp"] = single(hexa(line, 28, 3) / 10 - 10)


def tidal_extra(line, s):
    s["Voltage"] = single(hexa(line, 3, 2) / 10)
    s["LEDDrive"] = single(hexa(line, 5, 4) * 0.00382)
    s["Bgnd"][0] = hexa(line, 9, 2)
    s["TBgnd"] = hexa(line, 11, 2)
    s["Temp2"] = single(hexa(line, 13, 4) * 0.00382 - 50)
    s["Temp3"] = single(hexa(line, 17, 4) * 0.00382 - 50)


def tidal_decimal(record, s):
    names = ["Time", "Beta", "Gain", "Trans", "Pressure", "Temp", "Voltage", "LEDDrive", "BBgnd", "TBgnd", "Temp2",
             "Temp3"]
    for name, value in zip(names, map(val, record.split(b","))):
        if name == "Time":
            s["Time"] = float(math.floor(value))
            s["Hundredths"] = round((value - s["Time"]) * 100)
        elif name == "Beta":
            s["SnormF"][0] = single(value)
            s["Sig"][0] = whole(s["SnormF"][0], 32) if math.isfinite(s["SnormF"][0]) else 0
            s["SigOff"][0], s["Ref"][0], s["RefOff"][0] = 0, 1, 0
        elif name == "Gain":
            s["Gain"][0] = whole(value, 16)
        elif name == "BBgnd":
            s["Bgnd"][0] = whole(value, 16)
        elif name in ("Trans", "TBgnd"):
            s[name] = whole(value, 32 if name == "Trans" else 16)
        else:
            s[name] = single(value)


def delph(record, s, full):
    values = list(map(val, record.split(b",")))
    s["Time"], s["Hundredths"] = values[0], 0
    s["Sig"][0], s["Sig"][1], s["Ref"][0], s["Ref"][1] = (whole(v, 32) for v in values[1:5])
    s["Pressure"] = single(values[5])
    s["Temp"], s["Temp2"], s["Temp3"] = (single(v / 100) for v in values[6:9])
    if full:
        volts = values[9] / 100
        s["Voltage"] = single(volts / 10 if volts > 75 else volts)


def first_number(text):
    found = re.search(rb"-?\.?[0-9].*", text, re.S)
    return val(found.group(0)) if found else 0.0


def parse(line, model, s):
    kind = classify(line)
    rest = line.partition(b",")[2]
    if kind in (1, 2):
        corvane_hex(line, s, 2 * (kind - 1))
    elif kind == 4:
        verbose_hex(line, s)
    elif kind == 11:
        verbose_decimal(line, s)
    elif kind == 12:
        s["ElapsedHundredths"] = first_number(line) * 100
        verbose_decimal(rest, s)
    elif kind in (13, 16):
        delph(line, s, kind == 13)
    elif kind in (5, 6):
        tidal_hex(line, s, kind - 2)
    elif kind == 7:
        tidal_extra(line, s)
        return False
    elif kind == 10:
        s["ElapsedHundredths"] = val(line) * 100
        tidal_decimal(rest, s)
    elif kind in (8, 9):
        tidal_decimal(line, s)
    elif kind == 0 and model in (3, 4, 5) and number_chars(line):
        tidal_decimal(line, s)
    else:
        return False
    return True


def housekeeping(line):
    values = [single(hexa(line, 123, 2) / 10), single(hexa(line, 125, 2) / 10), hexa(line, 127, 2),
              hexa(line, 129, 4), hexa(line, 3, 8)]
    for i in range(8):
        at = 11 + 14 * i
        fourth = hexa(line, at + 12, 2)
        values += [hexa(line, at, 4), hexa(line, at + 4, 4), hexa(line, at + 8, 4)]
        values.append(fourth - 256 if fourth > 127 else fourth)
    return values


# --- the model told from one line ---------------------------------------------------------------------

def last_slot(values):
    for i in reversed(range(len(values))):
        if values[i] != 0:
            return {2: 2, 3: 1, 5: 0, 6: 0, 7: 0}.get(i, 10)
    return 10


def model_of(line):
    kind = classify(line)
    if kind in (5, 6, 7, 8, 9, 13, 16):
        return {5: 3, 6: 4, 7: 5, 8: 5, 9: 5, 13: 6, 16: 6}[kind]
    if kind not in (1, 2, 4, 11, 12):
        return 10
    sample = new_sample()
    parse(line, 10, sample)
    if kind in (4, 11, 12):
        return last_slot(sample["Gain"][:8])
    runs = ((45, 6), (46, 5), (47, 4)) if kind == 1 else ((14, 8), (48, 3), (49, 2))
    zeros = [line[at - 1:at - 1 + n] == b"0" * n for at, n in runs]
    if zeros[0]:
        return last_slot(sample["Snorm"][:6])
    return 2 if zeros[1] else 1 if zeros[2] else 0


# --- random lines -----------------------------------------------------------------------------------

def finish(rng, body):
    total = sum(body[1:]) + (body[0] if rng.random() < 0.5 else 0)
    return body + b"%02X" % (total % 256)


def hex_line(rng, letter, digits):
    zeros = rng.choice((0.0, 0.1, 0.9))
    body = bytes(rng.choice(b"0" if rng.random() < zeros else b"0123456789ABCDEFabcdef") for _ in range(digits))
    if letter in b"DT" and rng.random() < 0.5:
        # Models with fewer channels: no gain from some slot on.
        at = digits - 16
        keep = rng.randrange(9)
        body = body[:at + keep] + b"0" * (8 - keep) + body[at + 8:]
    if rng.random() < 0.3:
        edge = rng.choice((b"7FFF", b"8000", b"FFFF", b"7FFFFF", b"800000"))
        at = 15 if letter in b"AC" and rng.random() < 0.5 else rng.randrange(digits - len(edge))
        body = body[:at] + edge + body[at + len(edge):]
    if rng.random() < 0.1:
        at = rng.randrange(digits)
        body = body[:at] + bytes([rng.randrange(1, 256)]).replace(b"\n", b"?") + body[at + 1:]
    if rng.random() < 0.05:
        body = body[:rng.randrange(digits)]
    return finish(rng, b"*" + letter + body)


def decimal_field(rng):
    pick = rng.random()
    if pick < 0.6:
        return b"%d" % rng.randrange(0, 10 ** rng.randrange(1, 7))
    if pick < 0.75:
        return b"%.*f" % (rng.randrange(1, 6), rng.uniform(-1000, 100000))
    if pick < 0.8:
        return b" " * rng.randrange(1, 3) + b"%d" % rng.randrange(-40000, 40000)
    if pick < 0.85:
        return b"%.3e" % rng.uniform(-1e6, 1e6)
    if pick < 0.9:
        return b"%d.5" % rng.randrange(-100, 100)
    return rng.choice((b"", b"-", b"+7", b"7500", b"7501", b"32767.5", b"2147483647.5", b".5", b"x12", b"1 2", b"12x",
                       b"99999999999", b"1e300", b"1e999", b"nan", b"-inf", b"3.402823669e38",
                       b"0.1234567890123456789", b"5."))


def decimal_line(rng, commas):
    first = rng.choice((b"%d.%02d" % (rng.randrange(2 ** 31), rng.randrange(100)), b"%d" % rng.randrange(2 ** 31),
                        b"-.5", b"12.999"))
    if commas == 54 and rng.random() < 0.2:
        first = b"Sample t=" + first
    return b",".join([first] + [decimal_field(rng) for _ in range(commas)])


def random_line(rng):
    pick = rng.random()
    if pick < 0.5:
        letter, digits = rng.choice(((b"D", 56), (b"T", 58), (b"H", 130), (b"V", 172), (b"A", 28), (b"C", 28),
                                     (b"I", 18), (b"Z", 20)))
        line = hex_line(rng, letter, digits)
        if rng.random() < 0.05:
            line = line[:-1] + bytes([line[-1] ^ 1])
        return line
    if pick < 0.97:
        return decimal_line(rng, rng.choice((0, 4, 5, 6, 7, 8, 11, 12, 13, 14, 15, 16, 19, 20, 21, 52, 53, 54, 55)))
    return bytes(rng.choice(b"*DTHVACI0123456789,.+-eEx &H") for _ in range(rng.randrange(70)))


# --- comparison -------------------------------------------------------------------------------------

def expected(line, model, sample):
    decoded = parse(line, model, sample)
    head = [classify(line), int(decoded), model_of(line)]
    if head[0] == 3:
        return head + housekeeping(line)
    return head + [sample[name] for name in SCALARS] + [v for name in ARRAYS for v in sample[name]]


def check(program, model, lines):
    output = subprocess.run([program, str(model)], input=b"\n".join(lines) + b"\n", capture_output=True, check=True)
    rows = output.stdout.decode().splitlines()
    if len(rows) != len(lines):
        sys.exit(f"{len(lines)} lines gave {len(rows)} rows")
    sample = new_sample()
    kinds = {}
    for line, row in zip(lines, rows):
        words = row.split()
        got = [int(w) for w in words[:3]] + [float.fromhex(w) for w in words[3:]]
        wanted = expected(line, model, sample)
        kinds[wanted[0]] = kinds.get(wanted[0], 0) + 1
        if got != wanted:
            names = ["kind", "decoded", "model"] + SCALARS + [f"{n}[{i}]" for n in ARRAYS for i in range(SLOTS)]
            for name, g, w in zip(names, got, wanted):
                if g != w:
                    print(f"{name}: {g!r}, expected {w!r}")
            sys.exit(f"model {model}, line {line!r}")
    return kinds


def main():
    rng = random.Random(20090103)
    for model in (0, 5):
        kinds = check(sys.argv[1], model, [random_line(rng) for _ in range(6000)])
        missing = set(range(19)) - {17} - set(kinds)
        if missing:
            sys.exit(f"no line of the kinds {sorted(missing)} was made")
        print(f"model {model}:", ", ".join(f"kind {k}: {n}" for k, n in sorted(kinds.items())))


if __name__ == "__main__":
    main()
