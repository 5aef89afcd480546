// The PC sub-page of Test Lab (pc): the machine's facts from the registry, by OS family.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class InfoPcPage {
 public:
  InfoPcPage(Control& testLab, Platform& platform);

  // Fills the page; run from "Info  PC". NT has a table of its own; every other family, an
  // unknown one included, takes the 9x table.
  void InfoPc();

  // What a line holds behind its label.
  enum class Source {
    Value,      // one registry value
    Memory,     // the memory figure and "   Méga Octets"
    Composite,  // the processor's maker, " (", the machine's identifier, " )"
  };
  // One line: its box (none for the processor name, which is built and never shown), its label
  // with its own trailing blanks, and where the value lives in HKEY_LOCAL_MACHINE.
  struct Row {
    TextBox InfoPcPage::*box;
    const char* label;
    Source source;
    const char* key;
    const char* valueName;
  };
  static const std::array<Row, 9> kNtRows;
  static const std::array<Row, 9> kOtherRows;
  // The table a family word runs: NT's for exactly "WindowsNT", the other one for anything else.
  static const std::array<Row, 9>& TableFor(const std::string& family);

  // The memory figure from the physical total in bytes, read as signed: megabytes plus one,
  // rounded by the pattern "#0", then taken as a 16-bit number. A figure that doesn't fit
  // leaves 0.
  static std::int16_t MemoryFigure(std::uint32_t totalPhysBytes, char decimalSign);
  static std::int16_t MemoryFigureOf(double megabytesPlusOne, char decimalSign);

 private:
  Platform& p_;
  std::string Line(const Row& row, std::int16_t memoryFigure);

 public:
  // Lines of the page, top to bottom, in twips inside pc.
  static constexpr int kLeft = 120, kWidth = 6735, kTop0 = 360, kPitch = 330, kHeight = 300;
  static constexpr Twips Place(int row) { return {kLeft, kTop0 + row * kPitch, kWidth, kHeight}; }

  TamrixFrm pc;
  TextBox t1, t2, freq, t5, t12, t13, t14, t15;
};

}  // namespace tamrix
