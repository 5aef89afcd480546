// Form2: the tools window. Five pages laid over each other, one shown at a time, chosen by the
// buttons of the main window's Windows page. The object lives as long as the program; closing the
// window unloads its controls and keeps the members, so a countdown's count outlives the close.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "shell/Controls.h"
#include "shell/FormHost.h"
#include "tools/FolderCustomisation.h"
#include "tools/OemInformation.h"
#include "tools/ScreenResolution.h"
#include "tools/ShutdownTimer.h"
#include "tools/SpecialFolders.h"

namespace tamrix {

class Form1;

class Form2 {
 public:
  enum class Page { DossiersSpeciaux, InformationOem, Resolution, ShutDown, Personnalisation };

  // Without a host the window has no real windows: it is loaded and made visible in place.
  Form2(Platform& platform, Form1& form1, FormHost* host = nullptr);

  // What the five buttons of the main window run.
  void OuvrirPageOutil(Page page);

  // The window and its controls, made anew at each load.
  class Window : public Form {
   public:
    explicit Window(Form2& owner);

    tamrix::Timer Timer;  // the countdown's second, off until "&Lancez"
    SpecialFoldersPage dossiers;
    OemInformationPage oem;
    ScreenResolutionPage resolution;
    ShutdownTimerPage shutdown;
    FolderCustomisationPage perso;

    // The five pages by their design names.
    TamrixFrm &TamrixFrm1, &TamrixFrm2, &TamrixFrm5, &TamrixFrm6, &fraPerso;
  };

  bool Loaded() const { return window_ && window_->Loaded(); }
  // The window of the last load (still there after its unload, until the next one).
  Window& window() { return *window_; }

  // The window's events.
  void Form_Initialize();
  void Form_Load();
  void Form_Activate();
  void Form_QueryUnload(bool& cancel);

  // Members, in their order.
  std::int16_t Compteur = 0;  // the loop counter over picIcones
  std::string FichierIcone;   // icon file for desktop.ini
  std::int16_t IndexIcone = 0;
  std::vector<DevMode> ModesEcran;
  std::int32_t IndexMode = 0;
  std::int16_t SecondesRestantes = 0;

 private:
  void ShowModeless(Form& form);

  Platform& p_;
  Form1& form1_;
  FormHost* host_;
  std::unique_ptr<Window> window_;
};

}  // namespace tamrix
