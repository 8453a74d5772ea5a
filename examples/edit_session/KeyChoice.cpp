#include "KeyChoice.h"

#include <cmath>
#include <iterator>
#include <limits>

namespace KeyChoice {

std::vector<Key*> keysOf(Curve& curve) {
    std::vector<Key*> keys;
    std::transform(curve.begin(), curve.end(), std::back_inserter(keys),
                   [](const auto& element) { return element.second; });
    return keys;
}

std::vector<Key*> middleOf(const std::vector<Key*>& keys, std::size_t count) {
    count = std::min(count, keys.size());
    const auto first = keys.begin() + static_cast<std::ptrdiff_t>((keys.size() - count) / 2);
    return {first, first + static_cast<std::ptrdiff_t>(count)};
}

QSet<Key*> toSet(const std::vector<Key*>& keys) {
    return {keys.begin(), keys.end()};
}

double reachOf(const Curve& curve) {
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -lowest;
    for (const auto element : curve) {
        const double value = element.second->getValue();
        if (std::isfinite(value)) {
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
        }
    }
    return highest > lowest ? highest - lowest : 1.0;
}

unsigned int roomBehind(Curve& curve, const Key* key) {
    const Key* const next = curve.getNextKey(key);
    const unsigned int frame = curve.getIndexOf(key);
    return next != nullptr ? curve.getIndexOf(next) - frame - 1
                           : std::min(20U, std::numeric_limits<unsigned int>::max() - frame);
}

Key* keyWithMostRoom(Curve& curve) {
    const std::vector<Key*> keys = keysOf(curve);
    const auto found = std::max_element(keys.begin(), keys.end(), [&](const Key* a, const Key* b) {
        return roomBehind(curve, a) < roomBehind(curve, b);
    });
    return found == keys.end() ? nullptr : *found;
}

bool hasFreeFrame(Curve& curve) {
    return !curve.empty() && roomBehind(curve, keyWithMostRoom(curve)) > 0;
}

} // namespace KeyChoice
