#!/usr/bin/env python3
"""Makes resources/sounds/confirm.wav, the sound that confirms an action.

Two soft FM bells, a fifth apart, the second shortly after the first: each is a sine whose phase is
modulated by a sine of 3.5 times its frequency, with a modulation that fades faster than the tone,
so that the strike is bright and the rest round. The same samples come out on every machine.

usage: make_confirm_sound.py [OUTPUT.wav]
"""
import math
import pathlib
import struct
import sys
import wave

RATE = 44100  # samples a second, mono, 16 bit
LENGTH = 0.26  # seconds
PEAK = 10 ** (-12 / 20)  # -12 dBFS

# start in seconds, frequency in Hz, level, time constant of the decay in seconds
BELLS = [
    (0.000, 659.255, 0.8, 0.070),  # E5
    (0.075, 987.767, 1.0, 0.085),  # B5
]
RATIO = 3.5  # modulator to carrier: inharmonic, hence a bell
INDEX = 1.1  # modulation at the strike, in radians
INDEX_DECAY = 0.045  # seconds
ATTACK = 0.004  # seconds
FADE_OUT = 0.060  # seconds at the end of the file


def half_cosine(position):
    """0 at position 0 and below, 1 at position 1 and above, smooth between them."""
    return 0.5 - 0.5 * math.cos(math.pi * min(1.0, max(0.0, position)))


def bell(time, frequency, decay):
    """One bell, time seconds after its strike."""
    if time < 0.0:
        return 0.0
    modulation = INDEX * math.exp(-time / INDEX_DECAY)
    phase = modulation * math.sin(2 * math.pi * RATIO * frequency * time)
    tone = math.sin(2 * math.pi * frequency * time + phase)
    return half_cosine(time / ATTACK) * math.exp(-time / decay) * tone


def samples():
    """The whole sound as 16-bit numbers, its loudest sample at PEAK."""
    count = round(RATE * LENGTH)
    values = []
    for i in range(count):
        time = i / RATE
        value = sum(level * bell(time - start, frequency, decay)
                    for start, frequency, level, decay in BELLS)
        values.append(value * half_cosine((LENGTH - 1 / RATE - time) / FADE_OUT))
    scale = PEAK * 32767 / max(abs(value) for value in values)
    return [round(value * scale) for value in values]


def main():
    default = pathlib.Path(__file__).parent.parent / "resources" / "sounds" / "confirm.wav"
    path = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else default
    data = samples()
    with wave.open(str(path), "wb") as sound:
        sound.setnchannels(1)
        sound.setsampwidth(2)
        sound.setframerate(RATE)
        sound.writeframes(struct.pack(f"<{len(data)}h", *data))


if __name__ == "__main__":
    main()
