#include "sysinfo/SoundPage.h"

namespace tamrix {

SoundPage::SoundPage(Control& testLab, Platform& platform)
    : p_(platform),
      Frmson(&testLab, {.name = "Frmson", .caption = "Information sur le materiel de son :", .rect = {120, 240, 7215, 3255}}),
      lblMxList(&Frmson, {.name = "lblMxList", .caption = "Carte Son :", .rect = {180, 420, 1080, 255}, .backStyle = 0}),
      cbMixerList(&Frmson, {.name = "cbMixerList", .rect = {1260, 375, 5760, 315}}),
      framDestInfo(&Frmson, {.name = "framDestInfo", .caption = "Information sur les entrées :", .rect = {120, 810, 3420, 2325},
                             .backColor = colors::Beige}),
      Label23(&framDestInfo, {.name = "Label23", .caption = "Entrées:", .rect = {120, 330, 780, 255}, .backColor = colors::Beige}),
      cbDstLineList(&framDestInfo, {.name = "cbDstLineList", .rect = {900, 285, 2400, 315}}),
      lstDstLineInfo(&framDestInfo, {.name = "lstDstLineInfo", .rect = {120, 690, 3180, 1515}, .font = {"Lucida Sans Unicode"}}),
      framSrcInfo(&Frmson, {.name = "framSrcInfo", .caption = "Source Line Info", .rect = {3675, 810, 3420, 2325},
                            .backColor = colors::Beige}),
      Label24(&framSrcInfo, {.name = "Label24", .caption = "Entrées:", .rect = {120, 330, 780, 255}, .backColor = colors::Beige}),
      cbSrcLineList(&framSrcInfo, {.name = "cbSrcLineList", .rect = {900, 285, 2400, 315}}),
      lstSrcLineInfo(&framSrcInfo, {.name = "lstSrcLineInfo", .rect = {120, 690, 3180, 1515}, .font = {"Lucida Sans Unicode"}}) {}

}  // namespace tamrix
