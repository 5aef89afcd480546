// The Windows sub-page of Test Lab (fwindows): the system's facts from the registry, by OS family.
#pragma once

#include <array>
#include <string>

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class InfoWindowsPage {
 public:
  InfoWindowsPage(Control& testLab, Platform& platform);

  // Fills the page; run on every entry to Test Lab and from "Info Windows". A family other than
  // 9x or NT writes nothing, and the design texts stay.
  void InfoWindows();

  // One line of the page: its box, its label (with its own trailing blanks), and where its value
  // lives on each family. All in HKEY_LOCAL_MACHINE.
  struct Row {
    TextBox InfoWindowsPage::*box;
    const char* label9x;
    const char* key9x;
    const char* value9x;
    const char* labelNt;
    const char* keyNt;
    const char* valueNt;
  };
  static const std::array<Row, 8> kRows;

  // Which column a family word runs: the words are compared exactly, case included.
  enum class Column { None, NineX, Nt };
  static Column ColumnFor(const std::string& family);

 private:
  Platform& p_;

 public:
  // Lines of the page, top to bottom, in twips inside fwindows.
  static constexpr int kLeft = 120, kWidth = 6735, kTop0 = 360, kPitch = 330, kHeight = 300;
  static constexpr Twips Line(int row) { return {kLeft, kTop0 + row * kPitch, kWidth, kHeight}; }

  TamrixFrm fwindows;
  TextBox t3, t4, t6, t7, t8, t9, t10, t11;
};

}  // namespace tamrix
