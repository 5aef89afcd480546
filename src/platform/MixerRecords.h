// The records of winmm's mixer functions, as the platform operations carry them.
#pragma once

#include <cstdint>
#include <string>

namespace tamrix {

// An open mixer: 0 is "not open".
using MixerHandle = std::uint64_t;

// MIXERCAPSA, as winmm fills it.
struct MixerCaps {
  std::uint16_t wMid = 0, wPid = 0;
  std::uint32_t vDriverVersion = 0;
  std::string szPname;  // the fixed field of 32 characters, whole
  std::uint32_t fdwSupport = 0;
  std::uint32_t cDestinations = 0;
};

// MIXERLINEA, as winmm fills it.
struct MixerLine {
  std::uint32_t cbStruct = 0;
  std::uint32_t dwDestination = 0;
  std::uint32_t dwSource = 0;
  std::uint32_t dwLineID = 0;
  std::uint32_t fdwLine = 0;
  std::uint64_t dwUser = 0;
  std::uint32_t dwComponentType = 0;
  std::uint32_t cChannels = 0;
  std::uint32_t cConnections = 0;
  std::uint32_t cControls = 0;
  std::string szShortName;  // the fixed field of 16 characters, whole
  std::string szName;       // the fixed field of 64 characters, whole
  struct {
    std::uint32_t dwType = 0;
    std::uint32_t dwDeviceID = 0;
    std::uint16_t wMid = 0, wPid = 0;
    std::uint32_t vDriverVersion = 0;
    std::string szPname;  // 32 characters
  } Target;
};

namespace mixerline {
// The sizes of the ANSI records of a 32-bit program, which the caller hands over.
constexpr std::uint32_t kCapsSize = 48;
constexpr std::uint32_t kSize = 168;
constexpr std::uint32_t GetDestination = 0;  // MIXER_GETLINEINFOF_DESTINATION
constexpr std::uint32_t GetSource = 1;       // MIXER_GETLINEINFOF_SOURCE
constexpr std::uint32_t kPnameLength = 32, kShortNameLength = 16, kNameLength = 64;
}  // namespace mixerline

}  // namespace tamrix
