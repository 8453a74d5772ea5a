#include "document/SampleRate.h"

#include "document/Frames.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Editor {

using VQ::Animation::RationalSeconds;

namespace {

constexpr int greatestRate = 1000;
constexpr int usualRate = 25;

RationalSeconds lengthAt(int rate) {
    return RationalSeconds(boost::rational<int>(1, rate));
}

RationalSeconds televisionLengthAt(int rate) {
    return RationalSeconds(boost::rational<int>(1001, 1000 * rate));
}

double toSeconds(const RationalSeconds& length) {
    return static_cast<double>(length.count().numerator()) /
           static_cast<double>(length.count().denominator());
}

double toleranceAt(const SampleTimes& times, double seconds) {
    constexpr double rest = 1e-9; // of the arithmetic here, beside half a digit
    constexpr double singlePrecision = std::numeric_limits<float>::epsilon();
    return std::max({times.digit * (0.5 + rest), 1e-6, seconds * singlePrecision});
}

// By how many seconds the times miss the frames at most; nothing where one of them does not fit.
std::optional<double> missAt(const SampleTimes& times, const RationalSeconds& length) {
    const double seconds = toSeconds(length);
    double before = -1.0;
    double worst = 0.0;
    for (const double time : times.seconds) {
        const double frame = std::round(time / seconds);
        const double miss = std::abs(time - frame * seconds);
        if (miss > toleranceAt(times, time) || frame <= before || frame > double{lastPossibleFrame}) {
            return std::nullopt;
        }
        before = frame;
        worst = std::max(worst, miss);
    }
    return worst;
}

double smallestStep(const std::vector<double>& seconds) {
    double smallest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < seconds.size(); ++i) {
        smallest = std::min(smallest, seconds[i] - seconds[i - 1]);
    }
    return smallest;
}

int toRate(double rate) {
    return static_cast<int>(std::clamp(rate, 1.0, double{greatestRate}));
}

} // namespace

std::optional<std::vector<unsigned int>> framesAt(const SampleTimes& times, const RationalSeconds& timeUnit) {
    if (!missAt(times, timeUnit)) {
        return std::nullopt;
    }
    std::vector<unsigned int> frames;
    frames.reserve(times.seconds.size());
    for (const double time : times.seconds) {
        frames.push_back(static_cast<unsigned int>(std::round(time / toSeconds(timeUnit))));
    }
    return frames;
}

std::optional<RationalSeconds> sampleRate(const SampleTimes& times) {
    if (times.seconds.size() < 2 && missAt(times, lengthAt(usualRate))) {
        return lengthAt(usualRate);
    }
    // Both ends of a step may be rounded by half a digit, or by what counts as exact.
    const double step = smallestStep(times.seconds);
    const double blur = std::max(times.digit, 2e-6);
    const int lowest = toRate(std::floor(1.0 / (step + blur)));
    const int highest = step > blur ? toRate(std::ceil(1.0 / (step - blur))) : greatestRate;

    constexpr double exact = 1e-9; // The lowest rate that misses no more is as good as any.
    std::optional<RationalSeconds> best;
    double bestMiss = std::numeric_limits<double>::infinity();
    for (int rate = lowest; rate <= highest && bestMiss > exact; ++rate) {
        const auto miss = missAt(times, lengthAt(rate));
        if (miss && *miss < bestMiss - exact) {
            bestMiss = *miss;
            best = lengthAt(rate);
        }
    }
    for (int rate = lowest; !best && rate <= highest; ++rate) {
        if (missAt(times, televisionLengthAt(rate))) {
            best = televisionLengthAt(rate);
        }
    }
    for (int rate = highest + 1; !best && rate <= greatestRate; ++rate) {
        if (missAt(times, lengthAt(rate))) {
            best = lengthAt(rate);
        }
    }
    return best;
}

} // namespace Editor
