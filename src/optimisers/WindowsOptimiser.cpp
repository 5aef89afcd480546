#include "optimisers/WindowsOptimiser.h"

#include "platform/AnsiText.h"
#include "platform/Ini.h"

namespace tamrix::WindowsOptimiser {

namespace {

// The directory buffer of the click: 128 characters, of which the call's count are kept.
constexpr std::uint32_t kDirectoryBuffer = 128;

}  // namespace

void Run(const catalogue::RegWriter& writeRegistry, const catalogue::ProfileWriter& writeProfile,
         const std::function<void()>& startTimer) {
  catalogue::WriteRows(kRegistryRows, writeRegistry);
  catalogue::WriteRows(kProfileRowsBeforeTimer, writeProfile);
  // The first tick can only come after the click has returned, so the rows after this point
  // are written before any stage shows all the same.
  startTimer();
  catalogue::WriteRows(kProfileRowsAfterTimer, writeProfile);
}

void Optimise(Platform& p, Timer& timer) {
  // Neither the call nor a trailing separator is checked.
  std::string buffer(kDirectoryBuffer, '\0');
  std::uint32_t n = p.GetWindowsDirectoryA(&buffer, kDirectoryBuffer);
  ini::ProfilePath = ini::SystemIniPath(FirstChars(buffer, n));  // and it stays there after the run
  Run(catalogue::RegistryWriter(p), catalogue::ProfileFileWriter(p), [&timer] { timer.SetEnabled(true); });
}

void Show::Tick() {
  bar_.SetVisible(true);
  bar_.SetValue(bar_.Value() + kStep);
  // At every tick, not once: the window stays open for the first half second after the click.
  window_.SetEnabled(false);
  caption_.SetVisible(true);
  // Not exclusive: every stage reached sets its caption in turn, and the highest one stands.
  for (const Stage& stage : kStages)
    if (bar_.Value() >= stage.atLeast) caption_.SetCaption(std::string(stage.caption));
  if (bar_.Value() >= kEnd) {
    // The bar goes from 99 straight to hidden: 100 is never painted, since nothing paints
    // between two statements of one tick.
    bar_.SetValue(0);
    timer_.SetEnabled(false);
    caption_.SetVisible(false);
    bar_.SetVisible(false);
    window_.SetEnabled(true);
  }
}

}  // namespace tamrix::WindowsOptimiser
