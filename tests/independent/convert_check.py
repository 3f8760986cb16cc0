#!/usr/bin/env python3
"""Recomputes the conversion of random samples of every model and compares with convert_dump.

Usage: convert_check.py CONVERT_DUMP. The formulas are written here from the description of the instruments, with
their own rounding to 32 bits (struct). Values that pass through exp, log or pow may differ in the last place where
the mathematical libraries differ; at most one value in a thousand may do so, by no more than a few such places.
"""

import math
import random
import subprocess
import sys

from convert_cases import (BACKSCATTER, BEAMS, MODELS, SLOTS, Calibration, Params, Sample, attempt, attempt32,
                           normalised, polynomial, water_a, water_bb)


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
