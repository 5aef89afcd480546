// What a form asks of whoever gives it windows: to be loaded (its windows made, then its load
// run) and to be shown modeless, in front. The binding does it with real windows; a form with
// no host has no windows, and is loaded and made visible in place.
#pragma once

#include "shell/Controls.h"

namespace tamrix {

class FormHost {
 public:
  virtual ~FormHost() = default;
  // Makes the form's windows if it has none, then runs its load; nothing is shown yet.
  virtual void LoadForm(Form& form) = 0;
  // Shows a loaded form modeless and makes it the active window; a minimised form stays so.
  virtual void ShowForm(Form& form) = 0;
};

}  // namespace tamrix
