// tamrix.exe: the real platform, the main window, and the message loop. The program lives as
// long as one of its windows does.
#include <windows.h>

#include "forms/Form1.h"
#include "platform/win32/Win32Platform.h"
#include "shell/win32/Binding.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  tamrix::win32::Win32Platform platform;
  // The sound devices are read while the windows are made, by the first instance only: a second
  // one ends at once, without a look at them.
  if (!platform.EarlierInstanceRunning()) platform.ReadMixersAhead();
  tamrix::win32::Binding binding(platform, instance);
  tamrix::Form1 form1(platform, &binding);
  if (!binding.Show(form1)) return 0;  // a second instance ends here, in silence
  return binding.Run();
}
