#include "companion/SystemReport.h"

#include <functional>
#include <initializer_list>
#include <utility>

#include "platform/PlatformRelay.h"
#include "platform/Runtime.h"
#include "shell/HomePage.h"
#include "sysinfo/BiosPage.h"
#include "sysinfo/CMixer.h"
#include "sysinfo/CpuPage.h"
#include "sysinfo/DrivesPage.h"
#include "sysinfo/InfoPcPage.h"
#include "sysinfo/InfoWindowsPage.h"
#include "sysinfo/SoundPage.h"

namespace tamrix::companion {

namespace {

// The pages run as they do in the program, but a console command may show no window: each
// message box is kept in words and answered with OK, and the beep stays silent.
class BoxKeeper : public PlatformRelay {
 public:
  using PlatformRelay::PlatformRelay;
  int MessageBoxA(const std::string& text, unsigned, const std::string&) override {
    kept_.push_back(text);
    return mb::IdOk;
  }
  void Beep() override {}
  // The boxes that came up since the last call.
  std::vector<std::string> Take() { return std::exchange(kept_, {}); }

 private:
  std::vector<std::string> kept_;
};

// What a window shows of a text: up to its first NUL.
std::string UpToNul(const std::string& text) { return text.substr(0, text.find('\0')); }

std::vector<std::string> Lines(const std::string& text) {
  std::string shown = UpToNul(text);
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (;;) {
    std::size_t end = shown.find("\r\n", start);
    lines.push_back(shown.substr(start, end == std::string::npos ? std::string::npos : end - start));
    if (end == std::string::npos) break;
    start = end + 2;
  }
  // A report that ends its last line leaves no empty line behind it.
  if (lines.size() > 1 && lines.back().empty()) lines.pop_back();
  return lines;
}

Shown Text(const Control& c, const std::string& caption = {}) { return {.control = c.Name(), .caption = caption, .lines = Lines(c.Caption())}; }

Shown Rows(const ListBase& list) {
  Shown s{.control = list.Name(), .list = true};
  for (const std::string& item : list.Items()) s.lines.push_back(UpToNul(item));
  return s;
}

// The lines of these controls, in the order given, which is the page's top to bottom.
void AddTexts(Block& b, std::initializer_list<const Control*> controls) {
  for (const Control* c : controls) b.shown.push_back(Text(*c));
}

Shown Bar(const TamrixPBar& bar, const std::string& caption) {
  return {.control = bar.Name(), .caption = caption, .bar = bar.Shown(), .barColor = bar.design().barColor};
}

Shown Picture(const Image& image) { return {.control = image.Name(), .lit = image.Visible()}; }

// Where the program itself would end, with the runtime's error box.
std::string Ending(const RuntimeError& e) {
  return "le programme s'arrêterait ici sur cette machine, avec son erreur d'exécution " + rt::IntToText(e.Number()) +
         " (" + e.Description() + ").";
}

// A page's procedure that may end the program: the part keeps the one sentence.
void RunOrNote(Block& block, const std::function<void()>& procedure) {
  try {
    procedure();
  } catch (const RuntimeError& e) {
    block.missing = Ending(e);
  }
}

// The main window and Test Lab's frame, without windows, for the pages to stand in.
struct Pages {
  Pages() : form({.name = "Form1"}), testLab(&form, {.name = "Frame3"}) {
    for (std::size_t i = 0; i < kBiosCharacteristicTexts.size(); ++i) biosTable[i] = kBiosCharacteristicTexts[i];
  }
  Form form;
  TamrixFrm testLab;
  BiosCharacteristicsTable biosTable;
};

Block Home(Pages& pages, Platform& p) {
  HomePage home(pages.form, p);
  Block b{.key = "accueil", .title = "Mémoire (page d'accueil)"};
  // The monitor's tick traps nothing: a total that reads as 0 would end the program there.
  RunOrNote(b, [&] { home.Timer1Tick(); });
  if (!b.missing.empty()) return b;
  AddTexts(b, {&home.lcd3, &home.lcd2, &home.lcd1});
  b.shown.push_back(Bar(home.TamrixPBar2, home.Label17.Caption()));
  AddTexts(b, {&home.l1, &home.l2, &home.l3, &home.l4, &home.l5, &home.l6});
  return b;
}

Block Windows(Pages& pages, Platform& p) {
  InfoWindowsPage page(pages.testLab, p);
  page.InfoWindows();
  Block b{.key = "windows", .title = page.fwindows.Caption()};
  AddTexts(b, {&page.t3, &page.t4, &page.t6, &page.t7, &page.t8, &page.t9, &page.t10, &page.t11});
  return b;
}

Block Pc(Pages& pages, Platform& p) {
  InfoPcPage page(pages.testLab, p);
  page.InfoPc();
  Block b{.key = "pc", .title = page.pc.Caption()};
  AddTexts(b, {&page.t1, &page.t2, &page.freq, &page.t5, &page.t12, &page.t13, &page.t14, &page.t15});
  return b;
}

// Each drive on a page of its own, as if it were the first one chosen: a drive whose volume
// can't be read then shows its lines empty, never the drive before it.
Block Drives(Pages& pages, Platform& p) {
  DrivesPage list(pages.testLab, p);
  list.Drive1.Refresh();
  Block b{.key = "disques", .title = list.disque.Caption()};
  for (int i = 0; i < list.Drive1.ListCount(); ++i) {
    DrivesPage page(pages.testLab, p);
    page.Drive1.OnChange = nullptr;  // one report a drive, as the page's button gives it
    page.Drive1.Refresh();
    page.Drive1.SetListIndex(i);
    page.InfoLecteur();
    Block drive{.title = page.Drive1.Drive(), .control = page.Drive1.Name()};
    // The lines top to bottom, as the page stands them.
    AddTexts(drive, {&page.d1, &page.d6, &page.d2, &page.d3, &page.d4, &page.d5});
    drive.shown.push_back(Bar(page.TamrixPBar3, "Part libre :"));
    b.blocks.push_back(std::move(drive));
  }
  return b;
}

Block Bios(Pages& pages, Platform& p) {
  BiosPage page(pages.testLab, p, pages.biosTable);
  Block b{.key = "bios", .title = page.FrmBios.Caption()};
  Block report{.title = "Info Bios", .control = page.TamrixCmd9.Name()};
  RunOrNote(report, [&] {
    page.InfoBios();
    report.shown.push_back(Text(page.Text1));
  });
  Block list{.title = "Tech Support", .control = page.TamrixCmd10.Name()};
  RunOrNote(list, [&] {
    page.TechSupport();
    list.shown.push_back(Rows(page.List1));
  });
  b.blocks = {std::move(report), std::move(list)};
  return b;
}

Block Processor(Pages& pages, Platform& p, bool testCpu) {
  CpuPage page(pages.testLab, p);
  const std::string& caption = page.FrmCpu.Caption();
  Block b{.key = "processeur", .title = caption.substr(caption.find_first_not_of(' '))};
  if (testCpu) page.PrepareOpening();  // the count runs at the priority the page's opening sets
  RunOrNote(b, [&] { page.FillProcessorLabels(); });
  const Label* captions[] = {&page.lc1, &page.lc2, &page.lc3, &page.lc4, &page.lc5, &page.lc6, &page.lc7, &page.lc8, &page.lc9, &page.lc10};
  const Label* values[] = {&page.Cpu1, &page.Cpu2, &page.Cpu3, &page.Cpu4, &page.Cpu5, &page.Cpu6, &page.Cpu7, &page.Cpu8, &page.Cpu9, &page.Cpu10};
  if (b.missing.empty())
    for (std::size_t i = 0; i < std::size(values); ++i) b.shown.push_back(Text(*values[i], captions[i]->Caption()));
  if (testCpu) {
    page.Measure();
    b.shown.push_back(Text(page.iLabel1, "Indice"));
    b.shown.push_back(Text(page.rst, page.Label22.Caption()));
    for (const Image* i : {&page.iImage5, &page.iImage6, &page.iImage7, &page.iImage8}) b.shown.push_back(Picture(*i));
  }
  return b;
}

// The sound page as the user walks it: each mixer, each of its destinations, each of their
// sources. A box stands with the choice that brought it: the start-up's mixer slice at the
// section's head, a choice of mixer or destination with its part. Such a choice also chooses the
// first line below it, and a source whose choice brought a box shows no report, since the page
// then keeps the one of the line shown before.
Block Sound(Pages& pages, BoxKeeper& p) {
  CMixer mixer(p);
  SoundPage page(pages.testLab, p, mixer);
  Block b{.key = "son", .title = page.Frmson.Caption()};
  page.LoadMixers(pages.form);
  b.boxes = p.Take();
  bool firstSourceBoxed = !b.boxes.empty();
  auto choose = [&](ListBase& list, int i) {
    if (list.ListIndex() != i) ResumeNext([&] { list.SetListIndex(i); });
    return Block{.title = list.List(i), .control = list.Name(), .boxes = p.Take()};
  };
  for (int m = 0; m < page.cbMixerList.ListCount(); ++m) {
    Block card = choose(page.cbMixerList, m);
    if (m > 0) firstSourceBoxed = !card.boxes.empty();
    for (int d = 0; d < page.cbDstLineList.ListCount(); ++d) {
      Block destination = choose(page.cbDstLineList, d);
      if (d > 0) firstSourceBoxed = !destination.boxes.empty();
      destination.shown.push_back(Rows(page.lstDstLineInfo));
      for (int s = 0; s < page.cbSrcLineList.ListCount(); ++s) {
        Block source = choose(page.cbSrcLineList, s);
        if (!(s == 0 ? firstSourceBoxed : !source.boxes.empty())) source.shown.push_back(Rows(page.lstSrcLineInfo));
        destination.blocks.push_back(std::move(source));
      }
      card.blocks.push_back(std::move(destination));
    }
    b.blocks.push_back(std::move(card));
  }
  return b;
}

}  // namespace

SystemReport TakeSystemReport(Platform& real, bool testCpu) {
  BoxKeeper p(real);
  SystemReport report{.taken = p.Now(), .decimalSign = p.DecimalSign(), .cpuTested = testCpu};
  Pages pages;
  // A box that a page raised outside the sound page's own walk stands with its section.
  auto add = [&](Block section) {
    std::vector<std::string> left = p.Take();
    section.boxes.insert(section.boxes.end(), left.begin(), left.end());
    report.sections.push_back(std::move(section));
  };
  add(Home(pages, p));
  add(Windows(pages, p));
  add(Pc(pages, p));
  add(Drives(pages, p));
  add(Bios(pages, p));
  add(Processor(pages, p, testCpu));
  add(Sound(pages, p));
  return report;
}

}  // namespace tamrix::companion
