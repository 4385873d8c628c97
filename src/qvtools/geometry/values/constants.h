#pragma once

/// The angle constants of the geometry. Their digits are part of the behaviour: results near a full turn depend on
/// them. The value classes use the doubles, the JH_ functions and the domains the floats.

namespace qv {

inline constexpr double kPi = 3.1415926535;    ///< half a turn
inline constexpr double kTwoPi = 6.283185307;  ///< a full turn

}  // namespace qv

inline constexpr float PI_F = 3.1415927f;            ///< half a turn
inline constexpr float TWO_PI_F = 6.2831855f;        ///< a full turn
inline constexpr float HALF_PI_F = 1.5707964f;       ///< a quarter of a turn
inline constexpr float THREE_HALF_PI_F = 4.712389f;  ///< three quarters of a turn
