#include "library/LibraryCurve.h"
#include "support/Measurement.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <random>

namespace {

constexpr std::size_t evaluations = 10000;

/// Evaluates a curve of the setting's size at frames between its keys.
Bench::Operation evaluating(const Bench::Setting& setting, std::vector<double> frames) {
    const auto subject = std::make_shared<Bench::LibraryCurve>(setting);
    return {[subject, frames = std::move(frames)] {
        for (const double frame : frames) {
            benchmark::DoNotOptimize(subject->curve.valueAt(frame));
        }
    }};
}

std::vector<double> consecutiveFrames(std::size_t n) {
    std::vector<double> frames(evaluations);
    for (std::size_t i = 0; i < evaluations; ++i) {
        frames[i] = static_cast<double>(Bench::gapFrame(i % n)) + 0.5;
    }
    return frames;
}

std::vector<double> randomFrames(std::size_t n) {
    std::mt19937 random(20011); // NOLINT(cert-msc51-cpp): repeatable
    std::uniform_real_distribution<double> anywhere(Bench::gapFrame(0), Bench::gapFrame(n - 1));
    std::vector<double> frames(evaluations);
    for (double& frame : frames) {
        frame = anywhere(random);
    }
    return frames;
}

} // namespace

int main(int argc, char** argv) {
    for (const std::size_t n : Bench::usualSizes) {
        const Bench::Setting setting{Bench::Layout::frameOrder, n};
        Bench::addRow("evaluate consecutive frames", setting.text(), evaluations,
                      [=] { return evaluating(setting, consecutiveFrames(setting.n)); });
        Bench::addRow("evaluate random frames", setting.text(), evaluations,
                      [=] { return evaluating(setting, randomFrames(setting.n)); });
    }
    return Bench::runRows(argc, argv);
}
