// The main window with the tools window behind it, on the fake machine: a scripted set of shell
// folders and display modes, and a host that loads and shows forms without windows.
#pragma once

#include "fake/FakeFormHost.h"
#include "fake/FakePlatform.h"
#include "forms/Form1.h"

namespace tamrix::test {

struct Tools {
  fake::FakePlatform p;
  fake::FakeFormHost host;
  Form1 form1{p, &host};
  Form2& form2 = form1.form2;

  Tools() {
    p.specialFolders = {
        {0, "C:\\Documents and Settings\\Marc\\Bureau"},
        {2, "C:\\Documents and Settings\\Marc\\Menu Démarrer\\Programmes"},
        {5, "C:\\Documents and Settings\\Marc\\Mes documents"},
        {6, "C:\\Documents and Settings\\Marc\\Favoris"},
        {7, "C:\\Documents and Settings\\Marc\\Menu Démarrer\\Programmes\\Démarrage"},
        {8, "C:\\Documents and Settings\\Marc\\Recent"},
        {9, "C:\\Documents and Settings\\Marc\\SendTo"},
        {11, "C:\\Documents and Settings\\Marc\\Menu Démarrer"},
        {19, "C:\\Documents and Settings\\Marc\\Voisinage réseau"},
        {20, "C:\\WINDOWS\\Fonts"},
        {21, "C:\\Documents and Settings\\Marc\\Modèles"},
        {25, "C:\\Documents and Settings\\All Users\\Bureau"},
        {26, "C:\\Documents and Settings\\Marc\\Application Data"},
        {27, "C:\\Documents and Settings\\Marc\\Voisinage d'impression"},
        {32, "C:\\Documents and Settings\\Marc\\Local Settings\\Temporary Internet Files"},
        {33, "C:\\Documents and Settings\\Marc\\Cookies"},
        {34, "C:\\Documents and Settings\\Marc\\Local Settings\\Historique"},
    };
    p.displayModes = {{0, 8, 640, 480, 60}, {0, 16, 800, 600, 60}, {0, 32, 1024, 768, 60}};
    form1.hWnd = 0x42;
    form1.Load();
    host.active = &form1;
    p.ClearCalls();
  }

  Form2::Window& w() { return form2.window(); }
  void Open(Form2::Page page) { form2.OuvrirPageOutil(page); }
};

}  // namespace tamrix::test
