#pragma once

#include <QtGlobal>

namespace quillary {

/// Virtual key numbers of physical keys, wherever they lie in the user's layout. Stored shortcuts hold them.
namespace KeyCode {

inline constexpr quint16 returnKey = 36;
inline constexpr quint16 tab = 48;
inline constexpr quint16 space = 49;
inline constexpr quint16 deleteKey = 51;
inline constexpr quint16 escape = 53;
inline constexpr quint16 home = 115;
inline constexpr quint16 pageUp = 116;
inline constexpr quint16 forwardDelete = 117;
inline constexpr quint16 end = 119;
inline constexpr quint16 pageDown = 121;
inline constexpr quint16 leftArrow = 123;
inline constexpr quint16 rightArrow = 124;
inline constexpr quint16 downArrow = 125;
inline constexpr quint16 upArrow = 126;
inline constexpr quint16 g = 5;
inline constexpr quint16 p = 35;
inline constexpr quint16 k = 40;
inline constexpr quint16 n = 45;

} // namespace KeyCode

} // namespace quillary
