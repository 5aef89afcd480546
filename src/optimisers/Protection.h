// The Protection page (frmprot): eighteen per-user shell restrictions, loaded from the registry
// when the page opens and written back by "&Appliquer", and the two buttons that unregister the
// registration wizard's library.
#pragma once

#include <array>

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class ProtectionPage {
 public:
  ProtectionPage(Control& form, Platform& platform);

  // The entry of the "&Protection" navigation button, once the page is shown: ticks the boxes
  // whose restriction is set. It never unticks one.
  void LoadRestrictions();

  struct Row {
    TamrixCB ProtectionPage::*box;
    const char* keyPath;
    const char* valueName;
    int readPlace;  // place in the order of reading
  };
  static const std::array<Row, 18> kRows;
  // Every row is a number of the current user: 1 for a ticked box, 0 for an unticked one.
  static constexpr HKey kHive = hive::CurrentUser;
  static constexpr std::uint32_t kType = regtype::Dword;
  static constexpr std::int32_t kTicked = 1, kUnticked = 0;

 private:
  Platform& p_;

 public:
  // Columns and rows of the boxes inside TamrixFrm6, in twips.
  static constexpr int kCol1 = 150, kCol2 = 2760, kColW = 2550, kRow0 = 315, kRowH = 270, kBoxH = 255;
  static constexpr Twips Cell(int col, int row) { return {col == 0 ? kCol1 : kCol2, kRow0 + row * kRowH, kColW, kBoxH}; }

  TamrixFrm frmprot;
  TamrixFrm TamrixFrm6;
  TamrixCB box2, box1, box3, box4, box6, box9, box10, box11, box12;
  TamrixCB box13, box14, Check1, box15, box16, box17, box18, box19, box20;
  Label Label15;
  TamrixOpButton Option10, Option9;
  TamrixCmd ReyCommand2;
  Label Label4;

 private:
  void Apply();
  void UnregisterNt();
  void Unregister9x();
};

}  // namespace tamrix
