// What a rendered sound is like: the figures that voices are compared by.
#pragma once

#include <cstddef>
#include <vector>

namespace tonewright {

using Samples = std::vector<double>;

// Without offset: a first-order high pass at 5 Hz.
Samples HighPassed(const Samples &samples, double rate);
// Power spectrum of `size` (a power of two) samples from `begin` on behind a 4-term Blackman-Harris
// window, size / 2 values; before the first and behind the last sample there is silence. A sine of
// amplitude 1 has the sum 1.
std::vector<double> PowerSpectrum(const Samples &samples, std::ptrdiff_t begin, std::size_t size);
// The power in dB around each of `count` multiples of `hz`, half of it to each side; -120 at least.
// A value above the 0.45th part of the rate is -1000.
std::vector<double> Partials(const Samples &samples, double rate, double hz, double seconds,
                             int count);
// The frequency of the strongest line above 20 Hz around `seconds`.
double PeakFrequency(const Samples &samples, double rate, double seconds);
// The amplitude of a sine of that frequency around `seconds`, in dB; 0 is amplitude 1. Of some
// milliseconds, or of four of its periods.
double Amplitude(const Samples &samples, double rate, double hz, double seconds);
// The pitch of a sine between any two of its rises through 0, in octaves above `hz`.
struct PitchPoint {
    double seconds = 0.0;
    double octaves = 0.0;
};
std::vector<PitchPoint> PitchOverTime(const Samples &samples, double rate, double hz);
// How often a second it falls through that of `hz` from a hundredth of an octave above it or more.
double SwingFrequency(const std::vector<PitchPoint> &points);
// The level of each 20 ms in dB; 0 is a sine of amplitude 1.
std::vector<double> Levels(const Samples &samples, double rate);

} // namespace tonewright
