// The system report of the command "rapport": what the information pages show, in one file. The
// pages are made without windows, their own fill procedures run against the machine, and the
// report reads their controls, so nothing is worked out a second time. Three forms: text for
// people, JSON for scripts, one self-contained HTML page.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace tamrix::companion {

// What one control of a page shows.
struct Shown {
  std::string control;  // its design name
  std::string caption;  // the words beside it on the page, where its own text doesn't carry them
  std::vector<std::string> lines;  // a text's lines (up to a NUL, as its window shows it), a list's rows
  bool list = false;
  std::optional<double> bar;  // a round bar: its value, as the page keeps it within 0..100
  std::uint32_t barColor = 0;  // blue-green-red, as the page paints it
  std::optional<bool> lit;     // a picture that the page shows or hides
};

// A section (one page), or a part of one: a drive, a mixer, a line.
struct Block {
  std::string key;      // the section's key in the JSON report; empty for a part
  std::string title;
  std::string control;  // the list whose entry chose this part ("Drive1", "cbMixerList"...)
  std::vector<Shown> shown;
  std::vector<std::string> boxes;  // the message boxes that came up while it was filled
  std::string missing;  // why the part is missing: where the program itself would end
  std::vector<Block> blocks;
};

struct SystemReport {
  LocalTime taken;
  char decimalSign = ',';
  bool cpuTested = false;
  std::vector<Block> sections;
};

// Fills the pages in the order of the program's pages. testCpu adds the CPU test's own measure
// (2 seconds of settling, 13 of counting) and its score. No message box shows: the report keeps
// the words of each one that a page raised.
SystemReport TakeSystemReport(Platform& p, bool testCpu);

std::string SystemReportText(const SystemReport& report);
// ASCII only, as the "etat" report's JSON: one key per control.
std::string SystemReportJson(const SystemReport& report);
// One page with nothing outside it: no script, no linked file; the round bars drawn as the
// pages draw them.
std::string SystemReportHtml(const SystemReport& report);

}  // namespace tamrix::companion
