// The drives sub-page of Test Lab (disque): the facts of the drive chosen in Drive1, as the drive
// facts control Fact gives them, and a bar of its free space.
#pragma once

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class DrivesPage {
 public:
  DrivesPage(Control& testLab, Platform& platform);

  // Reports on the selected drive; run from "Info Lecteurs" and on each change of Drive1.
  void InfoLecteur();

 private:
  Platform& p_;

 public:
  TamrixFrm disque;
  Label Label5;
  Label Label6;  // the same words, a shade behind Label5
  DriveListBox Drive1;
  DrvFact Fact;
  Image Image4;
  TamrixPBar TamrixPBar3;
  Label Label13, Label7, Label8, Label9, Label10, Label11;
  TextBox d1, d2, d3, d4, d5, d6;
};

}  // namespace tamrix
