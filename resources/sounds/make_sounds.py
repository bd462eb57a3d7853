#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Makes the program's sounds, chimes.wav, start.wav and ding.wav, in the folder of this script.

Mono, 16 bit, 22.05 kHz. The same bytes come out at every run.
"""

import array
import math
import pathlib
import sys
import wave

RATE = 22050  # samples a second

# Partials of a small bell: frequency ratio to the strike note, relative amplitude, decay time [s].
BELL = ((0.5, 0.30, 0.30), (1.0, 1.00, 0.22), (2.0, 0.35, 0.12), (2.76, 0.20, 0.08), (5.4, 0.06, 0.04))


def bell(frequency, seconds):
    """One stroke of a bell. frequency: strike note [Hz]."""
    return [
        sum(
            amplitude * math.exp(-i / RATE / decay) * math.sin(2 * math.pi * frequency * ratio * i / RATE)
            for ratio, amplitude, decay in BELL
        )
        for i in range(round(seconds * RATE))
    ]


def tick(seconds):
    """A dull knock, short enough to be played at every step of a job."""
    return [
        math.exp(-i / RATE / 0.006) * math.sin(2 * math.pi * 1100 * i / RATE)
        for i in range(round(seconds * RATE))
    ]


def mix(*parts):
    """Adds sounds that start at given times. parts: pairs of start time [s] and samples."""
    starts = [(round(start * RATE), samples) for start, samples in parts]
    mixed = [0.0] * max(first + len(samples) for first, samples in starts)
    for first, samples in starts:
        for i, sample in enumerate(samples):
            mixed[first + i] += sample
    return mixed


def faded(samples, fade_in, fade_out):
    """Raised-cosine fades, so that neither end clicks. fade_in, fade_out: lengths [s]."""
    rise, fall = round(fade_in * RATE), round(fade_out * RATE)
    result = list(samples)
    for i in range(rise):
        result[i] *= 0.5 - 0.5 * math.cos(math.pi * i / rise)
    for i in range(fall):
        result[-1 - i] *= 0.5 - 0.5 * math.cos(math.pi * i / fall)
    return result


def write(path, samples, peak):
    """peak: level of the largest sample [dB below full scale]."""
    scale = 32767 * 10 ** (-peak / 20) / max(abs(sample) for sample in samples)
    frames = array.array("h", (round(sample * scale) for sample in samples))
    if sys.byteorder == "big":
        frames.byteswap()
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(frames.tobytes())


def main():
    folder = pathlib.Path(__file__).resolve().parent
    chimes = mix((0.0, bell(880.0, 0.8)), (0.16, bell(659.25, 0.75)))
    write(folder / "chimes.wav", faded(chimes, 0.004, 0.25), peak=12)
    write(folder / "start.wav", faded(tick(0.04), 0.002, 0.02), peak=24)
    write(folder / "ding.wav", faded(bell(1046.5, 0.7), 0.003, 0.25), peak=12)


if __name__ == "__main__":
    main()
