// The folder customisation page (fraPerso): gives a folder its own icon through the shell's
// desktop.ini, with one of the six icons inside the program's own file or an .ico file of the
// user's, and takes it away again.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

class FolderCustomisationPage {
 public:
  // compteur, fichierIcone and indexIcone are the tools window's members, which outlive the page.
  FolderCustomisationPage(Form& form, Platform& platform, std::int16_t& compteur, std::string& fichierIcone,
                          std::int16_t& indexIcone);
  ~FolderCustomisationPage();

  // The page's part of the window's load: the dialog's flags, the six icons, the default icon.
  void Load();

  void IconeClick(int index);     // picIcones(index)
  void Parcourir();               // "Parcourir.."
  void LecteurChange();           // Drive1
  void Ok();                      // "&Ok"
  void ChoisirFichier();          // "..."
  void Personnaliser();           // "&Personnalisez"
  void PersonnaliserDossier();
  void Retablir();                // "&Rétablir"

  // The program's own file, lower case, which holds the six icons.
  std::string OwnFile();

  static constexpr std::int32_t kDialogFlags = 3168268;

 private:
  void SetPreview(Platform::PictureHandle picture);
  void NotFound();

  Platform& p_;
  std::int16_t& Compteur;
  std::string& FichierIcone;
  std::int16_t& IndexIcone;

 public:
  TamrixFrm fraPerso;
  Label lblTexte0;  // lblTexte(0)
  TextBox txtPersonnaliser;
  TamrixCmd par;  // "Parcourir.."
  TamrixFrm fraIcone;
  TamrixOpButton optDefaut;  // selected at start
  std::array<PictureBox, 6> picIcones;
  TamrixOpButton optFichier;
  TextBox txtAfficherFichier;
  TamrixCmd cmdChoisirFichier;  // "..."
  PictureBox picView;
  TamrixFrm Frame1;  // "Choisissez un dossier : ", in fraIcone's place
  Label lblLecteur;
  DriveListBox Drive1;
  DirListBox Dir1;
  TamrixCmd TamrixCd1;         // "&Ok"
  TamrixCmd cmdPersonnaliser;  // "&Personnalisez"
  TamrixCmd TamrixCd2;         // "&Rétablir"
  TamrixCmd TamrixCd3;         // "&Quitter"
  CommonDialog cdlOuvrir;
};

}  // namespace tamrix
