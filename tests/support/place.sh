# A folder of a script's own, $place, with $purpose in its name, which goes with it. In memory where there is room, since nothing
# waits for a power cut here and a disk takes its time over every fsync.
base=${TMPDIR:-/tmp}
[ "$(df --output=avail -B1M /dev/shm 2> /dev/null | tail -n 1)" -lt 1024 ] 2> /dev/null || base=/dev/shm
place=$(mktemp -d "$base/tweakbench-$purpose-XXXXXX")
clean_up() {
  # Something may still be taking the last copy for the history.
  find "$place" -maxdepth 3 -name history -type d -exec flock {} true \;
  # A test may have closed folders to itself.
  chmod -R u+rwx "$place" 2> /dev/null
  rm -rf "$place"
}
trap clean_up EXIT
