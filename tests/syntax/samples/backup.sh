#!/bin/bash
# Saves directories. "Quotes" and it's mean nothing here.
set -euo pipefail
. ./settings.sh
export TARGET=${TARGET:-/var/backups} LIMIT=10
readonly name="$(basename "$0" .sh)" count=$#

usage() {
  echo "usage: $name [-n] directory ..." >&2
  echo 'it is $not replaced \n' "a \"quoted\" \$word"
  exit 1
}

save() {
  local from="$1" part=${1##*/} stem=${1%.*}
  if [ ! -d "$from" ] || [[ $from == *.old && -z ${TARGET} ]]; then
    printf '%s: %d\n' "no directory: ${from#./}" $? 1>&2
    return 1
  elif test -e "$TARGET/$part.tar.gz"; then
    echo "there: $(ls -l "$TARGET/${part}.tar.gz" | awk '{ print $5 }') bytes, $((count + 1))"
  else
    tar -czf "$TARGET/$part.tar.gz" -C "$(dirname "$from")" "$part" &
  fi
  for file in "$from"/*.txt; do
    case $file in
      *.txt | a*) continue ;;
      (b\'*) break ;;
    esac
  done
  while read -r line; do
    lines+=("$line")
    until false; do break; done
  done < <(find "$from" -name '*.c' -exec grep -l "x" {} \;)
  return 0
}

[ $# -gt 0 ] || usage
trap 'rm -rf "$temp"' EXIT INT
temp=`mktemp -d`
tab=$'\t\'x\''
total=$((16#ff + ${#name} * 2))
colour=a#b; path=x#y # but this is a comment
cat <<EOF > "$temp/readme"
Dear reader, it's "$name" for ${TARGET}
# not a comment
EOF
cat <<-'END'
	$nothing is replaced, don't worry
	END
select word in one two; do echo "$word"; done
if ! command -v gzip >/dev/null; then exit 3; fi
time save "$@" | tee -a "$temp/log" && unset temp
function done_all { echo "all: $*"; }
./test.sh --exec; git-echo --time=1
test $x;echo $test|read -r line
wait $! ; kill -9 $$
text="over
two lines"
echo "never closed
hidden=1
