#include "sysinfo/CpuPage.h"

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
      Test(&FrmCpu, {.name = "Test", .caption = "Démarrer le Test", .rect = {4800, 420, 2160, 450}, .picture = "test",
                     .centerPicture = false}),
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
                        .font = {"Verdana", 14.25, true}, .foreColor = 0x800000, .backStyle = 0, .alignment = 2}) {}

void CpuPage::FillProcessorLabels() {}

}  // namespace tamrix
