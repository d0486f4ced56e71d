# What the rows of script/faults share: the table, the programs, a place of its own, and tracing.

build_tree=$PWD/out/dev
launcher=$build_tree/bin/tweakbench
files=$build_tree/lib/tweakbench
subject=$files/tests/faults_subject
in_device=/.host/tweakbench/tests
faults=0

purpose=faults
# shellcheck source=/dev/null
. tests/support/place.sh
# The device's user is another one where root starts it, and has to be able to read what lies here.
chmod 755 "$place"
trap 'umount -l "$place/disk" 2> /dev/null; clean_up' EXIT

heading() { printf '%-44s %6s %6s  %s\n' fault tries fired outcome; }

# report FAULT TRIES FIRED BAD WORDS: one line of the table. FIRED is in how many tries the fault was really there;
# where it never was, nothing has been tried. It is "-" where nothing is broken and only much of something is done or
# measured. BAD counts the tries with a bad outcome.
report() {
  local verdict=ok
  if [ "${2:-0}" -eq 0 ] || [ "${3:-0}" = 0 ] || [ "${4:-1}" -ne 0 ]; then
    verdict=FAILED
    faults=$((faults + 1))
  fi
  printf '%-44s %6d %6s  %s: %s\n' "$1" "${2:-0}" "${3:-0}" "$5" "$verdict"
}

# complain WORDS...: what went wrong in one try; standard output is the table's.
complain() { echo "  $*" >&2; }

# lost WORDS...: one try with a bad outcome, which the row counts.
lost() { bad=$((bad + 1)); complain "$@"; }

# start DEVICE COMMAND...: runs it in that device as the application is, which can be traced.
start() {
  local device=$1
  shift
  timeout 300 "$launcher" --device "$place/$device" --theos "$files/theos" --no-filter exec "$@"
}

# quietly COMMAND...: its status, without what the shell says of one that is killed.
quietly() { bash -c '"$@"; exit $?' - "$@" 2> /dev/null; }

# calls TRACE: the system calls of strace's record of one process, as "NAME NUMBER-OF-THAT-NAME REST".
calls() { awk -F'(' '/^[a-z_0-9]+\(/ { count[$1]++; print $1, count[$1], $0 }' "$1"; }
