#pragma once

namespace ZT {

/// Which tangent of a key: the incoming one, towards the previous key, or the outgoing one, towards the next.
/// Any other value addresses no tangent; accessors answer it with neutral results.
enum class TangentSide : int { left = 0, right = 1 };

} // namespace ZT
