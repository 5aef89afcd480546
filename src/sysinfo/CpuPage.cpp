#include "sysinfo/CpuPage.h"

#include <cmath>

#include "platform/Runtime.h"

namespace tamrix {

namespace {

// Ten rows inside TamrixFrm1: the page's short caption, then the value that WMI gives.
constexpr int kRowTop = 330, kRowStep = 240;

Design Caption(const char* name, const char* caption, int row) {
  return {.name = name, .caption = caption, .rect = {150, kRowTop + row * kRowStep, 1110, 240}, .backStyle = 0};
}

Design Value(const char* name, int row) {
  return {.name = name, .rect = {1290, kRowTop + row * kRowStep, 3060, 240}, .backStyle = 0, .wordWrap = false};
}

// The four ranks of the score stand in a row; each coloured picture lies exactly over its grey one.
Design Symbol(const char* name, const char* picture, int rank, bool visible) {
  return {.name = name, .rect = {5070 + rank * 420, 1380, 375, 360}, .picture = picture, .visible = visible};
}

}  // namespace

CpuPage::CpuPage(Control& testLab, Platform& platform)
    : p_(platform),
      FrmCpu(&testLab, {.name = "FrmCpu", .caption = " Laboratoire de test du processeur :", .rect = {120, 240, 7215, 3255}}),
      TamrixFrm1(&FrmCpu, {.name = "TamrixFrm1", .caption = "Informations sur le Processeur", .rect = {120, 330, 4440, 2835}}),
      lc1(&TamrixFrm1, Caption("lc1", "CpuID:", 0)),
      lc2(&TamrixFrm1, Caption("lc2", "Avail:", 1)),
      lc3(&TamrixFrm1, Caption("lc3", "AddrWd:", 2)),
      lc4(&TamrixFrm1, Caption("lc4", "Status:", 3)),
      lc5(&TamrixFrm1, Caption("lc5", "VitesseMnt:", 4)),
      lc6(&TamrixFrm1, Caption("lc6", "VitesseMax:", 5)),
      lc7(&TamrixFrm1, Caption("lc7", "CacheL2:", 6)),
      lc8(&TamrixFrm1, Caption("lc8", "L2Spd:", 7)),
      lc9(&TamrixFrm1, Caption("lc9", "VoltCap:", 8)),
      lc10(&TamrixFrm1, Caption("lc10", "Nom:", 9)),
      Cpu1(&TamrixFrm1, Value("Cpu1", 0)),
      Cpu2(&TamrixFrm1, Value("Cpu2", 1)),
      Cpu3(&TamrixFrm1, Value("Cpu3", 2)),
      Cpu4(&TamrixFrm1, Value("Cpu4", 3)),
      Cpu5(&TamrixFrm1, Value("Cpu5", 4)),
      Cpu6(&TamrixFrm1, Value("Cpu6", 5)),
      Cpu7(&TamrixFrm1, Value("Cpu7", 6)),
      Cpu8(&TamrixFrm1, Value("Cpu8", 7)),
      Cpu9(&TamrixFrm1, Value("Cpu9", 8)),
      Cpu10(&TamrixFrm1, Value("Cpu10", 9)),
      Test(&FrmCpu, {.name = "Test", .caption = "Démarrer le Test", .rect = {4800, 420, 2160, 450}}),
      Label22(&FrmCpu, {.name = "Label22", .caption = "Appréciation", .rect = {4800, 1020, 2160, 255}, .backStyle = 0,
                        .alignment = 2}),
      iImage5(&FrmCpu, Symbol("iImage5", "score_lit1", 0, false)),
      iImage6(&FrmCpu, Symbol("iImage6", "score_lit2", 1, false)),
      iImage7(&FrmCpu, Symbol("iImage7", "score_lit3", 2, false)),
      iImage8(&FrmCpu, Symbol("iImage8", "score_lit4", 3, false)),
      iImage1(&FrmCpu, Symbol("iImage1", "score_grey1", 0, true)),
      iImage2(&FrmCpu, Symbol("iImage2", "score_grey2", 1, true)),
      iImage3(&FrmCpu, Symbol("iImage3", "score_grey3", 2, true)),
      iImage4(&FrmCpu, Symbol("iImage4", "score_grey4", 3, true)),
      rst(&FrmCpu, {.name = "rst", .rect = {4680, 1800, 2400, 255}, .backStyle = 0, .alignment = 2}),
      iLabel1(&FrmCpu, {.name = "iLabel1", .caption = "Indice", .rect = {4680, 2220, 2400, 480},
                        .font = {"Verdana", 14.25, true}, .foreColor = 0x800000, .backStyle = 0, .alignment = 2}) {
  Test.OnClick = [this] { RunTest(); };
  iLabel1.OnChange = [this] { Classify(); };
}

namespace {

constexpr std::uint32_t HIGH_PRIORITY_CLASS = 128;
// clang-format off
constexpr const char* kWarning = "Le test va durer 15 secondes, ne touchez pas au clavier ni à la souris et fermez les programmes en cours d'exécution.";
// clang-format on
constexpr std::int32_t kSettlingMs = 2000;
constexpr std::int32_t kMeasuringMs = 13000;

// The expression of one pass: the natural logarithm of Cos(45.68) + 3478 ^ 3.59 / 4.12. Its
// numbers are read from volatile storage on every pass, and its result stored there, so that
// the compiler can neither fold it, nor hoist it out of the loop, nor drop it: each pass calls
// the cosine, the power and the logarithm, as the score's scale expects.
volatile double gAngle = 45.68;  // radians
volatile double gBase = 3478;
volatile double gExponent = 3.59;
volatile double gDivisor = 4.12;
volatile double gLast = 0;  // nothing reads it

}  // namespace

PassCounter PassCounter::At(double n) {
  PassCounter c;
  if (n <= 32767) {
    c.small_ = static_cast<std::int32_t>(n);
  } else if (n <= 2147483647) {
    c.width_ = Width::Int32;
    c.small_ = static_cast<std::int32_t>(n);
  } else {
    c.width_ = Width::Double;
    c.large_ = n;
  }
  return c;
}

PassCounter MeasurePasses(Platform& p, std::int32_t lengthMs) {
  PassCounter passes;
  const std::int64_t end = EndTick(static_cast<std::int32_t>(p.GetTickCount()), lengthMs);
  while (static_cast<std::int32_t>(p.GetTickCount()) < end) {
    double c = std::cos(gAngle);
    double q = std::pow(gBase, gExponent) / gDivisor;
    gLast = std::log(c + q);
    passes.AddOne();
  }
  return passes;
}

std::int64_t ScoreOf(const PassCounter& passes) {
  return static_cast<std::int64_t>(rt::RoundHalfEven(passes.Value() / 100000));
}

void CpuPage::PrepareOpening() {
  p_.SetPriorityClass(p_.GetCurrentProcess(), HIGH_PRIORITY_CLASS);  // never lowered again
  p_.InitCommonControls();
}

// Nothing up to the walk tolerates an error: without WMI the run-time error ends the program. In
// the walk, a property that is Null, absent or unreadable leaves its label as it was; with
// several processors the last one stays on the page.
void CpuPage::FillProcessorLabels() {
  std::shared_ptr<WmiService> wmi = p_.WmiGetObject("winmgmts:{impersonationLevel=impersonate}");
  std::shared_ptr<WmiCollection> processors = wmi->InstancesOf("Win32_Processor");
  const std::pair<Label*, const char*> rows[] = {
      {&Cpu1, "DeviceID"},          {&Cpu2, "Availability"}, {&Cpu3, "AddressWidth"}, {&Cpu4, "CpuStatus"},
      {&Cpu5, "CurrentClockSpeed"}, {&Cpu6, "MaxClockSpeed"}, {&Cpu7, "L2CacheSize"}, {&Cpu8, "L2CacheSpeed"},
      {&Cpu9, "VoltageCaps"},       {&Cpu10, "name"},
  };
  // Objects are fetched one by one as the walk goes: once the first is in hand errors are
  // ignored, so one that can't be fetched ends the walk with the labels already written.
  std::shared_ptr<WmiObject> processor = processors->Next();
  while (processor) {
    for (const auto& row : rows) {
      ResumeNext([&] {
        // Bound inside: clang 14, which builds the fuzz targets, captures no structured binding.
        const auto& [label, property] = row;
        WmiValue v = processor->Get(property);
        if (v.type == WmiValue::Type::Null) throw RuntimeError(94, "Invalid use of Null");
        label->SetCaption(rt::JoinText(v, p_));
      });
    }
    std::shared_ptr<WmiObject> next;
    ResumeNext([&] { next = processors->Next(); });
    processor = next;
  }
}

void CpuPage::RunTest() {
  if (p_.MessageBoxA(kWarning, mb::OkCancel | mb::Information, rt::kAppTitle) == mb::IdCancel) return;
  Measure();
  p_.Beep();
}

void CpuPage::Measure() {
  Form* form = FrmCpu.ParentForm();
  Test.SetCaption("Test en cours ...");
  rst.SetCaption("Veuillez Patientez . . .");
  Test.SetEnabled(false);
  if (form) form->SetEnabled(false);
  iLabel1.SetCaption("");  // hides the coloured pictures, leaves rst alone

  // Settling: idle, with the window's events let through (the timers run, the user is ignored).
  const std::int64_t settled = EndTick(static_cast<std::int32_t>(p_.GetTickCount()), kSettlingMs);
  while (static_cast<std::int32_t>(p_.GetTickCount()) < settled) p_.DoEvents();

  // Measuring: no events at all, the window stays frozen.
  PassCounter passes = MeasurePasses(p_, kMeasuringMs);

  if (form) form->SetEnabled(true);
  Test.SetEnabled(true);
  Test.SetCaption("Démarrer le test");  // a small t after a run
  iLabel1.SetCaption(rt::IntToText(ScoreOf(passes)));  // ScoreCpu; the change classifies it
}

// Each bound belongs to the level below; each step reached overwrites the words and adds a picture.
void CpuPage::Classify() {
  iImage5.SetVisible(false);
  iImage6.SetVisible(false);
  iImage7.SetVisible(false);
  iImage8.SetVisible(false);
  if (iLabel1.Caption().empty()) return;
  double score = rt::TextToDouble(iLabel1.Caption(), p_.DecimalSign());
  iImage5.SetVisible(true);
  rst.SetCaption("Résultat: Faible");
  if (score > 40) rst.SetCaption("Résultat: performant");
  if (score > 55) {
    iImage6.SetVisible(true);
    rst.SetCaption("Résultat: Ultra performant");
  }
  if (score > 110) {
    iImage7.SetVisible(true);
    rst.SetCaption("Résultat: Excelent");
  }
  if (score > 165) {
    iImage8.SetVisible(true);
    rst.SetCaption("Résultat: qualité maximale");
  }
}

}  // namespace tamrix
