#!/usr/bin/env bash
# Runs a 32-bit Windows program (or a Wine tool: wineboot, reg, winepath...) under 32-bit Wine,
# by the route setup chose (build/wine32-route, or TAMRIX_WINE32_ROUTE):
#   native          Debian's wine32: plain wine
#   private ROOT    bookworm's i386 Wine unpacked in ROOT, run natively (its wine names the root's
#                   own loader as interpreter; setup saw to it)
#   emulated ROOT [QEMU]  bookworm's i386 Wine unpacked in ROOT, run by QEMU (the qemu-i386 of
#                   bookworm-backports that setup keeps in the cache), or by the host's qemu-i386
#                   when the route names none
# usage: scripts/wine32.sh PROGRAM [ARGS...]   (exits 127 with the reason when there is no route)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
route=${TAMRIX_WINE32_ROUTE:-$(cat "$here/../build/wine32-route" 2>/dev/null || true)}
case $route in
  native)
    exec wine "$@"
    ;;
  "private "*)
    root=${route#private }
    # The root's loader reads the host's library cache, which knows no i386 library of the root:
    # its directories are named here. Its 32-bit children (subst.exe, the program started by the
    # test driver) exec the same wine and inherit them; 64-bit programs skip these libraries.
    # shellcheck source=scripts/wine32-root.sh
    source "$here/wine32-root.sh"
    LD_LIBRARY_PATH=$(wine32_private_library_path "$root")${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}
    export LD_LIBRARY_PATH
    exec "$root/usr/lib/wine/wine" "$@"
    ;;
  "emulated "*)
    # shellcheck source=scripts/wine32-root.sh
    source "$here/wine32-root.sh"
    root=$(wine32_route_root "$route")
    # The guest's own children (the i386 wineserver, subst.exe started by the program) go
    # through qemu again: the preloaded library reads these two to know how.
    export TAMRIX_QEMU_I386=${TAMRIX_QEMU_I386:-$(wine32_route_qemu "$route")}
    export TAMRIX_I386_ROOT=$root
    # In a 32-bit prefix the server is the i386 one, emulated too; in a 64-bit prefix the host's
    # own wineserver of the same version serves the 32-bit processes.
    if [[ ${WINEARCH:-} == win32 ]]; then export WINESERVER=$root/usr/lib/wine/wineserver32; fi
    # WINELOADERNOEXEC: the loader must not re-exec itself through the preloader, which reserves
    # memory by raw system calls qemu cannot honour. Both go to the guest alone (-E), never to
    # the 64-bit qemu.
    exec "$TAMRIX_QEMU_I386" -L "$root" -E "LD_PRELOAD=$root/usr/lib/tamrix-qemu-fixes.so" \
      -E WINELOADERNOEXEC=1 "$root/usr/lib/wine/wine" "$@"
    ;;
  *)
    echo "wine32.sh: no 32-bit Wine on this machine: $(cat "$here/../build/wine32-missing" 2>/dev/null || echo "run scripts/setup.sh")" >&2
    exit 127
    ;;
esac
