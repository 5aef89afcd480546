// The folder customisation page (fraPerso): its frame, the icon panel with its two choices, and
// its way out. What the page writes comes with the page itself.
#pragma once

#include "shell/Controls.h"

namespace tamrix {

class FolderCustomisationPage {
 public:
  explicit FolderCustomisationPage(Form& form)
      : fraPerso(&form, {.name = "fraPerso", .caption = "Personnalisez vos dossiers :", .rect = {60, 60, 6165, 5610},
                         .backColor = colors::ButtonFace}),
        fraIcone(&fraPerso, {.name = "fraIcone", .caption = "Changer l'icone", .rect = {120, 1200, 5925, 3495},
                             .backColor = colors::ButtonFace}),
        optDefaut(&fraIcone, {.name = "optDefaut", .caption = "Choisir dans la &liste :", .rect = {120, 375, 5655, 300},
                              .backColor = colors::ButtonFace}, 1),
        optFichier(&fraIcone, {.name = "optFichier", .caption = "Choisir un &fichier :", .rect = {120, 1710, 5655, 300},
                               .backColor = colors::ButtonFace}),
        TamrixCd3(&fraPerso, {.name = "TamrixCd3", .caption = "&Quitter", .rect = {4590, 5025, 1455, 420},
                              .picture = "quit", .centerPicture = false}) {}

  TamrixFrm fraPerso;
  TamrixFrm fraIcone;
  TamrixOpButton optDefaut;   // selected at start
  TamrixOpButton optFichier;
  TamrixCmd TamrixCd3;  // "&Quitter"
};

}  // namespace tamrix
