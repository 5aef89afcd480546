#include "tools/FolderCustomisation.h"

#include "platform/FileFaults.h"
#include "platform/Runtime.h"

namespace tamrix {

namespace {

constexpr const char* kAttention = "Attention";
constexpr const char* kDone = "Opération effectuée avec succées!";
constexpr const char* kDoneTitle = " Tamrix Utility 3.0 Pro ";

Design Icon(int i) {
  return {.name = "picIcones(" + std::to_string(i) + ")", .rect = {240 + i * 900, 750, 555, 555},
          .backColor = colors::ButtonFace, .mousePointer = 99};
}

}  // namespace

FolderCustomisationPage::FolderCustomisationPage(Form& form, Platform& platform, std::int16_t& compteur,
                                                 std::string& fichierIcone, std::int16_t& indexIcone)
    : p_(platform),
      Compteur(compteur),
      FichierIcone(fichierIcone),
      IndexIcone(indexIcone),
      fraPerso(&form, {.name = "fraPerso", .caption = "Personnalisez vos dossiers :", .rect = {60, 60, 6165, 5610},
                       .backColor = colors::ButtonFace}),
      lblTexte0(&fraPerso, {.name = "lblTexte(0)", .caption = "&Dossier à personnaliser :", .rect = {120, 390, 5925, 255},
                            .backStyle = 0}),
      txtPersonnaliser(&fraPerso, {.name = "txtPersonnaliser", .rect = {120, 690, 4335, 315}}),
      par(&fraPerso, {.name = "par", .caption = "Parcourir..", .rect = {4590, 660, 1455, 375}}),
      fraIcone(&fraPerso, {.name = "fraIcone", .caption = "Changer l'icone", .rect = {120, 1200, 5925, 3495},
                           .backColor = colors::ButtonFace}),
      optDefaut(&fraIcone, {.name = "optDefaut", .caption = "Choisir dans la &liste :", .rect = {120, 375, 5655, 300},
                            .backColor = colors::ButtonFace}, 1),
      picIcones{PictureBox(&fraIcone, Icon(0)), PictureBox(&fraIcone, Icon(1)), PictureBox(&fraIcone, Icon(2)),
                PictureBox(&fraIcone, Icon(3)), PictureBox(&fraIcone, Icon(4)), PictureBox(&fraIcone, Icon(5))},
      optFichier(&fraIcone, {.name = "optFichier", .caption = "Choisir un &fichier :", .rect = {120, 1710, 5655, 300},
                             .backColor = colors::ButtonFace}),
      txtAfficherFichier(&fraIcone, {.name = "txtAfficherFichier", .rect = {240, 2130, 4635, 315}}),
      cmdChoisirFichier(&fraIcone, {.name = "cmdChoisirFichier", .caption = "...", .rect = {5010, 2100, 735, 375}}),
      picView(&fraIcone, {.name = "picView", .rect = {240, 2640, 555, 555}, .backColor = colors::ButtonFace}),
      Frame1(&fraPerso, {.name = "Frame1", .caption = "Choisissez un dossier : ", .rect = {120, 1200, 5925, 3495},
                         .backColor = colors::ButtonFace, .visible = false}),
      lblLecteur(&Frame1, {.name = "lblLecteur", .caption = "Choisissez le lecteur  :", .rect = {120, 390, 2400, 255},
                           .backStyle = 0}),
      Drive1(&Frame1, {.name = "Drive1", .rect = {2520, 345, 3285, 315}}, platform),
      Dir1(&Frame1, {.name = "Dir1", .rect = {120, 810, 5685, 2070}}, platform),
      TamrixCd1(&Frame1, {.name = "TamrixCd1", .caption = "&Ok", .rect = {4350, 2970, 1455, 420}}),
      cmdPersonnaliser(&fraPerso, {.name = "cmdPersonnaliser", .caption = "&Personnalisez", .rect = {1470, 5025, 1455, 420}}),
      TamrixCd2(&fraPerso, {.name = "TamrixCd2", .caption = "&Rétablir", .rect = {3030, 5025, 1455, 420}}),
      TamrixCd3(&fraPerso, {.name = "TamrixCd3", .caption = "&Quitter", .rect = {4590, 5025, 1455, 420},
                            .picture = "quit", .centerPicture = false}) {
  cdlOuvrir.DialogTitle = "Ouvrir un icone";
  cdlOuvrir.Filter = "Icones (*.ico)|*.ico";
  for (int i = 0; i < 6; ++i) picIcones[static_cast<std::size_t>(i)].OnClick = [this, i] { IconeClick(i); };
  par.OnClick = [this] { Parcourir(); };
  TamrixCd1.OnClick = [this] { Ok(); };
  cmdChoisirFichier.OnClick = [this] { ChoisirFichier(); };
  cmdPersonnaliser.OnClick = [this] { Personnaliser(); };
  TamrixCd2.OnClick = [this] { Retablir(); };
}

FolderCustomisationPage::~FolderCustomisationPage() {
  for (auto& pic : picIcones) p_.ReleasePicture(pic.Picture());
  p_.ReleasePicture(picView.Picture());
}

// For a program "Tamrix Utility.exe" in C:\Outils this is "c:\outils\tamrix utility.exe": the
// folder goes to lower case as well as the name.
std::string FolderCustomisationPage::OwnFile() {
  // No special case for a program in a drive's root: the separator is doubled there.
  return rt::LCase(p_.AppPath() + "\\" + p_.ExeName() + ".exe");
}

void FolderCustomisationPage::Load() {
  cdlOuvrir.Flags = kDialogFlags;
  // picIcones(i) shows the icon resource 101 + i, which is icon number i + 1 of the file.
  for (Compteur = 0; Compteur <= 5; ++Compteur)
    picIcones[static_cast<std::size_t>(Compteur)].SetPicture(p_.LoadResourceIcon(101 + Compteur));
  // With no click, the first icon of the row is the choice, though no picture is marked.
  FichierIcone = OwnFile();
  IndexIcone = 1;
  // The drive and folder lists start where the program stands, before their change event is
  // wired, as lists made with the window raise none.
  const std::string here = p_.AppPath();
  if (here.size() >= 2 && here[1] == ':') Drive1.SetDrive(here);
  if (p_.FolderExists(here)) Dir1.SetPath(here);
  Drive1.OnChange = [this] { LecteurChange(); };
}

// The click marks the picture; it doesn't select the list's option.
void FolderCustomisationPage::IconeClick(int index) {
  for (auto& pic : picIcones) pic.SetBorderStyle(0);
  picIcones[static_cast<std::size_t>(index)].SetBorderStyle(1);
  FichierIcone = OwnFile();
  IndexIcone = static_cast<std::int16_t>(index + 1);
}

// Nothing enables the box again while the window stays loaded.
void FolderCustomisationPage::Parcourir() {
  txtPersonnaliser.SetEnabled(false);
  Frame1.SetVisible(true);
  fraIcone.SetVisible(false);
}

// A drive that isn't ready is a fault that nothing here catches.
void FolderCustomisationPage::LecteurChange() {
  std::string root = Drive1.Drive().substr(0, 2) + "\\";
  if (!p_.FolderExists(root)) throw rt::DeviceUnavailable();
  Dir1.SetPath(root);
}

void FolderCustomisationPage::Ok() {
  txtPersonnaliser.SetText(Dir1.Path());
  Frame1.SetVisible(false);
  fraIcone.SetVisible(true);
}

// The dialog raises no error on Cancel here, so a Cancel shows the name as it stands again: empty
// the first time, the earlier choice after one. A preview that fails to load is not caught.
void FolderCustomisationPage::ChoisirFichier() {
  try {
    cdlOuvrir.ShowOpen(p_, fraPerso.ParentForm() ? fraPerso.ParentForm()->hWnd : 0);
  } catch (const RuntimeError&) {
    return;
  }
  txtAfficherFichier.SetText(cdlOuvrir.FileName);
  SetPreview(p_.LoadPicture(cdlOuvrir.FileName));
}

void FolderCustomisationPage::SetPreview(Platform::PictureHandle picture) {
  Platform::PictureHandle old = picView.Picture();
  picView.SetPicture(picture);
  if (old && old != picture) p_.ReleasePicture(old);
}

void FolderCustomisationPage::Personnaliser() {
  if (txtPersonnaliser.Text().empty()) {
    p_.MessageBoxA("Vous devez indiquer toutes les informations du dossier!", mb::Ok | mb::Information, kAttention);
    return;
  }
  if (optFichier.Value() == 1 && txtAfficherFichier.Text().empty()) {
    p_.MessageBoxA("Vous devez indiquer toutes les informations !", mb::Ok | mb::Information, kAttention);
    return;
  }
  PersonnaliserDossier();
}

void FolderCustomisationPage::NotFound() {
  p_.MessageBoxA("Le dossier indiqué à personnaliser est introuvable !", mb::Ok | mb::Information, kAttention);
}

// After the folder is found nothing is caught: a folder the user may not write to ends the
// program. The attrib commands run in the background, unwatched; the message may come first.
void FolderCustomisationPage::PersonnaliserDossier() {
  const std::string P = txtPersonnaliser.Text();
  if (!p_.FolderExists(P)) {
    NotFound();
    return;
  }
  const std::string ini = P + "\\desktop.ini";
  // Forced: a hidden, system one goes too. One that still won't go ends the program here.
  if (p_.FileExists(ini) && !p_.DeleteFileForce(ini)) throw rt::PermissionDenied();
  p_.StartProcess("attrib +s \"" + P + "\"", ShowCommand::Hidden);
  std::vector<std::string> lines{"[.ShellClassInfo]"};
  if (optDefaut.Value() == 0) {
    FichierIcone = txtAfficherFichier.Text();
    lines.push_back("IconFile=\"" + FichierIcone + "\"");
    lines.push_back("IconIndex=0");
  } else {
    lines.push_back("IconFile=\"" + FichierIcone + "\"");
    lines.push_back("IconIndex=" + rt::IntToText(IndexIcone));
  }
  p_.WriteTextLines(ini, lines);
  p_.StartProcess("attrib +h \"" + ini + "\"", ShowCommand::Hidden);
  p_.MessageBoxA(kDone, mb::Ok | mb::Information, kDoneTitle);
}

// Undoes the system mark and the file, whoever wrote it. With no desktop.ini it says nothing and
// changes nothing.
void FolderCustomisationPage::Retablir() {
  const std::string P = txtPersonnaliser.Text();
  if (!p_.FolderExists(P)) {
    NotFound();
    return;
  }
  const std::string ini = P + "\\desktop.ini";
  if (!p_.FileExists(ini)) return;
  p_.StartProcess("attrib -s \"" + P + "\"", ShowCommand::Hidden);
  if (!p_.DeleteFileForce(ini)) return;
  p_.MessageBoxA(kDone, mb::Ok | mb::Information, kDoneTitle);
}

}  // namespace tamrix
