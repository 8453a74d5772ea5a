#pragma once

#include <exception>

namespace ZT {

/// Carries an operation through although slots throw: each step that calls slots runs in guard(), and what
/// the first one threw is thrown again when all is done. What others throw meanwhile is dropped.
///
///     FirstException thrown;
///     for (Key* const key : keys) {
///         thrown.guard([&] { edit(key); });
///     }
///     thrown.rethrow();
class FirstException {
public:
    /// Runs @p step. Returns whether it came to its end.
    template <class Step>
    bool guard(Step step) noexcept {
        try {
            step();
            return true;
        } catch (...) {
            if (!_exception) {
                _exception = std::current_exception();
            }
            return false;
        }
    }

    explicit operator bool() const noexcept { return static_cast<bool>(_exception); }

    void rethrow() const {
        if (_exception) {
            std::rethrow_exception(_exception);
        }
    }

private:
    std::exception_ptr _exception;
};

} // namespace ZT
