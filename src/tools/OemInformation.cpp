#include "tools/OemInformation.h"

#include "platform/Ini.h"
#include "platform/Runtime.h"
#include "shell/Maker.h"

namespace tamrix {

namespace {

constexpr const char* kBoxTitle = " Tamrix OEM Maker";
constexpr const char* kFilter =
    "images supportées|*.jpg;*.jpeg;*.bmp|images Jpg (*.jpg)|*.jpg, *.jpeg|ImageBitmap (*.bmp)|*.bmp|Tous fichiers|*.*";
constexpr std::int32_t kFileMustExist = 4096;

}  // namespace

OemInformationPage::OemInformationPage(Form& form, Platform& platform, TextBox& chDos19)
    : form_(form),
      p_(platform),
      ChDos19(chDos19),
      TamrixFrm2(&form, {.name = "TamrixFrm2", .caption = "Tamrix Information OEM :", .rect = {60, 60, 6165, 5610},
                         .backColor = colors::ButtonFace}),
      Label1(&TamrixFrm2, {.name = "Label1", .caption = "&Organisation:", .rect = {120, 390, 2280, 255},
                           .backStyle = 0}),
      Label2(&TamrixFrm2, {.name = "Label2", .caption = "&Type du Pc:", .rect = {120, 810, 2280, 255}, .backStyle = 0}),
      Label3(&TamrixFrm2, {.name = "Label3", .caption = "Information du support technique:",
                           .rect = {120, 1230, 5925, 255}, .backStyle = 0}),
      Text1(&TamrixFrm2, {.name = "Text1", .caption = "Tamrix Corporation", .rect = {2400, 345, 3645, 315}}),
      Text2(&TamrixFrm2, {.name = "Text2", .caption = "Tamrix Pc", .rect = {2400, 765, 3645, 315}}),
      Text3(&TamrixFrm2, {.name = "Text3", .caption = std::string("Site Web : ") + maker::kWebSite,
                          .rect = {120, 1500, 5925, 315}}),
      fraLogo(&TamrixFrm2, {.name = "fraLogo", .caption = "Votre Logo", .rect = {120, 1950, 5925, 2895},
                            .backColor = colors::ButtonFace}),
      Image1(&fraLogo, {.name = "Image1", .rect = {240, 330, 3600, 2430}}),
      TamrixCmd2(&fraLogo, {.name = "TamrixCmd2", .caption = "&Ajouter Le Logo", .rect = {4020, 660, 1785, 420}}),
      TamrixCmd3(&fraLogo, {.name = "TamrixCmd3", .caption = "&Supprimer", .rect = {4020, 1260, 1785, 420}}),
      TamrixCmd4(&TamrixFrm2, {.name = "TamrixCmd4", .caption = "&Appliquer", .rect = {3030, 5025, 1455, 420},
                               .picture = "apply", .centerPicture = false}),
      TamrixCmd5(&TamrixFrm2, {.name = "TamrixCmd5", .caption = "&Annuler", .rect = {4590, 5025, 1455, 420},
                               .picture = "quit", .centerPicture = false}) {
  // The logo the page starts with, a JPEG among the program's resources.
  SetImage(p_.LoadResourcePicture("OEMLOGO"));
  TamrixCmd2.OnClick = [this] { AjouterLogo(); };
  TamrixCmd3.OnClick = [this] { Supprimer(); };
  TamrixCmd4.OnClick = [this] { Appliquer(); };
}

OemInformationPage::~OemInformationPage() { p_.ReleasePicture(Image1.Picture()); }

std::string OemInformationPage::InfoFile() const { return ini::OemInfoPath(ChDos19.Text()); }
std::string OemInformationPage::LogoFile() const { return ChDos19.Text() + "\\system\\oemlogo.bmp"; }

std::string OemInformationPage::Value(const OemKey& key) const {
  switch (key.from) {
    case OemValue::Text1: return Text1.Text();
    case OemValue::Text2: return Text2.Text();
    case OemValue::Text3: return Text3.Text();
    case OemValue::Download: return std::string(key.text) + maker::kWebSite;
    case OemValue::Fixed: break;
  }
  return std::string(key.text);
}

void OemInformationPage::SetImage(Platform::PictureHandle picture) {
  Platform::PictureHandle old = Image1.Picture();
  Image1.SetPicture(picture);
  if (old && old != picture) p_.ReleasePicture(old);
}

// Errors are ignored statement by statement: a Cancel leaves the name empty, whose picture is the
// empty one, so the logo goes blank; a file that is no picture fails its load and leaves the logo.
void OemInformationPage::AjouterLogo() {
  CommonDialog1.CancelError = true;
  CommonDialog1.FileName = "";
  CommonDialog1.Flags = kFileMustExist;
  CommonDialog1.Filter = kFilter;
  ResumeNext([&] { CommonDialog1.ShowOpen(p_, form_.hWnd); });
  ResumeNext([&] { SetImage(p_.LoadPicture(CommonDialog1.FileName)); });
}

// The message comes whether there was a logo or not; oeminfo.ini and the picture stay.
void OemInformationPage::Supprimer() {
  ResumeNext([&] { p_.DeleteFilePlain(LogoFile()); });  // a read-only logo stays
  p_.MessageBoxA(" Le Logo est supprimé avec succés ", mb::Ok | mb::Information, kBoxTitle);
}

// No error handling: a picture that can't be saved ends the program here, before anything is
// written to oeminfo.ini. The profile writes aren't checked, and the message speaks of the logo.
void OemInformationPage::Appliquer() {
  ini::ProfilePath = InfoFile();
  p_.SavePicture(Image1.Picture(), LogoFile());
  for (const OemKey& key : kOemKeys)
    ini::WriteProfileValue(p_, std::string(key.section), std::string(key.key), Value(key));
  p_.MessageBoxA(" Le Logo est créé avec succés ", mb::Ok | mb::Information, kBoxTitle);
  form_.Unload();
}

}  // namespace tamrix
