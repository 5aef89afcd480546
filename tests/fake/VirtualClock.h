// The virtual clock of the tests: it stands in for the Win32 timers of a form, so that shows
// and countdowns of many seconds run in microseconds. A timer's countdown starts again whenever
// it is switched on or its interval changes, as SetTimer does.
#pragma once

#include <cstdint>
#include <map>

#include "shell/Controls.h"

namespace tamrix::fake {

class VirtualClock : public Peer {
 public:
  // Becomes the peer of every timer of the form (the form's other controls are left alone).
  explicit VirtualClock(Form& form);
  ~VirtualClock() override;

  std::int64_t Now() const { return now_; }
  // Moves time on by ms, firing every tick that falls due on the way, in time order.
  void Advance(std::int64_t ms);

  void Refresh(Control& control) override;

 private:
  struct State {
    bool running = false;
    int interval = 0;
    std::int64_t due = 0;
  };
  Form& form_;
  std::map<Timer*, State> timers_;
  std::int64_t now_ = 0;
};

}  // namespace tamrix::fake
