#include "sysinfo/DrivesPage.h"

#include "platform/Runtime.h"

namespace tamrix {

namespace {

// Below the drive list, six rows across the page: a caption, then the line that the drive's
// report fills. A line repeats its caption before the value, so it takes the wider part.
constexpr int kRowTop = 1095, kRowStep = 330;

Design Row(const char* name, const char* caption, int row) {
  return {.name = name, .caption = caption, .rect = {180, kRowTop + row * kRowStep + 30, 1860, 255}, .backStyle = 0,
          .alignment = 1, .wordWrap = false};
}

Design Line(const char* name, int row) {
  return {.name = name, .rect = {2160, kRowTop + row * kRowStep, 4635, 300}, .locked = true};
}

}  // namespace

DrivesPage::DrivesPage(Control& testLab, Platform& platform)
    : p_(platform),
      disque(&testLab, {.name = "disque", .caption = "Information sur vos disques :", .rect = {240, 360, 6975, 3135}}),
      Label5(&disque, {.name = "Label5", .caption = "Selectionner un lecteur de Disque :", .rect = {180, 375, 4200, 255},
                       .backStyle = 0, .wordWrap = false}),
      Label6(&disque, {.name = "Label6", .caption = "Selectionner un lecteur de Disque :", .rect = {195, 390, 4200, 255},
                       .foreColor = 0xB0B0B0, .backStyle = 0, .wordWrap = false}),
      Drive1(&disque, {.name = "Drive1", .rect = {180, 690, 3060, 315}}, platform),
      Fact(&disque, {.name = "Fact", .rect = {4440, 330, 420, 420}, .visible = false}, platform),
      Image4(&disque, {.name = "Image4", .rect = {4935, 315, 690, 690}, .picture = "drive"}),
      TamrixPBar3(&disque, {.name = "TamrixPBar3", .rect = {5940, 315, 720, 720}, .progressType = 1, .direction = 4}),
      Label13(&disque, Row("Label13", "Nom du Volume :", 0)),
      Label7(&disque, Row("Label7", "Type du lecteur :", 1)),
      Label8(&disque, Row("Label8", "Système de fichier :", 2)),
      Label9(&disque, Row("Label9", "= de Série :", 3)),
      Label10(&disque, Row("Label10", "Espace Total :", 4)),
      Label11(&disque, Row("Label11", "Espace libre :", 5)),
      d1(&disque, Line("d1", 0)),
      d2(&disque, Line("d2", 2)),
      d3(&disque, Line("d3", 3)),
      d4(&disque, Line("d4", 4)),
      d5(&disque, Line("d5", 5)),
      d6(&disque, Line("d6", 1)) {
  Drive1.OnChange = [this] { InfoLecteur(); };
}

namespace {

// The type line: the first row whose number matches wins. The last row's label has a small l,
// unlike the others, and its word is spelt so; both stay as the users know them.
struct DriveTypeRow {
  std::int32_t type;
  const char* label;
  const char* word;
};
constexpr DriveTypeRow kDriveTypes[] = {
    {5, "Type du Lecteur :      ", "CDROM"},
    {3, "Type du Lecteur :      ", "Lecteur Fixe"},
    {6, "Type du Lecteur :      ", "Lecteur RAM"},
    {2, "Type du Lecteur :      ", "Lecteur Removable"},
    {4, "Type du Lecteur :      ", "Lecteur à distance"},
};
constexpr DriveTypeRow kOtherDriveType = {0, "Type du lecteur :      ", "Lecteur unconnu"};

}  // namespace

// Nothing here reaches the user as an error: a read that fails leaves its line as it stood,
// maybe with the earlier drive's value.
void DrivesPage::InfoLecteur() {
  const char dec = p_.DecimalSign();
  ResumeNext([&] { Fact.setDrive(Drive1.Drive()); });
  ResumeNext([&] { d1.SetText("Nom du Volume :     " + Fact.volumename()); });
  ResumeNext([&] { d2.SetText("Système de fichier : " + Fact.filesystem()); });
  ResumeNext([&] { d3.SetText("N°= de Série :         " + Fact.serialnumber()); });
  ResumeNext([&] { d4.SetText("Espace Total :         " + rt::DoubleToText(Fact.totalsize(), dec)); });
  ResumeNext([&] { d5.SetText("Espace Libre :         " + rt::DoubleToText(Fact.freesize(), dec)); });

  // The bar shows the free share, not the used one; an empty drive's total of 0 divides nothing.
  ResumeNext([&] {
    if (Fact.totalsize() != 0)
      TamrixPBar3.SetValue(Fact.freesize() / Fact.totalsize() * 100);
    else
      TamrixPBar3.SetValue(0);
  });

  // The type is read afresh for each comparison, as the rows are tried one after the other.
  ResumeNext([&] {
    for (const DriveTypeRow& row : kDriveTypes) {
      if (Fact.drivetype() == row.type) {
        d6.SetText(std::string(row.label) + row.word);
        return;
      }
    }
    d6.SetText(std::string(kOtherDriveType.label) + kOtherDriveType.word);
  });
}

}  // namespace tamrix
