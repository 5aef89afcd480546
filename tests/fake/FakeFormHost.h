// A host for forms without windows: loading runs the load, showing makes the form visible and,
// as the platform does, activates it when another form was the active one (or at its first show),
// which raises its activation event. Every request is written down.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shell/FormHost.h"

namespace tamrix::fake {

class FakeFormHost : public FormHost {
 public:
  void LoadForm(Form& form) override {
    requests.push_back("Load " + form.Name());
    if (!form.hWnd) form.hWnd = nextWindow++;  // its window exists before its load runs
    form.Load();
  }
  void ShowForm(Form& form) override {
    requests.push_back("Show " + form.Name());
    form.SetVisible(true);
    if (active != &form) {
      active = &form;
      form.Activate();
    }
  }
  std::vector<std::string> requests;
  Form* active = nullptr;
  std::uint64_t nextWindow = 0x70;
};

}  // namespace tamrix::fake
