// A peer for tests that writes down every change of visibility of the controls it watches, as
// "S name" (shown) or "H name" (hidden), in the order they happen.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "shell/Controls.h"

namespace tamrix::fake {

class ChangeLog : public Peer {
 public:
  // Watches every control of the tree but the timers.
  explicit ChangeLog(Control& root) {
    ForEachControl(root, [this](Control& c) {
      if (c.kind() != Kind::Timer) {
        c.peer = this;
        visible_[&c] = c.Visible();
      }
    });
  }
  void Refresh(Control& c) override {
    auto it = visible_.find(&c);
    if (it != visible_.end() && it->second != c.Visible()) {
      it->second = c.Visible();
      entries.push_back((c.Visible() ? "S " : "H ") + c.Name());
    }
    ++refreshes[&c];
  }
  std::vector<std::string> entries;
  std::map<Control*, int> refreshes;

 private:
  std::map<Control*, bool> visible_;
};

}  // namespace tamrix::fake
