#include "shell/HomePage.h"

#include <cstdint>

#include "platform/Module1.h"
#include "platform/Runtime.h"
#include "shell/Maker.h"

namespace tamrix {

namespace {

// One literal, as the page shows it (its doubled blank included).
constexpr const char* kIntroduction =
    "Tamrix Utility est un logiciel très  Util qui va vous permettre à optimiser votre système, Windows, et même votre connexion (Réseaux ou Internet) comme des Pro, et il est très simple à utiliser. Grâce à Tamrix utility vous pouvez savoir tout sur votre PC.";

// The blanks inside the three physical-memory captions line their values up.
constexpr const char* kFreeCaption = "Mémoire libre:         ";
constexpr const char* kUsedCaption = "Mémoire utilisée:     ";
constexpr const char* kTotalCaption = "Mémoire Vive Totale:     ";

constexpr const char* kDownloadTitle = "Tamrix Corporation - Centre de téléchargement";
constexpr const char* kDownloadOffer =
    " Vous avez besoin d'un logiciel qui optimise la mémoire vive, la mémoire cache \r"
    "du processeur ( pour de meilleurs performances ) et accélère votre Windows ?\r"
    "Téléchargez gratuitement notre logiciel  ' Tamrix Libra ' . \r"
    "\r"
    "Voulez vous le télécharger maintenant ?";

constexpr std::uint32_t kMemoryStatusLength = 32;
constexpr int kShowNormal = 1;

constexpr Color kLinkBlue = 0xFF0000;
constexpr Color kDarkBlue = 0x800000;

// The page's lines of text: on the beige, Verdana, one line high.
Design Line(const char* name, Twips rect, const char* caption = "") {
  return {.name = name, .caption = caption, .rect = rect, .backColor = colors::Beige, .backStyle = 0,
          .wordWrap = false};
}

Design Box(const char* name, Twips rect) { return {.name = name, .rect = rect, .borderColor = colors::LightGrey}; }

Design Picture(const char* name, Twips rect, const char* picture, Color mask = colors::White) {
  return {.name = name, .rect = rect, .picture = picture, .maskColor = mask};
}

// The memory and clock pictures are painted opaque on the page's beige: nothing in them is
// transparent, not even their white.
constexpr Color kNoMask = 0xFF00FF;

// A byte count of the platform's record read as signed, in megabytes.
double SignedMegabytes(std::uint32_t bytes) { return static_cast<std::int32_t>(bytes) / 1024.0 / 1024.0; }

std::string Whole(std::int64_t n) { return rt::IntToText(n); }

}  // namespace

// Three bands under the introduction: physical memory with its round bar, then virtual memory
// beside the paging file, then the clock and the download link.
HomePage::HomePage(Control& form, Platform& platform)
    : p_(platform),
      Frame4(&form, {.name = "Frame4", .caption = "  Tamrix Utility  ", .rect = {360, 1505, 7215, 3855}}),
      Label18(&Frame4, {.name = "Label18", .caption = kIntroduction, .rect = {780, 375, 6315, 780},
                        .backColor = colors::Beige, .backStyle = 0}),
      lcd3(&Frame4, Line("lcd3", {960, 1335, 3780, 240})),
      lcd2(&Frame4, Line("lcd2", {960, 1605, 3780, 240})),
      lcd1(&Frame4, Line("lcd1", {960, 1875, 3780, 240})),
      Label17(&Frame4, Line("Label17", {5010, 1605, 1275, 240}, "La Ram libre :")),
      TamrixPBar2(&Frame4, {.name = "TamrixPBar2", .rect = {6345, 1410, 615, 615}, .barColor = colors::Green,
                            .showCaption = false, .progressType = 1, .direction = 4}),
      l1(&Frame4, Line("l1", {150, 2355, 3300, 240})),
      l2(&Frame4, Line("l2", {150, 2610, 3300, 240})),
      l3(&Frame4, Line("l3", {150, 2865, 3300, 240})),
      l4(&Frame4, Line("l4", {3600, 2355, 3510, 240})),
      l5(&Frame4, Line("l5", {3600, 2610, 3510, 240})),
      l6(&Frame4, Line("l6", {3600, 2865, 3510, 240})),
      Label19(&Frame4, {.name = "Label19", .rect = {735, 3345, 1395, 330}, .font = {"Arial", 11.25, true},
                        .backColor = colors::Beige, .foreColor = kDarkBlue, .backStyle = 0, .wordWrap = false}),
      Label14(&Frame4, {.name = "Label14", .caption = "Optimisez la mémoire Vive", .rect = {4725, 3420, 2400, 240},
                        .backColor = colors::Beige, .foreColor = kLinkBlue, .backStyle = 0, .alignment = 1,
                        .wordWrap = false, .mousePointer = 99}),
      Image1(&Frame4, Picture("Image1", {180, 450, 480, 480}, "homepc")),
      Image2(&Frame4, Picture("Image2", {150, 1365, 720, 720}, "home_memory", kNoMask)),
      Image3(&Frame4, Picture("Image3", {165, 3270, 480, 480}, "home_clock", kNoMask)),
      Shape8(&Frame4, Box("Shape8", {90, 1245, 4740, 960})),
      Shape10(&Frame4, Box("Shape10", {4920, 1245, 2205, 960})),
      Shape11(&Frame4, Box("Shape11", {90, 2280, 3360, 900})),
      Shape12(&Frame4, Box("Shape12", {3525, 2280, 3600, 900})),
      Shape13(&Frame4, Box("Shape13", {90, 3255, 2130, 510})) {
  Label14.OnClick = [this] { OfferLibraDownload(); };
}

// Nothing here is trapped: a fault ends the program with the runtime's box.
void HomePage::Timer1Tick() {
  // The snapshot in megabytes; of it only the paging file and virtual memory show.
  std::int32_t memoryLoad, totalPhys, availPhys, totalPageFile, availPageFile, totalVirtual, availVirtual;
  Module1::ReadMemoryStatus(p_, memoryLoad, totalPhys, availPhys, totalPageFile, availPageFile, totalVirtual,
                            availVirtual);
  // The exact byte counts of physical memory, from a record of its own.
  const MemoryStatus exact = p_.GlobalMemoryStatus(kMemoryStatusLength);
  const char sign = p_.DecimalSign();

  // The one megabyte added to the total is deliberate and stays.
  const std::string total = rt::FormatNumber(SignedMegabytes(exact.dwTotalPhys) + 1, "#0", sign);
  const std::string free = rt::FormatNumber(SignedMegabytes(exact.dwAvailPhys), "#0.0", sign);

  // Used memory is the difference of the two texts read back as numbers, so it may show a
  // fraction; there is no blank before "Mo" on the free line.
  lcd1.SetCaption(kFreeCaption + free + "Mo");
  const double used = rt::TextToDouble(total, sign) - rt::TextToDouble(free, sign);
  lcd2.SetCaption(kUsedCaption + rt::DoubleToText(used, sign) + " Mo");
  lcd3.SetCaption(kTotalCaption + total + " Mo");

  // The round bar shows the free share, not the load, from the rounded texts.
  TamrixPBar2.SetValue(rt::Divide(rt::TextToDouble(free, sign), rt::TextToDouble(total, sign)) * 100);

  // Whole megabytes without a pattern.
  l1.SetCaption("Mémoire Virtuelle : " + Whole(totalVirtual) + " Mo");
  l2.SetCaption("Mémoire Virtuelle libre : " + Whole(availVirtual) + " Mo");
  l3.SetCaption("Mémoire Virtuelle occupée : " + Whole(std::int64_t{totalVirtual} - availVirtual) + " Mo");
  l4.SetCaption("Taille du fichier de pagination : " + Whole(totalPageFile) + " Mo");
  l5.SetCaption("dont : " + Whole(availPageFile) + " Mo libres");
  l6.SetCaption("dont : " + Whole(std::int64_t{totalPageFile} - availPageFile) + " Mo chargés");
}

void HomePage::Timer2Tick() { Label19.SetCaption(rt::FormatTime(p_.Now(), "HH:MM:SS", p_.TimeSeparator())); }

// Despite its words the link does nothing to memory: it offers a download from the maker's site.
void HomePage::OfferLibraDownload() {
  if (p_.MessageBoxA(kDownloadOffer, mb::YesNo | mb::Information, kDownloadTitle) == mb::IdYes)
    p_.ShellExecuteA(0, "open", maker::LibraDownload(), "", "", kShowNormal);
}

}  // namespace tamrix
