#pragma once

#include <cstdlib>
#include <iostream>
#include <string>

/// Ends the program, which libFuzzer takes for a finding, when a law does not hold.
inline void requireLaw(bool holds, const char* law, const std::string& details = {}) {
    if (!holds) {
        std::cerr << "broken law: " << law << '\n' << details << std::endl;
        std::abort();
    }
}

/// The same for two states that must be equal.
template <class State>
void requireSame(const State& now, const State& expected, const char* law) {
    requireLaw(now == expected, law, now + "\ninstead of\n" + expected);
}
