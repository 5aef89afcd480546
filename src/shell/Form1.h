// Form1: the main window. A frameless, rounded, draggable window whose pages share one area,
// one of them shown at a time.
#pragma once

#include <initializer_list>
#include <utility>

#include "optimisers/Protection.h"
#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class Form1 : public Form {
 public:
  explicit Form1(Platform& platform);

 private:
  Platform& p_;

 public:
  // Controls, front to back.
  Image Image7;
  Image Minimised;
  Image Closed;

  TamrixFrm Frame4;
  TamrixFrm Frame1;
  TamrixFrm Frame2;
  TamrixFrm Frame3;
  TamrixFrm Propos;
  ProtectionPage protection;
  TamrixFrm& frmprot;

  TamrixCmd command3;
  TamrixCmd win;
  TamrixCmd internet;
  TamrixCmd sys;
  TamrixCmd TamrixCmd7;
  TamrixCmd apro;
  TamrixCmd TamrixCmd1;

  Shape Shape1;
  Shape Shape2;

  Timer Timer1;
  Timer Timer2;
  Timer Timer3;
  Timer Timer4;

 private:
  void FormLoad();
  void DragWindow(int button);
  // Sets the visibility of frames in the order given: the order is part of the page switch.
  static void ShowPages(std::initializer_list<std::pair<Control*, bool>> rows);
};

}  // namespace tamrix
