#pragma once

/// Reaches a private member function, for helpers that belong to a class although nothing calls them yet:
///
///     struct Helper {
///         using Function = void (Subject::*)(int) const;
///         friend Function find(Helper);
///     };
///     template struct PrivateMember<Helper, &Subject::_helper>;
///     (subject.*find(Helper()))(5);
///
/// Access is not checked in an explicit instantiation.
template <class Helper, typename Helper::Function function>
struct PrivateMember {
    friend typename Helper::Function find(Helper /*helper*/) { return function; }
};
