#!/usr/bin/env python3
"""Draws the reference pictures from an independent program's figures.

    tests/data/pictures/make-references.py

Every curve is computed here from the speaker's samples and the filter of ../golden and drawn by
distance from its points on a fourfold grid; there is no text. three.png has the curves that are on
at the start, all.png all eight.
"""
import cmath
import json
import math
import os
import struct

from PIL import Image, ImageColor

HERE = os.path.dirname(os.path.abspath(__file__))
GOLDEN = os.path.join(HERE, '..', 'golden')
WIDTH, HEIGHT = 750, 234
LEFT, TOP, ACROSS, DOWN = 56, 8, 678, 202  # the plot inside its margins
RATE = 48000
FINE = 4  # samples across a pixel


def fft(x):
    n = len(x)
    if n == 1:
        return list(x)
    even, odd = fft(x[0::2]), fft(x[1::2])
    turned = [cmath.exp(-2j * math.pi * k / n) * odd[k] for k in range(n // 2)]
    return [e + o for e, o in zip(even, turned)] + [e - o for e, o in zip(even, turned)]


def spectrum(samples, n):
    return fft(list(samples) + [0.0] * (n - len(samples)))[:n // 2 + 1]


def power(bins):
    return [abs(b) ** 2 for b in bins]


def smoothed(p):
    fixed = []
    for b in range(0, 16385, 8):
        q = range(max(-32, -b), min(32, 16385 - b))
        h = [(math.cos(i * math.pi / 32) + 1) / 2 for i in q]
        fixed.append(sum(p[b + i] * w for i, w in zip(q, h)) / sum(h))
    out = []
    for i in range(2049):
        half = int(i * (2 ** 0.25 - 1) + 0.5)
        q = range(-half, min(half, 2048 - i) + 1)
        v = [((half + 1) ** 2 - k * k) ** 2 for k in q]
        out.append(sum(fixed[i + k] * w for k, w in zip(q, v)) / sum(v))
    return out


def gated(samples, onset):
    def gate(i):
        x = (i - onset) / (RATE * 0.25 / 5) + 3
        return x ** 3 * math.exp(3 - x) / 27 if i > onset else 1.0
    return [s * gate(i) for i, s in enumerate(samples)]


def target(knots, f):
    level = 10 ** (knots[0][1] / 10) / (1 + (knots[0][0] / f) ** 4) / (1 + (f / knots[6][0]) ** 4)
    for (a, low), (b, high) in zip(knots, knots[1:7]):
        c = math.sqrt(a * b)
        e, q, r = 10 ** ((high - low) / 40), 1.2 * c / (b - a), (f / c) ** 2
        level *= ((1 - r * e) ** 2 + r * e / q) / ((1 - r / e) ** 2 + r / e / q)
    return level


def curves():
    figures = json.load(open(os.path.join(GOLDEN, 'small48-tilt6.json')))
    with open(os.path.join(GOLDEN, 'small48.qsr'), 'rb') as file:
        samples = struct.unpack('<32768d', file.read()[4:])
    rows = open(os.path.join(GOLDEN, 'tilt6.txt')).read().split()[2:]
    knots = [tuple(map(int, row.split(',')[:2])) for row in rows[:7]]
    edges = [100, 16000]
    response = spectrum(samples, 32768)
    measured = smoothed(power(spectrum(gated(samples, figures['delaySamples'] + 32), 32768)))
    for ours, theirs in zip(measured[::64], figures['measuredPower_every64']):
        assert abs(ours / theirs - 1) < 1e-6

    def filtered(n):
        b, a = spectrum(figures['numerator'], n), spectrum(figures['denominator'], n)
        return [x / y for x, y in zip(b, a)]
    back = 10 ** (-figures['gainClampDb'] / 20)

    def through(h):
        return power([x * y * back for x, y in zip(response, h)])
    grid = [i * RATE / 4096 for i in range(1, 2049)]
    passband = [1 / ((1 + (edges[0] / f) ** 8) * (1 + (f / edges[1]) ** 8)) for f in grid]
    by_name = {
        'response': (power(response), '#000000', 2),
        'through-fir': (through(spectrum(figures['firTaps'], 32768)), '#00C000', 1),
        'through-biquads': (through(filtered(32768)), '#008000', 1),
        'measured': (measured, '#0000FF', 2),
        'fir': (power(spectrum(figures['firTaps'], 4096)), '#FF00C0', 2),
        'biquads': (power(filtered(4096)), '#FF0000', 2),
        'target': ([0.0] + [target(knots, f) for f in grid], '#8F00FF', 2),
        'passband': ([0.0] + passband, '#00C080', 2),
    }
    return by_name, knots, [(f, -3) for f in edges]


def place(f, level):
    low, high = math.log10(20), math.log10(24000)
    return (LEFT + (math.log10(f) - low) / (high - low) * ACROSS,
            TOP + DOWN - (level + 40) / 50 * DOWN)


def curve(image, points, color, width):
    hit = {}
    reach = width / 2
    for (x0, y0), (x1, y1) in zip(points, points[1:]):
        dx, dy = x1 - x0, y1 - y0
        square = dx * dx + dy * dy or 1.0
        for v in fine(min(y0, y1) - reach, max(y0, y1) + reach, TOP, TOP + DOWN + 1):
            for u in fine(min(x0, x1) - reach, max(x0, x1) + reach, LEFT, LEFT + ACROSS + 1):
                x, y = (u + 0.5) / FINE - x0, (v + 0.5) / FINE - y0
                t = min(max((x * dx + y * dy) / square, 0.0), 1.0)
                if (x - t * dx) ** 2 + (y - t * dy) ** 2 <= reach * reach:
                    hit.setdefault((u // FINE, v // FINE), set()).add((u, v))
    for place, samples in hit.items():
        share = len(samples) / FINE ** 2
        image.putpixel(place, tuple(
            round(a + (b - a) * share)
            for a, b in zip(image.getpixel(place), ImageColor.getrgb(color))))


def fine(low, high, start, end):
    return range(max(math.floor(low * FINE), start * FINE), min(math.ceil(high * FINE), end * FINE))


def grid(image):
    for f in [d * 10 ** k for k in (1, 2, 3, 4) for d in range(1, 10)]:
        if 20 <= f <= 24000:
            x = math.floor(place(f, 0)[0])
            major = str(f)[0] in '1235'
            image.paste('#606060' if major else '#A0A0A0', (x, TOP, x + 1, TOP + DOWN + 1))
    for level in range(-40, 11, 5):
        y = math.floor(place(20, level)[1])
        image.paste('#A0A0A0' if level % 10 else '#606060', (LEFT, y, LEFT + ACROSS + 1, y + 1))
    for x in (LEFT, LEFT + ACROSS):
        image.paste('#606060', (x, TOP, x + 1, TOP + DOWN + 1))


def draw(name, shown, handles_of):
    by_name, knots, edges = curves()
    image = Image.new('RGB', (WIDTH, HEIGHT), '#EEE9BF')
    grid(image)
    for powers, color, width in [by_name[c] for c in by_name if c in shown]:
        step = RATE / 2 / (len(powers) - 1)
        curve(image, [place(i * step, 10 * math.log10(max(p, 1e-12)))
                      for i, p in enumerate(powers) if i > 0], color, width)
    for points, fill in [(knots, '#FFFFFF'), (edges, '#00C080')][:handles_of]:
        for f, level in points:
            x, y = (round(p) for p in place(f, level))
            image.paste(color, (x - 6, y - 6, x + 6, y + 6))
            image.paste(fill, (x - 4, y - 4, x + 4, y + 4))
    image.save(os.path.join(HERE, name))


draw('three.png', ('measured', 'biquads', 'target'), 1)
draw('all.png', ('response', 'through-fir', 'through-biquads', 'measured', 'fir', 'biquads',
                 'target', 'passband'), 2)
