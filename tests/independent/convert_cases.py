"""Random parameters, calibrations and samples for convert_check.py, each able to write itself as input of
convert_dump, and the arithmetic that they share with the formulas: rounding to 32 bits, failures, and water."""

import math
import pathlib
import struct

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
