#include "optimisers/InternetOptimiser.h"

#include "platform/Runtime.h"

namespace tamrix::InternetOptimiser {

void Apply(const Choice& choice, const std::string& trueText, const catalogue::RegWriter& write) {
  RegValue speedWindow, connectionTtl;  // both empty until a choice fills them

  for (const Speed& speed : kSpeeds)
    if (rt::ToInt32(choice.speedValue(speed.button)) == kChosenSpeed) speedWindow = speed.window;

  if (choice.lan) catalogue::WriteRows(kLanRows, write);  // the TTL stays empty: 0 goes out
  if (choice.modem) {
    connectionTtl = kModemTtl;
    catalogue::WriteRows(kModemRows, write);
  }
  if (choice.adsl) connectionTtl = kAdslTtl;

  catalogue::WriteRows(kCommonRows, write, [&](std::int32_t variable) -> RegValue {
    switch (variable) {
      case ConnectionTtl: return connectionTtl;
      case SpeedWindow: return speedWindow;
      case TrueText: return trueText;
      default: return RegValue();
    }
  });
}

void Show::Start() {
  window_.SetEnabled(false);
  caption_.SetVisible(true);
  bar_.SetVisible(true);
  timer_.SetEnabled(true);
}

void Show::Tick() {
  bar_.SetValue(bar_.Value() + 1);
  const double value = bar_.Value();
  for (const Stage& stage : kStages) {
    if (value == stage.value) {
      if (stage.interval != 0) timer_.SetInterval(stage.interval);
      caption_.SetCaption(std::string(stage.caption));
      return;
    }
  }
  if (value == kEnd) {
    // The timer goes off before the message, so no tick comes while it stands. The caption
    // stays visible (empty), the bar keeps its 100 and the pace stays at its last.
    timer_.SetEnabled(false);
    window_.SetEnabled(true);
    bar_.SetVisible(false);
    caption_.SetCaption("");
    p_.MessageBoxA(kDoneText, mb::Ok | mb::Information, kDoneTitle);
  }
}

}  // namespace tamrix::InternetOptimiser
