// The Windows page (Frame1): the Windows optimiser, the three shell toggles, the buttons that
// open the tools window, and the virtual drives.
#pragma once

#include <array>

#include "optimisers/WindowsOptimiser.h"
#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class WindowsPage {
 public:
  WindowsPage(Form& form, Platform& platform, Timer& Timer4);

  // One tick of the Windows optimiser's show.
  void Timer4Tick();

  // The entry of "&Windows": loads the three ticks from config.dll.
  void LoadTicks();

  // The toggles' boxes, in the order of the toggle table.
  static const std::array<TamrixCB WindowsPage::*, 3> kToggleBoxes;

 private:
  Form& form_;
  Platform& p_;
  Timer& Timer4;

 public:
  TamrixFrm Frame1;

  // The optimiser and its show.
  Label Label1;
  TamrixCmd command6;
  Label Label16;
  TamrixPBar TamrixPBar1;

  // The shell toggles.
  TamrixCB box5, box7, box8;

  // Virtual drives: create.
  TamrixFrm TamrixFrm2;
  Label lblLettreDispo0;
  ComboBox cmbLecteurDispo0;
  Label lblGuil;
  Label lblLettreDispo1;
  TextBox txtChemLecteur;
  TamrixCmd cmdCheminVirtuel0;
  TamrixCB chkCreerLecteurVirtuel;
  TamrixCmd cmdCheminVirtuel1;
  // Virtual drives: remove.
  TamrixFrm TamrixFrm3;
  ComboBox cmbLecteurDispo1;
  TamrixCmd cmdCheminVirtuel2;
  TamrixCB TamrixCB1;

  // The buttons that open the tools window on one of its pages.
  TamrixCmd TamrixCmd12, TamrixCmd5, TamrixCmd13, TamrixCmd14, TamrixCmd15;

 private:
  WindowsOptimiser::Show show_;
};

}  // namespace tamrix
