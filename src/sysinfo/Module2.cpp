#include "sysinfo/Module2.h"

#include <array>

namespace tamrix::Module2 {

namespace {

struct Row {
  std::int32_t value;
  const char* text;
};

constexpr std::array<Row, 24> kMixerErrors = {{
    {0, "no error"},
    {1, "unspecified error"},
    {2, "device ID out of range"},
    {3, "driver failed enable"},
    {4, "device already allocated"},
    {5, "device handle is invalid"},
    {6, "no device driver present"},
    {7, "memory allocation error"},
    {8, "function isn't supported"},
    {9, "error value out of range"},
    {10, "invalid flag passed"},
    {11, "invalid parameter passed"},
    {12, "handle being used"},
    {13, "specified alias not found"},
    {14, "bad registry database"},
    {15, "registry key not found"},
    {16, "registry read error"},
    {17, "registry write error"},
    {18, "registry delete error"},
    {19, "registry value not found"},
    {20, "driver does not call DriverCallback"},
    {1024, "invalid line"},
    {1025, "invalid control"},
    {1026, "invalid value"},
}};

constexpr std::array<Row, 20> kLineTypes = {{
    {0, "UNDEFINED LINE TYPE"},
    {1, "DIGITAL DESTINATION"},
    {2, "LINE LEVEL DESTINATION"},
    {3, "MONITOR DESTINATION"},
    {4, "ADJUSTABLE LEVEL SPEAKER DESTINATION"},
    {5, "ADJUSTABLE LEVEL HEADPHONES DESTINATION"},
    {6, "TELEPHONE LINE DESTINATION"},
    {7, "WAVEIN (ADC) RECORDING DESTINATION"},
    {8, "VOICE RECORDING DESTINATION"},
    {4096, "NON-STANDARD SOURCE"},
    {4097, "DIGITAL SOURCE"},
    {4098, "LINE LEVEL SOURCE"},
    {4099, "MICROPHONE RECORDING SOURCE"},
    {4100, "INTERNAL SYNTHESIZER SOURCE"},
    {4101, "INTERNAL AUDIO CD SOURCE"},
    {4102, "TELEPHONE LINE SOURCE"},
    {4103, "PC SPEAKER SOURCE"},
    {4104, "WAVEOUT (DAC) SOURCE"},
    {4105, "AUXILIARY AUDIO SOURCE"},
    {4106, "ANALOG SOURCE"},
}};

constexpr std::array<Row, 6> kLineTargets = {{
    {0, "UNDEFINED"},
    {1, "WAVE OUT"},
    {2, "WAVE IN"},
    {3, "MIDI OUT"},
    {4, "MIDI IN"},
    {5, "AUX AUDIO"},
}};

template <std::size_t N>
std::string Lookup(const std::array<Row, N>& table, std::int32_t value, const char* otherwise) {
  for (const Row& row : table)
    if (row.value == value) return row.text;
  return otherwise;
}

}  // namespace

std::string MixerErrorText(std::int32_t code) { return Lookup(kMixerErrors, code, "unknown error"); }

std::string LineTypeText(std::int32_t componentType) { return Lookup(kLineTypes, componentType, "UNKNOWN"); }

std::string LineTargetText(std::int32_t targetType) { return Lookup(kLineTargets, targetType, "UNKNOWN"); }

}  // namespace tamrix::Module2
