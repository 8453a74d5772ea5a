#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace Bench {

/// A change and the way back, with all that they work on. Calls come in the order before, there, back.
struct Operation {
    std::function<void()> there;
    std::function<void()> back = [] {};
    std::function<void()> before = [] {}; ///< never timed
};

/// There: an object is made by @p make, which returns a std::unique_ptr to it. Back: it is destroyed.
template <class Make>
Operation creating(Make make) {
    const auto object = std::make_shared<decltype(make())>();
    return {[object, make = std::move(make)] { *object = make(); }, [object] { object->reset(); }};
}

enum class Timed { there, back };

/// Registers the row "name|size", where size reads "layout/n". @p make builds the operation, outside the
/// time; one timed part of it processes @p keys keys. The row is repeated until about keysPerRow keys are
/// processed, at least @p leastRepetitions times and a multiple of that. Its counters: "keys", and "median",
/// the median time of one timed part in nanoseconds.
void addRow(const std::string& name, const std::string& size, std::size_t keys,
            const std::function<Operation()>& make, Timed timed = Timed::there,
            std::size_t leastRepetitions = 1);

/// How often one turn of a row for one key edits or reads it.
constexpr std::size_t oneKeyRepetitions = 1000;

/// Runs the registered rows as the command line says; what main() returns.
int runRows(int argc, char** argv);

} // namespace Bench
