// The shutdown page (TamrixFrm6): a countdown set in hours, minutes and seconds, then a shutdown
// or a restart. The count itself belongs to the tools window and outlives the page.
#pragma once

#include <cstdint>

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class ShutdownTimerPage {
 public:
  // secondesRestantes is the window's countdown; timer ticks once a second.
  ShutdownTimerPage(Form& form, Platform& platform, Timer& timer, std::int16_t& secondesRestantes);

  // "&Lancez": the count from the three boxes, the timer on, the round bar at 0.
  void Lancez();
  // One second of the count; at and after zero, the chosen action.
  void TimerTick();

 private:
  Platform& p_;
  Timer& Timer_;
  std::int16_t& SecondesRestantes;

  void DigitsOnly(int& keyAscii);
  static void EmptyIsZero(TextBox& box);

 public:
  TamrixFrm TamrixFrm6;
  TamrixFrm TamrixFrm8;  // "Reglez la minutrie :"
  Label Label3, Label4, Label5;
  TextBox hr, min, sec;
  TamrixCmd option1;  // "&Lancez"
  TamrixPBar pbtime;
  TamrixFrm TamrixFrm7;  // "Selectionnez une action :"
  TamrixOpButton TamrixOpButton1, TamrixOpButton2, TamrixOpButton3;
  TamrixCB TamrixCB1;
  TamrixCmd TamrixCmd7;  // " &Réduire"
  TamrixCmd btn0;        // btn(0), "&Quitter"
};

}  // namespace tamrix
