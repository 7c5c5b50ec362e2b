#!/usr/bin/env bash
# Builds the Debian packages into build/packages and looks at them: velmora (the window), velmora-cli (scripts, without Qt
# and OpenGL), velmora-readers and velmora-cad (import by libraries of others), python3-velmora, velmora-doc.
# scripts/bare_machine.sh with --packages tries them on a bare system.
source "$(dirname "$0")/setup.sh"

install_missing "${build_packages[@]}" "${package_packages[@]}" python3
build package
rm -rf build/packages
cpack --config build/package/CPackConfig.cmake -B build/packages >build/package/cpack.log 2>&1 ||
  { tail -20 build/package/cpack.log >&2; exit 1; }
rm -rf build/packages/_CPack_Packages

made=build/package/packaging/made
desktop-file-validate packaging/org.velmora.Velmora.desktop
appstreamcli validate --no-net "$made/org.velmora.Velmora.metainfo.xml"
for page in "$made"/*.1.gz; do
  # What man warns of is wrong in the page.
  warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null)
  [ -z "$warnings" ] || { echo "$page: $warnings" >&2; exit 1; }
done
lintian --display-info --fail-on error,warning,info --allow-root build/packages/*.deb
ls -l build/packages
