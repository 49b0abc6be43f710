// The spectrum by a plain fast Fourier transform: a few thousand points at a time.
#include "measure.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace tonewright {

namespace {

void Transform(std::vector<std::complex<double>> &values) {
    const std::size_t size = values.size();
    for (std::size_t i = 1, j = 0; i < size; ++i) {
        std::size_t bit = size >> 1;
        for (; (j & bit) != 0; bit >>= 1) {
            j ^= bit;
        }
        j ^= bit;
        if (i < j) {
            std::swap(values[i], values[j]);
        }
    }
    for (std::size_t length = 2; length <= size; length *= 2) {
        const std::complex<double> turn =
            std::polar(1.0, -2.0 * std::numbers::pi / static_cast<double>(length));
        for (std::size_t begin = 0; begin < size; begin += length) {
            std::complex<double> factor = 1.0;
            for (std::size_t k = 0; k < length / 2; ++k) {
                const std::complex<double> even = values[begin + k];
                const std::complex<double> odd = values[begin + k + length / 2] * factor;
                values[begin + k] = even + odd;
                values[begin + k + length / 2] = even - odd;
                factor *= turn;
            }
        }
    }
}

} // namespace

Samples HighPassed(const Samples &samples, double rate) {
    const double keep = std::exp(-2.0 * std::numbers::pi * 5.0 / rate);
    Samples out;
    out.reserve(samples.size());
    double before = 0.0;
    double value = 0.0;
    for (const double sample : samples) {
        value = keep * (value + sample - before);
        before = sample;
        out.push_back(value);
    }
    return out;
}

std::vector<double> PowerSpectrum(const Samples &samples, std::ptrdiff_t begin, std::size_t size) {
    std::vector<std::complex<double>> values(size);
    double power = 0.0;
    for (std::size_t i = 0; i < size; ++i) {
        const double x =
            2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(size);
        const double window = 0.35875 - 0.48829 * std::cos(x) + 0.14128 * std::cos(2.0 * x) -
                              0.01168 * std::cos(3.0 * x);
        power += window * window;
        const std::ptrdiff_t at = begin + static_cast<std::ptrdiff_t>(i);
        if (at >= 0 && at < static_cast<std::ptrdiff_t>(samples.size())) {
            values[i] = window * samples[static_cast<std::size_t>(at)];
        }
    }
    Transform(values);
    std::vector<double> spectrum(size / 2);
    for (std::size_t i = 0; i < spectrum.size(); ++i) {
        // Both sides of the spectrum, and a sine of amplitude 1 has half the power of a constant 1.
        spectrum[i] = 4.0 * std::norm(values[i]) / (power * static_cast<double>(size));
    }
    return spectrum;
}

std::vector<double> Partials(const Samples &samples, double rate, double hz, double seconds,
                             int count) {
    constexpr std::size_t Size = 8192;
    const auto centre = static_cast<std::ptrdiff_t>(std::lround(seconds * rate));
    const std::ptrdiff_t begin =
        std::max<std::ptrdiff_t>(0, centre - static_cast<std::ptrdiff_t>(Size / 2));
    const std::vector<double> spectrum = PowerSpectrum(samples, begin, Size);
    std::vector<double> partials;
    for (int k = 1; k <= count; ++k) {
        if (k * hz > 0.45 * rate) {
            partials.push_back(-1000.0);
            continue;
        }
        double power = 0.0;
        for (std::size_t i = 0; i < spectrum.size(); ++i) {
            const double at = static_cast<double>(i) * rate / Size;
            if (at >= (k - 0.5) * hz && at < (k + 0.5) * hz) {
                power += spectrum[i];
            }
        }
        partials.push_back(std::max(-120.0, 10.0 * std::log10(power + 1e-30)));
    }
    return partials;
}

double PeakFrequency(const Samples &samples, double rate, double seconds) {
    constexpr std::size_t Size = 8192;
    const std::ptrdiff_t begin =
        std::lround(seconds * rate) - static_cast<std::ptrdiff_t>(Size / 2);
    const std::vector<double> spectrum = PowerSpectrum(samples, begin, Size);
    const auto lowest = static_cast<std::size_t>(20.0 * Size / rate) + 1;
    std::size_t peak = lowest;
    for (std::size_t i = lowest; i + 1 < spectrum.size(); ++i) {
        if (spectrum[i] > spectrum[peak]) {
            peak = i;
        }
    }
    const double left = std::log(spectrum[peak - 1]);
    const double middle = std::log(spectrum[peak]);
    const double right = std::log(spectrum[peak + 1]);
    const double offset = 0.5 * (left - right) / (left - 2.0 * middle + right);
    return (static_cast<double>(peak) + offset) * rate / Size;
}

double Amplitude(const Samples &samples, double rate, double hz, double seconds) {
    const double length = std::max(4.0 / hz, 0.004) * rate;
    const auto begin = static_cast<std::ptrdiff_t>(std::lround(seconds * rate - length / 2.0));
    std::complex<double> sum;
    double weights = 0.0;
    for (std::ptrdiff_t i = 0; i < std::lround(length); ++i) {
        const double weight =
            1.0 - std::cos(2.0 * std::numbers::pi * (static_cast<double>(i) + 0.5) / length);
        const std::ptrdiff_t at = begin + i;
        if (at >= 0 && at < static_cast<std::ptrdiff_t>(samples.size())) {
            sum += weight * samples[static_cast<std::size_t>(at)] *
                   std::polar(1.0, -2.0 * std::numbers::pi * hz * static_cast<double>(at) / rate);
        }
        weights += weight;
    }
    return 20.0 * std::log10(std::max(2.0 * std::abs(sum) / weights, 1e-12));
}

std::vector<PitchPoint> PitchOverTime(const Samples &samples, double rate, double hz) {
    std::vector<PitchPoint> points;
    double former = -1.0; // rise, in frames
    for (std::size_t i = 1; i < samples.size(); ++i) {
        if (samples[i - 1] < 0.0 && samples[i] >= 0.0) {
            const double rise = static_cast<double>(i) - samples[i] / (samples[i] - samples[i - 1]);
            if (former >= 0.0) {
                points.push_back({.seconds = (former + rise) / 2.0 / rate,
                                  .octaves = std::log2(rate / (rise - former) / hz)});
            }
            former = rise;
        }
    }
    return points;
}

double SwingFrequency(const std::vector<PitchPoint> &points) {
    std::vector<double> falls;
    bool wasAbove = false;
    for (const auto &[seconds, octaves] : points) {
        wasAbove = wasAbove || octaves > 0.01;
        if (wasAbove && octaves <= 0.0) {
            falls.push_back(seconds);
            wasAbove = false;
        }
    }
    return falls.size() < 2
               ? 0.0
               : static_cast<double>(falls.size() - 1) / (falls.back() - falls.front());
}

std::vector<double> Levels(const Samples &samples, double rate) {
    const auto frames = static_cast<std::size_t>(std::lround(0.02 * rate));
    std::vector<double> levels;
    for (std::size_t begin = 0; begin + frames <= samples.size(); begin += frames) {
        double power = 0.0;
        for (std::size_t i = begin; i < begin + frames; ++i) {
            power += samples[i] * samples[i];
        }
        levels.push_back(10.0 * std::log10(2.0 * power / static_cast<double>(frames) + 1e-30));
    }
    return levels;
}

} // namespace tonewright
