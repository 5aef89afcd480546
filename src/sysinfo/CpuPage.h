// The processor sub-page of Test Lab (FrmCpu): the processor's facts and the CPU test.
#pragma once

#include <cstdint>

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

// The pass counter of the CPU test grows as the runtime's dynamically typed number does: a
// 16-bit integer first, then a 32-bit one, then a double, so that no machine can make it wrap.
class PassCounter {
 public:
  PassCounter() = default;
  // A counter that already stands at n, in the width that n needs.
  static PassCounter At(double n);
  void AddOne() {
    if (width_ == Width::Int16 && small_ < 32767) {
      ++small_;
    } else if (width_ != Width::Double && small_ < 2147483647) {
      width_ = Width::Int32;
      ++small_;
    } else {
      if (width_ != Width::Double) large_ = small_;
      width_ = Width::Double;
      large_ += 1.0;
    }
  }
  double Value() const { return width_ == Width::Double ? large_ : small_; }
  enum class Width { Int16, Int32, Double };
  Width width() const { return width_; }

 private:
  Width width_ = Width::Int16;
  std::int32_t small_ = 0;
  double large_ = 0;
};

// The end of a wait that starts at a tick, as a wide number: it never wraps, so near the top of
// the signed tick the end lies beyond any tick and the wait doesn't end.
inline std::int64_t EndTick(std::int32_t start, std::int32_t length) { return std::int64_t{start} + length; }

// The measuring phase of the CPU test: passes of the one expression until the tick reaches the
// end, with one reading of the tick per pass and no event pump.
PassCounter MeasurePasses(Platform& p, std::int32_t lengthMs);

// ScoreCpu: the passes by 100000, rounded half to even.
std::int64_t ScoreOf(const PassCounter& passes);

class CpuPage {
 public:
  CpuPage(Control& testLab, Platform& platform);

  // What opening the page does before the frames switch: the raise of the process to high
  // priority, for the rest of the run, and the common controls.
  void PrepareOpening();
  // Fills the processor labels from WMI; run from "Test du CPU" once its frame shows.
  void FillProcessorLabels();
  // "Démarrer le Test": the warning, and once it is confirmed the benchmark and the beep.
  void RunTest();
  // The 15-second benchmark itself, from the page's waiting words to the score in iLabel1, which
  // the change classifies: what a confirmed run does before its beep.
  void Measure();
  // The words and pictures of the score in iLabel1; run when its caption changes.
  void Classify();

 private:
  Platform& p_;

 public:
  TamrixFrm FrmCpu;
  TamrixFrm TamrixFrm1;
  Label lc1, lc2, lc3, lc4, lc5, lc6, lc7, lc8, lc9, lc10;  // the captions beside the values
  Label Cpu1, Cpu2, Cpu3, Cpu4, Cpu5, Cpu6, Cpu7, Cpu8, Cpu9, Cpu10;
  TamrixCmd Test;
  Label Label22;
  // The coloured pictures lie in front of the grey ones of the same rank.
  Image iImage5, iImage6, iImage7, iImage8;
  Image iImage1, iImage2, iImage3, iImage4;
  Label rst;
  Label iLabel1;
};

}  // namespace tamrix
