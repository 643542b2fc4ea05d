#!/usr/bin/env python3
"""Synthesises the two typewriter clips built into Tavro.exe.

    typewriter_key.wav     resource 333, one key strike
    typewriter_return.wav  resource 334, the carriage return

Run it from anywhere: it writes both files beside itself. Only the standard
library is used and every random choice comes from fixed seeds, so running it
again gives the same bytes.

File layout, the same for both clips (81,312 bytes):

    offset  size   contents
         0    12   "RIFF", 81304, "WAVE"
        12    24   "fmt " chunk of 16 bytes: format 3 (IEEE float), 2 channels,
                   44100 Hz, 352800 bytes/s, block align 8, 32 bits
        36    12   "fact" chunk of 4 bytes: 10157 sample frames
        48     8   "data", 81256
        56 81256   10157 frames of two little-endian float32 samples (L, R)

10157 frames at 44100 Hz is 0.230 s.
"""

import math
import os
import random
import struct

RATE = 44100
CHANNELS = 2
FRAMES = 10157
FILE_SIZE = 81312
PEAK = 0.85  # loudest sample after normalising, leaving headroom below 1.0


# ---------------------------------------------------------------------------
# Building blocks


class Biquad:
    """Second-order filter after the well-known audio EQ cookbook formulas."""

    def __init__(self, kind, freq, q=0.707):
        w = 2.0 * math.pi * freq / RATE
        cos_w, alpha = math.cos(w), math.sin(w) / (2.0 * q)
        if kind == "lowpass":
            b = ((1 - cos_w) / 2, 1 - cos_w, (1 - cos_w) / 2)
        elif kind == "highpass":
            b = ((1 + cos_w) / 2, -(1 + cos_w), (1 + cos_w) / 2)
        elif kind == "bandpass":
            b = (alpha, 0.0, -alpha)
        else:
            raise ValueError(kind)
        a0, a1, a2 = 1 + alpha, -2 * cos_w, 1 - alpha
        self.b = [x / a0 for x in b]
        self.a = (a1 / a0, a2 / a0)

    def run(self, samples):
        b0, b1, b2 = self.b
        a1, a2 = self.a
        x1 = x2 = y1 = y2 = 0.0
        out = []
        for x in samples:
            y = b0 * x + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2
            x2, x1, y2, y1 = x1, x, y1, y
            out.append(y)
        return out


def seconds(n):
    return int(round(n * RATE))


def noise(rng, count):
    return [rng.uniform(-1.0, 1.0) for _ in range(count)]


def decay_envelope(count, attack, tau):
    """Linear rise over `attack` seconds, then exponential fall with time constant `tau`."""
    rise = max(1, seconds(attack))
    env = []
    for i in range(count):
        if i < rise:
            env.append(i / rise)
        else:
            env.append(math.exp(-(i - rise) / (tau * RATE)))
    return env


def shaped(samples, envelope, gain=1.0):
    return [s * e * gain for s, e in zip(samples, envelope)]


def ring(freq, tau, gain, length, glide_to=None, phase=0.0):
    """A damped sine: one mode of something struck. With `glide_to` the pitch
    falls exponentially towards that frequency, as a thump does when the
    struck part settles."""
    out = []
    count = seconds(length)
    for i in range(count):
        t = i / RATE
        f = freq if glide_to is None else glide_to + (freq - glide_to) * math.exp(-t / (tau * 0.6))
        phase += 2.0 * math.pi * f / RATE
        out.append(gain * math.exp(-t / tau) * math.sin(phase))
    return out


def click(rng, gain, tau=0.0008, tone=3000.0, tone_tau=0.003, brightness=2500.0):
    """A small hard contact: a grain of high-passed noise and a brief metallic ping."""
    length = 0.02
    grain = shaped(Biquad("highpass", brightness).run(noise(rng, seconds(length))),
                   decay_envelope(seconds(length), 0.0002, tau), gain)
    ping = ring(tone * rng.uniform(0.93, 1.07), tone_tau, gain * 0.45, length, phase=rng.uniform(0, 6.28))
    return [a + b for a, b in zip(grain, ping)]


def thud(rng, gain, freq, settle, tau, body_tau=0.005, body_cut=700.0):
    """A dull knock: a low mode falling in pitch and a puff of low-passed noise."""
    length = tau * 7
    tone = ring(freq, tau, gain, length, glide_to=settle)
    puff_len = seconds(length)
    puff = shaped(Biquad("lowpass", body_cut).run(noise(rng, puff_len)),
                  decay_envelope(puff_len, 0.0005, body_tau), gain * 1.6)
    return [a + b for a, b in zip(tone, puff)]


class Stereo:
    """Two channels being mixed. Each event is placed with a pan (-1 left,
    +1 right) and an arrival gap between the ears, which is what gives the
    clip its slight width."""

    def __init__(self, count):
        self.left = [0.0] * count
        self.right = [0.0] * count

    def place(self, samples, at, pan=0.0, gap=0.0):
        start = seconds(at)
        gain_l = math.cos((pan + 1.0) * math.pi / 4.0) * math.sqrt(2.0)
        gain_r = math.sin((pan + 1.0) * math.pi / 4.0) * math.sqrt(2.0)
        delay = seconds(abs(gap))
        start_l = start + (delay if gap > 0 else 0)
        start_r = start + (delay if gap < 0 else 0)
        for target, begin, gain in ((self.left, start_l, gain_l), (self.right, start_r, gain_r)):
            for i, s in enumerate(samples):
                j = begin + i
                if j >= len(target):
                    break
                target[j] += s * gain

    def place_pair(self, left, right, at):
        start = seconds(at)
        for target, samples in ((self.left, left), (self.right, right)):
            for i, s in enumerate(samples):
                if start + i < len(target):
                    target[start + i] += s

    def finish(self, fade=0.015):
        """Blocks any offset, fades the tail to nothing, scales to PEAK."""
        for channel in (self.left, self.right):
            blocked = Biquad("highpass", 25.0, 0.6).run(channel)
            channel[:] = blocked
            n = len(channel)
            fade_len = seconds(fade)
            for i in range(fade_len):
                channel[n - fade_len + i] *= 0.5 * (1.0 + math.cos(math.pi * (i + 1) / fade_len))
        loudest = max(max(abs(s) for s in self.left), max(abs(s) for s in self.right))
        scale = PEAK / loudest
        self.left = [max(-1.0, min(1.0, s * scale)) for s in self.left]
        self.right = [max(-1.0, min(1.0, s * scale)) for s in self.right]


# ---------------------------------------------------------------------------
# The key strike


def make_key():
    rng = random.Random(333)
    mix = Stereo(FRAMES)

    # The type slug hits the ribbon and platen: a sharp bright crack and the
    # inharmonic ring of the steel typebar.
    strike_len = seconds(0.03)
    crack = shaped(Biquad("highpass", 1800.0).run(noise(rng, strike_len)),
                   decay_envelope(strike_len, 0.0002, 0.0022), 1.0)
    mix.place(crack, 0.002, pan=0.1, gap=0.00005)
    for freq, tau, gain in ((1870.0, 0.016, 0.22), (3130.0, 0.011, 0.20), (4420.0, 0.008, 0.16),
                            (6260.0, 0.005, 0.12), (8050.0, 0.0035, 0.08)):
        mix.place(ring(freq * rng.uniform(0.98, 1.02), tau, gain, 0.1, phase=rng.uniform(0, 6.28)),
                  0.002, pan=rng.uniform(-0.25, 0.35), gap=rng.uniform(-0.00008, 0.00008))

    # The key bottoms out on its stop a few milliseconds later: a dull knock
    # that the desk and frame carry.
    mix.place(thud(rng, 0.38, 220.0, 125.0, 0.014), 0.008, pan=-0.08, gap=-0.00005)
    mix.place(ring(430.0, 0.03, 0.07, 0.18), 0.009, pan=0.0)  # the frame answering

    # The escapement lets the carriage step one space.
    mix.place(click(rng, 0.4, tone=2650.0, tone_tau=0.005), 0.034, pan=0.2, gap=0.00006)
    mix.place(click(rng, 0.16, tone=3900.0), 0.041, pan=0.25, gap=0.00006)

    # The typebar falls back into its padded rest.
    mix.place(thud(rng, 0.17, 260.0, 190.0, 0.009, body_tau=0.003, body_cut=1200.0), 0.058, pan=-0.15)
    mix.place(click(rng, 0.09, tone=2200.0), 0.061, pan=-0.2, gap=-0.0001)

    # Loose linkages settle: a short rattle, fading.
    at = 0.072
    gain = 0.12
    while at < 0.16:
        mix.place(click(rng, gain, tone=rng.uniform(1800.0, 4200.0), tone_tau=0.002),
                  at, pan=rng.uniform(-0.3, 0.3), gap=rng.uniform(-0.0001, 0.0001))
        at += rng.uniform(0.006, 0.016)
        gain *= 0.8

    mix.finish()
    return mix


# ---------------------------------------------------------------------------
# The carriage return


def make_return():
    rng = random.Random(334)
    mix = Stereo(FRAMES)

    # The return lever swings and the platen turns one line: a clack and the
    # two notches of the line-space ratchet.
    mix.place(thud(rng, 0.32, 180.0, 120.0, 0.012), 0.002, pan=0.25, gap=0.00008)
    mix.place(click(rng, 0.6, tone=2400.0, tone_tau=0.006), 0.003, pan=0.25, gap=0.00008)
    mix.place(click(rng, 0.30, tone=3300.0, tone_tau=0.004), 0.014, pan=0.3, gap=0.00008)
    mix.place(click(rng, 0.26, tone=3100.0, tone_tau=0.004), 0.023, pan=0.3, gap=0.00008)

    # The carriage slides back: the pawl buzzes over the rack teeth, faster as
    # the carriage picks up speed, and the slide hisses and rumbles under it.
    slide_start, slide_end = 0.03, 0.148
    t = slide_start
    while t < slide_end - 0.002:
        progress = (t - slide_start) / (slide_end - slide_start)
        rate = 110.0 + 290.0 * math.sin(progress * math.pi / 2.0)  # teeth per second
        level = 0.2 + 0.14 * progress
        pan = -0.3 + 0.55 * progress  # the carriage travels across in front of you
        mix.place(click(rng, level * rng.uniform(0.8, 1.15), tau=0.0005,
                        tone=3400.0, tone_tau=0.0018, brightness=2200.0),
                  t, pan=pan, gap=0.0001 * pan)
        t += 1.0 / rate * rng.uniform(0.92, 1.08)

    slide_len = seconds(slide_end - slide_start)
    swell = [math.sin(math.pi * i / slide_len) ** 0.7 for i in range(slide_len)]
    for gain_hiss, gain_rumble, pan_side in ((1.0, 1.0, -1), (0.9, 1.0, 1)):
        hiss = Biquad("bandpass", 1500.0, 0.8).run(noise(rng, slide_len))
        rumble = Biquad("lowpass", 260.0).run(Biquad("lowpass", 260.0).run(noise(rng, slide_len)))
        channel = [0.2 * gain_hiss * h * e + 0.8 * gain_rumble * r * e for h, r, e in zip(hiss, rumble, swell)]
        if pan_side < 0:
            mix.place_pair(channel, [], slide_start)
        else:
            mix.place_pair([], channel, slide_start)

    # The carriage slams into the margin stop: a heavy thunk, the clang of the
    # frame, and a small rebound.
    stop = slide_end
    mix.place(thud(rng, 1.0, 125.0, 75.0, 0.02, body_tau=0.006, body_cut=900.0), stop, pan=0.15, gap=0.00005)
    stop_len = seconds(0.03)
    mix.place(shaped(Biquad("highpass", 1200.0).run(noise(rng, stop_len)),
                     decay_envelope(stop_len, 0.0002, 0.0025), 0.9), stop, pan=0.2, gap=0.00006)
    for freq, tau, gain in ((740.0, 0.022, 0.16), (1330.0, 0.018, 0.14), (2260.0, 0.012, 0.12),
                            (3610.0, 0.008, 0.09)):
        mix.place(ring(freq * rng.uniform(0.98, 1.02), tau, gain, 0.09, phase=rng.uniform(0, 6.28)),
                  stop, pan=rng.uniform(-0.1, 0.35), gap=rng.uniform(0.0, 0.0001))
    mix.place(thud(rng, 0.22, 140.0, 95.0, 0.012), stop + 0.019, pan=0.15, gap=0.00005)
    mix.place(click(rng, 0.14, tone=2500.0), stop + 0.02, pan=0.2, gap=0.00005)

    mix.finish()
    return mix


# ---------------------------------------------------------------------------
# Writing


def wave_bytes(mix):
    frames = len(mix.left)
    data_size = frames * CHANNELS * 4
    header = b"".join([
        b"RIFF", struct.pack("<I", FILE_SIZE - 8), b"WAVE",
        b"fmt ", struct.pack("<IHHIIHH", 16, 3, CHANNELS, RATE, RATE * CHANNELS * 4, CHANNELS * 4, 32),
        b"fact", struct.pack("<II", 4, frames),
        b"data", struct.pack("<I", data_size),
    ])
    body = bytearray()
    for left, right in zip(mix.left, mix.right):
        body += struct.pack("<ff", left, right)
    out = header + bytes(body)
    assert len(header) == 56 and len(out) == FILE_SIZE, len(out)
    return out


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    for name, make in (("typewriter_key.wav", make_key), ("typewriter_return.wav", make_return)):
        path = os.path.join(here, name)
        with open(path, "wb") as f:
            f.write(wave_bytes(make()))
        print("wrote", path)


if __name__ == "__main__":
    main()
