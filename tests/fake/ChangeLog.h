// A peer for tests that writes down every change of visibility of the controls it watches, as
// "S name" (shown) or "H name" (hidden), and every change of caption, as "C name", in the order
// they happen.
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
        caption_[&c] = c.Caption();
      }
    });
  }
  ~ChangeLog() override {
    for (auto& [c, v] : visible_)
      if (c->peer == this) c->peer = nullptr;
  }
  ChangeLog(const ChangeLog&) = delete;
  ChangeLog& operator=(const ChangeLog&) = delete;

  void Refresh(Control& c) override {
    auto it = visible_.find(&c);
    if (it != visible_.end() && it->second != c.Visible()) {
      it->second = c.Visible();
      entries.push_back((c.Visible() ? "S " : "H ") + c.Name());
    }
    auto cap = caption_.find(&c);
    if (cap != caption_.end() && cap->second != c.Caption()) {
      cap->second = c.Caption();
      entries.push_back("C " + c.Name());
    }
    ++refreshes[&c];
  }
  std::vector<std::string> entries;
  std::map<Control*, int> refreshes;

 private:
  std::map<Control*, bool> visible_;
  std::map<Control*, std::string> caption_;
};

}  // namespace tamrix::fake
