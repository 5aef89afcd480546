#include "sysinfo/BiosPage.h"

namespace tamrix {

namespace {

// What Text1 says until the first report: a line break at the end of each line.
constexpr const char* kIntroduction =
    "      Tamrix Info Bios est une nouvelle technologie de teste du \r\n"
    "materiels informatiques se base sur le code QX0Y1B05 créé \r\n"
    "par Tamrix Corporation pour donner toutes les informations \r\n"
    "système du BIOS et de tester les supports technologiques \r\n"
    "supportées par le BIOS.\r\n"
    "\r\n"
    "  -  Pour afficher les informations concernant la version, \r\n"
    "langue, type .. du Bios cliquez sur Info Bios.\r\n"
    " \r\n"
    "   - Pour afficher les technologies supportées par le Bios \r\n"
    "cliquez \r\n"
    "sur Tech Support.\r\n";

}  // namespace

BiosPage::BiosPage(Control& testLab, Platform& platform)
    : p_(platform),
      FrmBios(&testLab, {.name = "FrmBios", .caption = "Information sur votre BIOS :", .rect = {120, 240, 7215, 3255}}),
      Text1(&FrmBios, {.name = "Text1", .caption = kIntroduction, .rect = {150, 375, 6915, 2010}, .multiLine = true}),
      List1(&FrmBios, {.name = "List1", .rect = {150, 375, 6915, 2010}, .visible = false}),
      Image5(&FrmBios, {.name = "Image5", .rect = {390, 2445, 720, 720}, .picture = "bios_chip"}),
      TamrixCmd9(&FrmBios, {.name = "TamrixCmd9", .caption = "&Info Bios", .rect = {1950, 2595, 1560, 420}}),
      TamrixCmd10(&FrmBios, {.name = "TamrixCmd10", .caption = "&Tech Support", .rect = {3705, 2595, 1560, 420}}),
      Image6(&FrmBios, {.name = "Image6", .rect = {6105, 2445, 720, 720}, .picture = "bios_chip"}) {}

}  // namespace tamrix
