// The screen resolution page (TamrixFrm5): every display mode that the driver reports, the
// current one marked, and "&Changer" to switch to the selected one.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

using DevMode = Platform::DevMode;

class ScreenResolutionPage {
 public:
  // modesEcran and indexMode are the window's members: they outlive the page.
  ScreenResolutionPage(Form& form, Platform& platform, std::vector<DevMode>& modesEcran, std::int32_t& indexMode);

  // Reads the current display on the window's device context and lists every mode.
  void FillModes();
  // "&Changer".
  void Changer();

  // The text of a list entry: width, height and bits per pixel, as 1024x768x32.
  static std::string EntryText(const DevMode& mode);

 private:
  Form& form_;
  Platform& p_;
  std::vector<DevMode>& ModesEcran;
  std::int32_t& IndexMode;

 public:
  TamrixFrm TamrixFrm5;
  Label Label6;
  ListBox List1;  // unsorted: entry i is record i of ModesEcran
  TamrixCmd Command1;   // "&Changer"
  TamrixCmd TamrixCmd6;  // "&Annuler"
};

}  // namespace tamrix
