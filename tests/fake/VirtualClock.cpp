#include "fake/VirtualClock.h"

namespace tamrix::fake {

VirtualClock::VirtualClock(Form& form) : form_(form) {
  ForEachControl(form_, [this](Control& c) {
    if (c.kind() == Kind::Timer) {
      c.peer = this;
      Refresh(c);
    }
  });
}

VirtualClock::~VirtualClock() {
  for (auto& [timer, state] : timers_)
    if (timer->peer == this) timer->peer = nullptr;
}

void VirtualClock::Refresh(Control& control) {
  auto& timer = static_cast<Timer&>(control);
  State& s = timers_[&timer];
  bool running = timer.Enabled() && timer.Interval() > 0;
  if (running != s.running || timer.Interval() != s.interval) {
    s.running = running;
    s.interval = timer.Interval();
    s.due = now_ + s.interval;
  }
}

void VirtualClock::Advance(std::int64_t ms) {
  const std::int64_t end = now_ + ms;
  for (;;) {
    Timer* next = nullptr;
    std::int64_t due = end + 1;
    for (auto& [timer, state] : timers_) {
      if (state.running && state.due < due && form_.Loaded()) {
        due = state.due;
        next = timer;
      }
    }
    if (!next) break;
    now_ = due;
    timers_[next].due = due + timers_[next].interval;
    next->Tick();
  }
  now_ = end;
}

}  // namespace tamrix::fake
