// Module2: what goes with the mixer class. Three tables that turn the mixer functions' numbers
// into words, and three bit helpers.
#pragma once

#include <cstdint>
#include <string>

namespace tamrix::Module2 {

// The words of an MMSYSERR/MIXERR code; "unknown error" for any code the table doesn't hold.
std::string MixerErrorText(std::int32_t code);
// The words of a line's component type; "UNKNOWN" for any other.
std::string LineTypeText(std::int32_t componentType);
// The words of a line's target type; "UNKNOWN" for any other.
std::string LineTargetText(std::int32_t targetType);

// The low 16 bits of a 32-bit value.
constexpr std::uint16_t LoWord(std::uint32_t value) { return static_cast<std::uint16_t>(value & 0xFFFFu); }
// The low 8 bits of a 16-bit value.
constexpr std::uint8_t LoByte(std::uint16_t value) { return static_cast<std::uint8_t>(value & 0xFFu); }
// The value shifted right by 8.
constexpr std::uint16_t HiByte(std::uint16_t value) { return static_cast<std::uint16_t>(value >> 8); }

}  // namespace tamrix::Module2
