#pragma once

#include "base/TangentSide.h"
#include "base/math/Interpolation.h"

#include <string>

/// One key of a SimpleCurve.
struct SimpleKey {
    enum class Home { nowhere, here, elsewhere, dead };

    std::string name;
    bool isHeard = false; ///< whether anybody but its curve listens to its signals
    Home home = Home::nowhere;
    unsigned int frame = 0; ///< where it stands, here or elsewhere
    VQ::Math::Interpolation::Key record;
    bool smooth = false;
    bool symmetrical = false;
};
