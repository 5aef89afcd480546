#include "forms/Form2.h"

#include "forms/Form1.h"

namespace tamrix {

namespace {

// Kept whole, with its carriage return and no line feed, as the box shows it.
constexpr const char* kGuardText =
    "Etes vous sure de vouloir quitter l'applocation et désactiver \rla minutrie en cours !!";
constexpr const char* kGuardTitle = "Tamrix Utility 3.0  -  Minutrie Active";

}  // namespace

Form2::Window::Window(Form2& owner)
    : Form({.name = "Form2",
            .caption = " Tamrix Utility 3.0 Pro   - Orvane Interactive 2004",
            .rect = {0, 0, 6285, 5730},
            .visible = false,
            .borderStyle = 3}),
      Timer(this, {.name = "Timer", .enabled = false, .interval = 1000}),
      dossiers(*this, owner.p_, owner.form1_),
      oem(*this, owner.p_, dossiers.ChDos(19)),
      resolution(*this, owner.p_, owner.ModesEcran, owner.IndexMode),
      shutdown(*this, owner.p_, Timer, owner.SecondesRestantes),
      perso(*this, owner.p_, owner.Compteur, owner.FichierIcone, owner.IndexIcone),
      TamrixFrm1(dossiers.TamrixFrm1),
      TamrixFrm2(oem.TamrixFrm2),
      TamrixFrm5(resolution.TamrixFrm5),
      TamrixFrm6(shutdown.TamrixFrm6),
      fraPerso(perso.fraPerso) {
  // The controls are made anew from their design at each load, and the window's creation events
  // come with them.
  OnLoad = [&owner] {
    owner.Form_Initialize();
    owner.Form_Load();
  };
  OnActivate = [&owner] { owner.Form_Activate(); };
  OnQueryUnload = [&owner](bool& cancel) { owner.Form_QueryUnload(cancel); };

  // Every way out goes through the unload, and so through the guard.
  dossiers.TamrixCmd1.OnClick = [this] { Unload(); };
  oem.TamrixCmd5.OnClick = [this] { Unload(); };
  shutdown.btn0.OnClick = [this] { Unload(); };
  perso.TamrixCd3.OnClick = [this] { Unload(); };
  resolution.TamrixCmd6.OnClick = [this, &owner] {
    Unload();
    owner.form1_.SetVisible(true);  // a second time, after the guard's
  };
  // Minimised, the countdown goes on.
  shutdown.TamrixCmd7.OnClick = [this] { SetWindowState(1); };
}

Form2::Form2(Platform& platform, Form1& form1, FormHost* host) : p_(platform), form1_(form1), host_(host) {}

void Form2::OuvrirPageOutil(Page page) {
  // Loading isn't per page: every page is prepared at each opening of the window.
  if (!Loaded()) {
    window_.reset();  // the controls of the last opening go now, outside their own handlers
    window_ = std::make_unique<Window>(*this);
    if (host_)
      host_->LoadForm(*window_);
    else
      window_->Load();
  }
  Window& w = *window_;
  w.TamrixFrm1.SetVisible(page == Page::DossiersSpeciaux);
  w.TamrixFrm2.SetVisible(page == Page::InformationOem);
  w.TamrixFrm5.SetVisible(page == Page::Resolution);
  w.TamrixFrm6.SetVisible(page == Page::ShutDown);
  w.fraPerso.SetVisible(page == Page::Personnalisation);
  ShowModeless(w);
  // The icon choice is reset by the special folders' button, not by the button of its own page.
  if (page == Page::DossiersSpeciaux) w.perso.optDefaut.SetValue(1);
  if (page == Page::ShutDown) w.shutdown.TamrixOpButton1.SetValue(1);
  form1_.Minimised.Click();
  form1_.SetVisible(false);
}

void Form2::Form_Initialize() {
  window_->Timer.SetEnabled(false);
  window_->shutdown.pbtime.SetVisible(false);
}

void Form2::Form_Load() {
  window_->dossiers.Fill();
  window_->resolution.FillModes();
  window_->Timer.SetEnabled(false);
  window_->perso.Load();  // the file dialog's flags, the six icons, the default icon
}

// The window became active from the main window (or was first shown): a running countdown stops
// here without a word, its count and its bar left as they stand. That is how the program is.
void Form2::Form_Activate() { window_->Timer.SetEnabled(false); }

// The count decides, not the timer: after a Yes the count stays, so the next close asks again.
void Form2::Form_QueryUnload(bool& cancel) {
  form1_.SetVisible(true);  // before anything is asked
  if (SecondesRestantes == 0) {
    ShowModeless(form1_);
    return;
  }
  if (p_.MessageBoxA(kGuardText, mb::YesNo | mb::Information, kGuardTitle) == mb::IdYes) {
    window_->Unload();
    ShowModeless(form1_);
  } else {
    cancel = true;  // both windows stay, and the countdown goes on
  }
}

void Form2::ShowModeless(Form& form) {
  form.SetVisible(true);
  if (host_) host_->ShowForm(form);
}

}  // namespace tamrix
