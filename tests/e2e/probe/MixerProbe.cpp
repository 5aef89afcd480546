// A probe of Wine's mixers that shares nothing with the program: it asks winmm itself and writes
// what it gets, one tab-separated line per mixer, destination and source, to the file named on
// its command line. The end-to-end tests check the sound page against it.
//   M  mixer  name  cDestinations
//   D  mixer  destination  shortName  name  fdwLine  cChannels  cControls  cConnections  componentType  targetType
//   S  mixer  destination  source  shortName  name  fdwLine  cChannels  cControls  cConnections  componentType  targetType
#include <windows.h>
#include <mmsystem.h>

#include <cstdio>

namespace {

void Line(FILE* out, const MIXERLINEA& l) {
  std::fprintf(out, "%s\t%s\t%lu\t%lu\t%lu\t%lu\t%lu\t%lu\n", l.szShortName, l.szName, l.fdwLine, l.cChannels,
               l.cControls, l.cConnections, l.dwComponentType, l.Target.dwType);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  FILE* out = std::fopen(argv[1], "wb");
  if (!out) return 3;
  UINT count = mixerGetNumDevs();
  for (UINT m = 0; m < count; ++m) {
    MIXERCAPSA caps{};
    if (mixerGetDevCapsA(m, &caps, sizeof caps) != MMSYSERR_NOERROR) continue;
    std::fprintf(out, "M\t%u\t%s\t%lu\n", m, caps.szPname, caps.cDestinations);
    HMIXER h = nullptr;
    if (mixerOpen(&h, m, 0, 0, 0) != MMSYSERR_NOERROR) continue;
    for (DWORD d = 0; d < caps.cDestinations; ++d) {
      MIXERLINEA dst{};
      dst.cbStruct = sizeof dst;
      dst.dwDestination = d;
      if (mixerGetLineInfoA(reinterpret_cast<HMIXEROBJ>(h), &dst, MIXER_GETLINEINFOF_DESTINATION) != MMSYSERR_NOERROR)
        continue;
      std::fprintf(out, "D\t%u\t%lu\t", m, d);
      Line(out, dst);
      for (DWORD s = 0; s < dst.cConnections; ++s) {
        MIXERLINEA src{};
        src.cbStruct = sizeof src;
        src.dwDestination = d;
        src.dwSource = s;
        MMRESULT r = mixerGetLineInfoA(reinterpret_cast<HMIXEROBJ>(h), &src, MIXER_GETLINEINFOF_SOURCE);
        if (r != MMSYSERR_NOERROR) {
          std::fprintf(out, "E\t%u\t%lu\t%lu\t%u\n", m, d, s, r);
          continue;
        }
        std::fprintf(out, "S\t%u\t%lu\t%lu\t", m, d, s);
        Line(out, src);
      }
    }
    mixerClose(h);
  }
  std::fclose(out);
  return 0;
}
