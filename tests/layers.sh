#!/usr/bin/env bash
# The core's folders are its layers: a folder includes only from the folders
# below it (and its own), so that the include graph is the library graph.
set -euo pipefail
src="$(dirname "$0")/../src"
declare -A allowed=(
  [platform]="platform"
  [datafile]="datafile platform"
  [store]="store datafile platform"
  [contents]="contents store datafile platform"
  [editors]="editors contents store datafile platform"
  [app]="app contents store datafile platform"
)
status=0
for layer in "${!allowed[@]}"; do
  while IFS= read -r line; do
    file=${line%%:*}
    used=$(sed -n 's/.*#include "\([a-z]*\)\/.*/\1/p' <<<"${line#*:}")
    if [[ " ${allowed[$layer]} " != *" $used "* ]]; then
      echo "$file includes $used/, which is not below $layer/"
      status=1
    fi
  done < <(grep -Hn '#include "[a-z]*/' "$src/$layer"/*.h "$src/$layer"/*.cpp || true)
done
# Nothing in the core includes Qt.
if grep -rln '#include <Q' "$src"/{platform,datafile,store,contents,editors,app}; then
  echo "the core includes Qt"
  status=1
fi
exit $status
