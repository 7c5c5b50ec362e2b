#!/usr/bin/env bash
# Goes through what must hold before a release; ends at the first thing that does not. As root, since it makes a bare system;
# takes hours with --tests and minutes without.
source "$(dirname "$0")/setup.sh"

say() { echo "== $*"; }

say "version"
version=$(sed -n 's/^project(velmora VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
newest=$(sed -n 's/^## \([0-9.]*\) - .*/\1/p' CHANGELOG.md | head -1)
[ "$version" = "$newest" ] || { echo "CMakeLists.txt says $version, CHANGELOG.md $newest" >&2; exit 1; }
if git rev-parse -q --verify "refs/tags/v$version" >/dev/null; then
  echo "v$version is released already" >&2
  exit 1
fi
[ -z "$(git status --porcelain)" ] || { echo "there are changes that are in no commit" >&2; exit 1; }

if [ "${1:-}" = --tests ]; then
  say "tests"
  ./test
fi
say "packages, lintian"
scripts/packages.sh
for package in build/packages/*.deb; do
  [ "$(dpkg-deb -f "$package" Version)" = "$version" ] || { echo "$package has another version" >&2; exit 1; }
done
say "a bare system"
scripts/bare_machine.sh --must --packages ./run
say "ready: git tag v$version"
