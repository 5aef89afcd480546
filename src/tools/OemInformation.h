// The OEM information page (TamrixFrm2): the maker, model and support line that the system's
// properties show, with a logo. "&Appliquer" writes oemlogo.bmp and oeminfo.ini below the
// folder that the special folders page shows in ChDos(19), the Windows directory.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "platform/Platform.h"
#include "shell/Controls.h"

namespace tamrix {

// Where the value of a key of oeminfo.ini comes from.
enum class OemValue { Text1, Text2, Text3, Fixed, Download };

struct OemKey {
  std::string_view section;
  std::string_view key;
  OemValue from;
  std::string_view text;  // the fixed value, or what stands before the maker's address
};

// The keys of oeminfo.ini, in the order they are written. Line2 and Line3 hold blanks, so that
// the support text keeps its empty lines.
inline constexpr std::array<OemKey, 7> kOemKeys{{
    {"General", "Manufacturer", OemValue::Text1, ""},
    {"General", "Model", OemValue::Text2, ""},
    {"Support Information", "Line1", OemValue::Text3, ""},
    {"Support Information", "Line2", OemValue::Fixed, "  "},
    {"Support Information", "Line3", OemValue::Fixed, " "},
    {"Support Information", "Line4", OemValue::Fixed, "OEM créé avec Tamrix Utility 3.0 Pro"},
    {"Support Information", "Line5", OemValue::Download, "Téléchargez gratuitement "},
}};

class OemInformationPage {
 public:
  // chDos19 is the special folders page's box of the Windows directory.
  OemInformationPage(Form& form, Platform& platform, TextBox& chDos19);
  ~OemInformationPage();

  // "&Ajouter Le Logo", "&Supprimer", "&Appliquer".
  void AjouterLogo();
  void Supprimer();
  void Appliquer();

  // The two files, on the box's text as it stands.
  std::string InfoFile() const;
  std::string LogoFile() const;
  // The value of a key, with the boxes' texts as they stand.
  std::string Value(const OemKey& key) const;

 private:
  void SetImage(Platform::PictureHandle picture);

  Form& form_;
  Platform& p_;
  TextBox& ChDos19;

 public:
  TamrixFrm TamrixFrm2;
  Label Label1, Label2, Label3;
  TextBox Text1, Text2, Text3;
  TamrixFrm fraLogo;  // "Votre Logo"
  Image Image1;
  TamrixCmd TamrixCmd2;  // "&Ajouter Le Logo"
  TamrixCmd TamrixCmd3;  // "&Supprimer"
  TamrixCmd TamrixCmd4;  // "&Appliquer"
  TamrixCmd TamrixCmd5;  // "&Annuler"
  CommonDialog CommonDialog1;
};

}  // namespace tamrix
