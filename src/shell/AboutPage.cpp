#include "shell/AboutPage.h"

#include <string>

#include "platform/Runtime.h"
#include "shell/Maker.h"

namespace tamrix {

namespace {

// Joined by a carriage return alone; the text ends with one, for the empty last line.
std::string AboutText() {
  const std::string lines[] = {
      "  ",
      "-   Tamrix Utility est un ensemble d'utilitaires très précieux qui ",
      "vont vous aidez à tester votre materiels et savoir tous sur tous",
      "les composants.",
      "",
      "-    Tamrix Utility avec l'option 'Optimisez windows' teste votre ",
      "système et l'optimise de manière intelligente et efficace.",
      "",
      "-   Boostez votre connexion internet avec les différents types de",
      "connexions : modem, réseaux, ADSL ..",
      "",
      "-   Protégez votre Pc en cachant les icons et les options de windows",
      "pour une restriction d'accés.",
      "",
      "-   Changez votre résolution de manière sécurisée car Tamrix Utility teste",
      "et vous donne que les résolutions accéptées par votre système.",
      "",
      "-   Supprimez les informations revedeur et créez des informations OEM ",
      "personnlisées.",
      "",
      "-   Changez l'apparence de vos dossiers en les personnalisant avec vos ",
      "icones favoris.",
      "_________________________________________________________",
      maker::kRights,
      std::string("Auteur : ") + maker::kAuthor,
      std::string("Site web : ") + maker::kWebSite,
      std::string("E-mail : ") + maker::kMail,
      "",
  };
  std::string text;
  for (std::size_t i = 0; i < std::size(lines); ++i) {
    if (i) text += '\r';
    text += lines[i];
  }
  return text;
}

}  // namespace

AboutPage::AboutPage(Control& form)
    : Propos(&form, {.name = "Propos", .rect = {240, 1440, 7335, 3975}}),
      VScroll1(&Propos, {.name = "VScroll1", .rect = {7080, 240, 255, 3615}, .smallChange = 20, .largeChange = 30}),
      Picture1(&Propos, {.name = "Picture1", .rect = {0, 0, 7095, 615}, .backColor = colors::White}),
      Image8(&Picture1, {.name = "Image8", .rect = {120, 75, 480, 480}, .picture = "about"}),
      Label21(&Picture1, {.name = "Label21", .caption = "A propos de Tamrix Utility 3.0 Pro :", .rect = {720, 180, 5400, 270},
                          .font = {"Verdana", 9, true}, .backColor = colors::White, .foreColor = 0xC00000}),
      Label20(&Propos, {.name = "Label20", .caption = "Label20", .rect = {360, 465, 6615, 5085}, .backStyle = 0}) {
  // The label moves with the bar; the frame clips what lies outside the page.
  VScroll1.OnChange = [this] {
    Twips r = Label20.Rect();
    r.top = rt::ToInt16(kTopAtZero - VScroll1.Value());
    Label20.Move(r);
  };
}

void AboutPage::SetText() { Label20.SetCaption(AboutText()); }

// The range comes from the label's design height, not from its text.
void AboutPage::SetScrollRange() {
  VScroll1.SetMax(static_cast<int>(rt::RoundHalfEven(Label20.Rect().height / 2.0)));
}

}  // namespace tamrix
