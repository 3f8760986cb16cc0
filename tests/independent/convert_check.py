#!/usr/bin/env python3
"""Recomputes the conversion of random samples of every model and compares with convert_dump.

Usage: convert_check.py CONVERT_DUMP. The formulas are written here from the description of the instruments, with
their own rounding to 32 bits (struct). Values that pass through exp, log or pow may differ in the last place where
the mathematical libraries differ; at most one value in a thousand may do so, by no more than a few such places.
"""

import math
import pathlib
import random
import struct
import subprocess
import sys

SHARE = pathlib.Path(__file__).resolve().parents[2] / "share"
MODELS = ["Corvane-6", "Corvane-4", "Corvane-2", "l-Tidal", "n-Tidal", "x-Tidal", "Fathom-2", "Delph-2", "Delph-4",
          "Delph-6"]
SLOTS = {0: 8, 1: 4, 2: 3}
BACKSCATTER = {0: 6, 1: 4, 2: 2}
BEAMS = {6: 2, 7: 2, 8: 4, 9: 6}
FAILED = 1e308
FAILED32 = math.inf


def f32(value):
    if math.isnan(value):
        return value
    try:
        return struct.unpack("<f", struct.pack("<f", value))[0]
    except OverflowError:
        return math.copysign(math.inf, value)


def attempt(formula, failed=FAILED):
    """The formula's value, or the sentinel when its arithmetic fails."""
    try:
        value = formula()
    except (ZeroDivisionError, ValueError, OverflowError):
        return failed
    return value if math.isfinite(value) else failed


def attempt32(formula):
    def rounded():
        return f32(formula())
    return attempt(rounded, FAILED32)


def read_table(name):
    rows = (SHARE / name).read_text().split()
    return [tuple(float(cell) for cell in row.split(",")) for row in rows]


WATER_ROWS = read_table("aw.csv")
ASTAR_ROWS = read_table("aStar.csv")


def interpolate(rows, x):
    if x <= rows[0][0]:
        return rows[0][1]
    if x >= rows[-1][0]:
        return rows[-1][1]
    for (x0, y0), (x1, y1) in zip(rows, rows[1:]):
        if x == x1:
            return y1
        if x < x1:
            return y0 + (x - x0) / (x1 - x0) * (y1 - y0)
    raise AssertionError


def water_beta(lam, theta, salt):
    if lam == 0:
        return 0.0
    cosine = math.cos(theta * (3.1415926 / 180))
    return f32(math.pow(525 / lam, 4.32) * (0.000146 if salt else 0.000112) * (1 + 0.835 * (cosine * cosine)))


def water_bb(lam, salt):
    return water_beta(lam, 90, salt) * 8.03


def water_a(lam):
    return interpolate(WATER_ROWS, lam)


class Params:
    def __init__(self, rng):
        self.astar_file = rng.random() < 0.5
        self.astar = round(rng.uniform(0.005, 1), 5)
        self.bbtilde = round(rng.uniform(0.005, 0.04), 5)
        self.gammay = round(rng.uniform(0.01, 0.02), 5)
        self.gammad = round(rng.uniform(0.005, 0.02), 5)
        self.C = round(rng.uniform(0, 20), 4)
        self.ad400 = round(rng.uniform(0, 0.1), 5)
        self.p = round(rng.uniform(0.1, 1), 3)
        self.use_cv = rng.random() < 0.5
        self.with_water = rng.random() < 0.5
        self.cal_chi = rng.random() < 0.5
        self.salt = rng.random() < 0.5
        self.chi = f32(rng.uniform(0.9, 1.3))
        self.lambda0 = f32(rng.uniform(400, 600))
        self.beta0 = f32(rng.uniform(0, 3e-4))
        self.bb0 = f32(rng.uniform(0, 2e-3))
        self.gamma = f32(rng.uniform(3.5, 4.8))

    def lines(self):
        astar = SHARE / "aStar.csv" if self.astar_file else repr(self.astar)
        numbers = [self.bbtilde, self.gammay, self.gammad, self.C, self.ad400, self.p]
        yield f"SIGMA {astar} " + " ".join(map(repr, numbers)) + f" {int(self.use_cv)} {int(self.with_water)}"
        numbers = [self.chi, self.lambda0, self.beta0, self.bb0, self.gamma]
        yield f"WATER {int(self.cal_chi)} {int(self.salt)} " + " ".join(map(repr, numbers))

    def absorption(self, lam):
        astar = f32(interpolate(ASTAR_ROWS, lam)) if self.astar_file else self.astar
        yellow = 1 + 0.2 * math.exp(-self.gammay * (lam - 440))
        return f32((0.06 * astar * math.pow(self.C, 0.65) + 0) * yellow +
                   self.ad400 * math.exp(-self.gammad * (lam - 400)))

    def weight(self, lam):
        return 0 if lam == 0 else math.pow(self.lambda0 / lam, self.gamma)

    def beta_to_bb(self, beta, lam, beta2bb):
        if self.cal_chi:
            c = beta2bb if beta2bb >= 3 else beta2bb * 6.2832
        else:
            c = self.chi * 6.2832
        w = self.weight(lam)
        return f32((beta - self.beta0 * w) * c + self.bb0 * w)


def digits6(value):
    """A number of six digits, as calibration files hold it."""
    return float(f"{value:.6g}")


class Channel:
    def __init__(self, rng, n):
        self.n = n
        self.lam = 0 if rng.random() < 0.08 else rng.randint(370, 740)
        self.gain = [0.0] + [0.0 if rng.random() < 0.02 else round(10 ** g * rng.uniform(0.9, 1.1), 2)
                             for g in range(5)]
        self.mu = digits6(rng.uniform(0.001, 0.1))
        self.sigma = [1.0, digits6(rng.uniform(-1, 4)), digits6(rng.uniform(-1, 20))]
        self.sigma_exp = 0.0 if rng.random() < 0.5 else 1e5 if rng.random() < 0.03 else digits6(rng.uniform(0, 0.4))
        self.rnominal = 0.0 if rng.random() < 0.02 else digits6(rng.uniform(500, 20000))
        self.beta2bb = digits6(rng.uniform(0.9, 1.3) if rng.random() < 0.5 else rng.uniform(3, 8))
        self.temp_coeff = digits6(rng.uniform(-0.002, 0.002))
        self.dark = [0] + [rng.randint(-20, 200) for _ in range(5)]
        self.ex = 0
        self.a = 0.0
        self.bbtilde = 0.015

    def use_exp(self):
        return self.sigma_exp > 0.0001

    def update(self, params, model_channel, counted):
        if model_channel and self.lam != 0:
            self.a = params.absorption(self.lam)
            self.bbtilde = params.bbtilde
        if not counted:
            return
        if params.with_water:
            k0 = 1.6 * water_bb(self.lam, params.salt) + water_a(self.lam)
        else:
            k0 = 0.8 * water_bb(self.lam, params.salt)
        if self.use_exp():
            s = attempt(lambda: math.exp(-self.sigma_exp * k0))
        else:
            s = 1 - self.sigma[1] * k0 - self.sigma[2] * (k0 * k0)
        self.sigma[0] = round(s * 1000) / 1000

    def lines(self, tidal):
        if not tidal:
            yield f"[Channel {self.n + 1}]"
            yield f"Name=bb({self.lam})"
        else:
            yield f"Lambda={self.lam}"
        for g in range(1, 6):
            yield f"Gain{g}={self.gain[g]!r}"
            yield f"Offset{g}={self.dark[g]}"
        yield f"Mu={self.mu!r}"
        yield f"Sigma2={self.sigma[1]!r}"
        yield f"Sigma3={self.sigma[2]!r}"
        yield f"SigmaExp={self.sigma_exp!r}"
        yield f"RNominal={self.rnominal!r}"
        yield f"Beta2Bb={self.beta2bb!r}"
        yield f"TempCoeff={self.temp_coeff!r}"


class Beam:
    def __init__(self, rng):
        self.lam = 0 if rng.random() < 0.08 else rng.randint(400, 700)
        self.path = 0.0 if rng.random() < 0.03 else f32(rng.uniform(0.1, 0.3))
        self.dark = rng.randint(0, 2000)
        self.pure = self.dark - rng.randint(0, 1) if rng.random() < 0.03 else rng.randint(100000, 900000)
        self.threshold = rng.randint(1000, 60000)
        self.chi = [f32(rng.uniform(-50, 50)) for _ in range(4)]
        self.depth = [f32(rng.uniform(-0.2, 0.2)) for _ in range(2)]
        self.cal_temp = f32(rng.uniform(15, 25))
        self.temp = [f32(rng.uniform(-1, 1) * 40.0 ** -i + (2 if i == 0 else 0)) for i in range(6)]
        self.L = 0.0 if rng.random() < 0.03 else f32(rng.uniform(0.1, 0.3))
        self.s0, self.r0 = rng.randint(0, 300), rng.randint(0, 300)
        self.px = f32(rng.uniform(-0.05, 0.05))
        self.tau0 = -1.0 if rng.random() < 0.03 else rng.uniform(0.5, 1.5)
        self.p1, self.p2 = f32(rng.uniform(0, 30000)), f32(rng.uniform(0, 60000))
        self.tpw = f32(rng.uniform(15, 25))
        self.kt = [rng.uniform(-1, 1) * 40.0 ** -i + (3 if i == 0 else 0) for i in range(6)]
        self.ktp = [rng.uniform(-1, 1) * 70000.0 ** -i + (3 if i == 0 else 0) for i in range(6)]

    def tidal_lines(self):
        yield "[Attenuation]"
        yield f"Lambda={self.lam}"
        yield f"TrNought={self.dark}"
        yield f"TrPure={self.pure}"
        yield f"CalTemp={self.cal_temp!r}"
        yield f"Path={self.path!r}"
        for i in range(4):
            yield f"Chi{i}={self.chi[i]!r}"
        for i in range(6):
            yield f"TempCoeff{i}={self.temp[i]!r}"
        yield f"KDepthCoeff0={self.depth[0]!r}"
        yield f"KDepthCoeff1={self.depth[1]!r}"
        yield f"KDepthThreshold={self.threshold}"

    def delph_lines(self, n):
        yield f"[Attenuation {n}]"
        for key, value in (("L", self.L), ("S0", self.s0), ("R0", self.r0), ("P1", self.p1), ("P2", self.p2),
                           ("kTauPX", self.px), ("Tau0", self.tau0), ("TPW", self.tpw)):
            yield f"{key}={value!r}"
        for i in range(6):
            yield f"kT{i}={self.kt[i]!r}"
            yield f"kTauP{i}={self.ktp[i]!r}"


def polynomial(coefficients, x):
    total, power = 0.0, 1.0
    for c in coefficients:
        total += c * power
        power *= x
    return total


def normalised(coefficients, at):
    norm = polynomial(coefficients, at)
    return [c / norm for c in coefficients] if norm > 0 else coefficients


class Calibration:
    def __init__(self, rng, model, params):
        self.model = model
        self.cal_temp = f32(rng.uniform(15, 25))
        self.depth_cal = f32(rng.uniform(0.001, 0.1))
        self.depth_off = f32(rng.uniform(0, 3000))
        self.p0 = f32(rng.uniform(0, 500))
        self.tp0 = rng.randint(10, 30)
        self.kp1, self.kp2 = f32(rng.uniform(-2, 2)), f32(rng.uniform(-0.05, 0.05))
        self.kd1, self.kd2 = f32(rng.uniform(0.001, 0.1)), f32(rng.uniform(-1e-7, 1e-7))
        self.channels = [Channel(rng, n) for n in range(SLOTS.get(model, 1))]
        self.beams = [Beam(rng) for _ in range(BEAMS.get(model, 1))]
        if model == 0 and rng.random() < 0.6:
            self.channels[7].lam = self.channels[1].lam
            if rng.random() < 0.5:
                self.channels[6].lam = self.channels[3].lam
        if model == 0 and rng.random() < 0.2:
            self.channels[6].lam = self.channels[1].lam
        if model == 2:
            self.channels[2].gain = list(self.channels[1].gain)
        counted = model in SLOTS or model in (3, 4, 5)
        for channel in self.channels:
            channel.update(params, True, counted)
        if model == 0:
            self.share()

    def share(self):
        lam = [c.lam for c in self.channels]
        if lam[1] == lam[7]:
            self.channels[1].ex, self.channels[3].ex, self.channels[7].ex = 1, 3, 2
            if lam[3] == lam[6]:
                self.channels[6].ex = 4
        elif lam[1] == lam[6]:
            self.channels[1].ex, self.channels[6].ex = 1, 2

    def lines(self):
        yield "[General]"
        yield f"DeviceType={MODELS[self.model]}"
        yield f"CalTemp={self.cal_temp!r}"
        yield f"DepthCal={self.depth_cal!r}"
        yield f"DepthOff={self.depth_off!r}"
        for key, value in (("P0", self.p0), ("TP0", self.tp0), ("kp1", self.kp1), ("kp2", self.kp2),
                           ("kD1", self.kd1), ("kD2", self.kd2)):
            yield f"{key}={value!r}"
        if self.model in (3, 4, 5):
            yield "[Scattering]"
            yield from self.channels[0].lines(True)
            yield from self.beams[0].tidal_lines()
        elif self.model in BEAMS:
            for n, beam in enumerate(self.beams):
                yield from beam.delph_lines(n + 1)
        else:
            for channel in self.channels:
                yield from channel.lines(False)


class Sample:
    def __init__(self, rng):
        self.format = rng.randint(0, 4)
        self.time = 0 if rng.random() < 0.2 else rng.randint(0, 2000000000)
        self.hundredths = rng.randint(0, 99)
        self.fraction = rng.uniform(0, 10)
        self.count = rng.randint(0, 10 ** 8)
        self.pressure = float(rng.randint(0, 65535))
        self.temp = f32(rng.randint(-50, 410) / 10)
        self.trans = rng.randint(-1000, 1000000)
        self.slots = []
        for _ in range(8):
            gain = rng.randint(0, 15) if rng.random() < 0.1 else rng.randint(1, 5)
            ref_off = rng.randint(0, 300)
            ref = ref_off if rng.random() < 0.05 else rng.randint(0, 65535)
            snorm = 0 if rng.random() < 0.3 else rng.randint(-500, 65535)
            self.slots.append([gain, rng.randint(0, 65535), rng.randint(0, 300), ref, ref_off, snorm])

    def line(self):
        head = [self.format, self.time, self.hundredths, self.fraction, self.count, self.pressure, self.temp,
                self.trans]
        return "SAMPLE " + " ".join(map(repr, head + [v for slot in self.slots for v in slot]))


class Result:
    def __init__(self):
        self.depth = self.transnorm = self.K = self.a = self.temp = 0.0
        self.time = self.elapsed = 0.0
        self.valid = [False] * 13
        self.bbu, self.bb, self.betau, self.beta, self.sigma, self.k = ([0.0] * 13 for _ in range(6))

    def fields(self, sample):
        yield from (sample.format, self.depth, self.temp, sample.count, self.time, self.elapsed, self.transnorm,
                    self.K, self.a)
        for values in (self.valid, self.bbu, self.bb, self.betau, self.beta, self.sigma, self.k):
            yield from map(float, values)
        yield from [float(slot[5]) for slot in sample.slots] + [0.0] * 5


def sigma_steps(out, i, channel, params):
    K = out.K
    if channel.use_exp():
        out.sigma[i] = attempt(lambda: channel.sigma[0] * math.exp(channel.sigma_exp * K))
    else:
        out.sigma[i] = attempt(lambda: channel.sigma[0] + channel.sigma[1] * K + channel.sigma[2] * (K * K))
    out.beta[i] = attempt(lambda: out.betau[i] * out.sigma[i])
    out.bb[i] = attempt(lambda: params.beta_to_bb(out.beta[i], channel.lam, channel.beta2bb))


def model_k(out, i, channel, params):
    if params.with_water:
        return attempt32(lambda: water_a(channel.lam) + channel.a + 0.4 * out.bbu[i] / channel.bbtilde)
    return attempt32(lambda: (out.bbu[i] - water_bb(channel.lam, params.salt)) * 0.4 / channel.bbtilde + channel.a)


def convert_corvane(out, cal, params, sample):
    out.depth = attempt32(lambda: cal.depth_cal * sample.pressure - cal.depth_off)
    for i, channel in enumerate(cal.channels):
        gain, sig, sig_off, ref, ref_off, snorm = sample.slots[i]
        g = gain & 7
        if not 1 <= g <= 5:
            out.valid[i] = False
            out.bbu[i] = out.bb[i] = out.betau[i] = out.beta[i] = 0.0
            continue
        if channel.gain[g] == 0:
            out.valid[i] = False
            out.bbu[i] = out.bb[i] = 0.0
            continue
        if snorm == 0 and ref != ref_off:
            snorm = round(channel.rnominal * (sig - sig_off - channel.dark[g]) / (ref - ref_off))
            sample.slots[i][5] = snorm
        out.betau[i] = attempt(lambda: channel.mu * snorm / (channel.gain[g] * channel.rnominal) /
                               (1 + channel.temp_coeff * (sample.temp - cal.cal_temp)))
        if i >= BACKSCATTER[cal.model]:
            out.bbu[i] = attempt(lambda: channel.beta2bb * out.betau[i])
        else:
            out.bbu[i] = attempt(lambda: params.beta_to_bb(out.betau[i], channel.lam, channel.beta2bb))
        out.valid[i] = True
        out.K = model_k(out, i, channel, params)
        sigma_steps(out, i, channel, params)
    if cal.model == 2:
        out.bb[2] = attempt(lambda: math.sqrt(out.sigma[1]) * out.bbu[2] * math.sqrt(out.sigma[0]))
    if cal.model == 0:
        for i in (6, 7):
            fluorescence(out, cal, i)


def fluorescence(out, cal, i):
    e = cal.channels[i].ex
    if not out.valid[i] or (i == 7 and e < 1):
        return
    if e >= 1:
        lamp = cal.channels[e - 1].ex
        if lamp >= 1:
            out.sigma[i] = out.sigma[lamp - 1]
        if out.valid[e - 1]:
            out.sigma[i] = attempt(lambda: math.sqrt(out.sigma[e - 1]) * math.sqrt(out.sigma[i]))
    out.bb[i] = attempt(lambda: out.bbu[i] * out.sigma[i])


def transmission(out, cal, sample):
    beam = cal.beams[0]
    curve = polynomial(beam.temp, sample.temp)
    norm = polynomial(beam.temp, beam.cal_temp)
    if norm != 0:
        curve = curve / norm
    if curve == 0:
        return 0.0
    out.transnorm = attempt32(lambda: sample.trans / curve)
    light = out.transnorm - beam.dark
    if light <= 0:
        return 0.0
    r = (beam.pure - beam.dark) / light
    if r == 0 or beam.path == 0:
        return 0.0
    out.valid[0] = True
    K = attempt32(lambda: math.log(r) / beam.path)
    p, off = sample.pressure, cal.depth_off
    if p < off:
        return K
    if p <= beam.threshold:
        D = attempt(lambda: (p - off) * beam.depth[0] / (beam.threshold - off))
    else:
        D = beam.depth[0] + (beam.depth[1] - beam.depth[0]) * (p - beam.threshold) / (65535 - beam.threshold)
    return attempt32(lambda: K - D)


def convert_tidal(out, cal, params, sample):
    channel, beam = cal.channels[0], cal.beams[0]
    out.depth = attempt32(lambda: (sample.pressure - cal.depth_off) * cal.depth_cal)
    out.valid[0] = False
    out.K = transmission(out, cal, sample)
    out.k[0] = out.K
    g = sample.slots[0][0]
    out.betau[0] = out.bbu[0] = 0.0
    if 1 <= g <= 5:
        warmth = 1 + channel.temp_coeff * (sample.temp - cal.cal_temp)
        out.betau[0] = attempt(lambda: (sample.slots[0][1] - channel.dark[g]) * channel.mu / (warmth * channel.gain[g]))
        out.bbu[0] = attempt(lambda: params.beta_to_bb(out.betau[0], channel.lam, channel.beta2bb))
    if cal.model == 4:
        out.K = model_k(out, 0, channel, params) if params.use_cv else attempt32(lambda: out.k[0] * params.p)
    sigma_steps(out, 0, channel, params)
    if cal.model == 3:
        x = out.beta[0] - params.beta0 * params.weight(beam.lam)
        out.a = attempt32(lambda: out.K - beam.chi[1] * x - beam.chi[2] * (x * x) - beam.chi[3] * (x * x * x))


def convert_delph(out, cal, sample):
    T = sample.temp
    pc = attempt32(lambda: sample.pressure - cal.p0 - (cal.kp2 * T * T + cal.kp1 * T) +
                   (cal.kp2 * cal.tp0 * cal.tp0 + cal.kp1 * cal.tp0))
    out.depth = attempt32(lambda: cal.kd2 * (pc * pc) + cal.kd1 * pc)
    for i, beam in enumerate(cal.beams):
        _, sig, _, ref, _, _ = sample.slots[i]
        ratio = 0.0 if ref - beam.r0 < 1 else (sig - beam.s0) / (ref - beam.r0)
        kt = normalised(beam.kt, beam.tpw)
        ktp = normalised(beam.ktp, beam.p2)
        if pc <= beam.p1:
            factor = 1.0
        elif pc <= beam.p2:
            factor = 1 + beam.px * (pc - beam.p1) / (beam.p2 - beam.p1)
        else:
            factor = (1 + beam.px) * polynomial(ktp, pc)
        out.k[i] = 100.0 if ratio <= 0 else attempt32(
            lambda: math.log(beam.tau0 * factor * polynomial(kt, T) / ratio) / beam.L)


def convert(out, cal, params, sample):
    out.temp = sample.temp
    base = 29221 if cal.model in (3, 4, 5) else 25569
    if cal.model in SLOTS and sample.time == 0:
        out.time, out.elapsed = 0.0, sample.fraction
    else:
        out.time = (sample.time + sample.hundredths / 100) * 1.1574074074074073E-5 + base
    if cal.model in SLOTS:
        convert_corvane(out, cal, params, sample)
    elif cal.model in BEAMS:
        convert_delph(out, cal, sample)
    else:
        convert_tidal(out, cal, params, sample)


def build_cases(rng):
    """Input lines for the dump, and what it should print for each sample."""
    lines, expected = [], []
    for model in range(10):
        for _ in range(60):
            params = Params(rng)
            cal = Calibration(rng, model, params)
            out = Result()
            lines += params.lines()
            text = list(cal.lines())
            # Sigma is 1 in pure water by the parameters in force at the load.
            lines += [f"CAL {len(text)}"] + text
            for _ in range(20):
                sample = Sample(rng)
                lines.append(sample.line())
                convert(out, cal, params, sample)
                expected.append((f"{MODELS[model]} {lines[-1]}", list(out.fields(sample))))
    return lines, expected


def main():
    lines, expected = build_cases(random.Random(20240607))
    run = subprocess.run([sys.argv[1]], input="\n".join(lines) + "\n", text=True, capture_output=True, check=True)
    got = [line.split() for line in run.stdout.splitlines()]
    assert len(got) == len(expected), (len(got), len(expected))
    values = inexact = 0
    worst = 0.0
    for (name, wanted), words in zip(expected, got):
        assert words[0] == "1", name
        assert len(words) - 1 == len(wanted), name
        for index, (want, word) in enumerate(zip(wanted, words[1:])):
            have = math.inf if word == "inf" else float.fromhex(word)
            values += 1
            if have == want:
                continue
            inexact += 1
            scale = max(abs(want), 1e-9)
            difference = abs(have - want) / scale
            worst = max(worst, difference)
            if not difference < 1e-6:
                sys.exit(f"{name}\nfield {index}: {have!r} instead of {want!r}")
    print(f"{len(expected)} samples, {values} values, {inexact} differ in their last places, worst {worst:.2g}")
    if inexact * 1000 > values:
        sys.exit("too many values differ")


if __name__ == "__main__":
    main()
