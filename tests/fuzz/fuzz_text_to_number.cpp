// Any text read as a number: the runtime gives a value or one of its two faults, never a crash,
// and a value it gives is finite.
#include <cmath>
#include <cstdint>
#include <string>

#include "platform/RegValue.h"
#include "platform/Runtime.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  for (char sign : {',', '.'}) {
    try {
      double v = tamrix::rt::TextToDouble(text, sign);
      if (!std::isfinite(v)) __builtin_trap();
      try {
        tamrix::rt::ToInt16(v);
        tamrix::rt::ToInt32(v);
      } catch (const tamrix::RuntimeError& e) {
        if (e.Number() != 6) __builtin_trap();
      }
    } catch (const tamrix::RuntimeError& e) {
      if (e.Number() != 6 && e.Number() != 13) __builtin_trap();
    }
    try {
      tamrix::RegValue(text).ToInt16(sign);
    } catch (const tamrix::RuntimeError& e) {
      if (e.Number() != 6 && e.Number() != 13) __builtin_trap();
    }
  }
  return 0;
}
