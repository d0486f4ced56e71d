# The operations in a device that lacks something, or shares it.

# Whether a project is made and its package built in that device.
builds_in() {
  start "$1" "$in_device/faults_subject" prepare > /dev/null 2>&1 &&
    start "$1" "$in_device/faults_subject" build > /dev/null 2>&1
}

# starve PATTERN OPTIONS...: one try of every operation in a device where strace, or what it starts, lets it lack
# something. PATTERN is what the trace says of that. Counts in the caller's tries, fired, hits and bad.
starve() {
  local pattern=$1 here status=0
  shift
  rm -rf "$place/starved"
  start starved strace -f -qq -o /var/tmp/trace "$@" "$in_device/faults_subject" operate > /dev/null 2>&1 || status=$?
  tries=$((tries + 1))
  here=$(grep -c "$pattern" "$place/starved/var/tmp/trace")
  fired=$((fired + (here > 0)))
  hits=$((hits + here))
  [ "$status" -eq 0 ] || lost "$*: ends with $status"
  start starved sh -c "for list in Choose Files LangFile Checker; do
    $in_device/faults_subject update /Applications/Tweakbench.app/\$list.plist P || exit
  done" || lost "$*: settings are damaged"
  builds_in starved || lost "$*: no build afterwards"
}

row_fork() {
  local tries=0 fired=0 bad=0 hits=0
  # The application's own, and the first of every shell and make, which try again.
  starve INJECTED -e trace=clone3 -e inject=clone3:error=EAGAIN
  starve INJECTED -e trace=clone,vfork -e inject=clone,vfork:error=EAGAIN:when=1
  starve INJECTED -e trace=clone,clone3,vfork -e inject=clone,clone3,vfork:error=EAGAIN
  report "processes refused" "$tries" "$fired" "$bad" "$hits refused, every operation ended, builds afterwards"
}

row_shell() {
  local error tries=0 fired=0 bad=0 hits=0
  for error in ENOENT EACCES E2BIG ENOMEM; do
    starve INJECTED -e trace=execve -P /bin/sh -e inject=execve:error=$error
  done
  report "/bin/sh missing or not to be run" "$tries" "$fired" "$bad" "$hits commands refused, every operation ended"
}

row_descriptors() {
  local limit tries=0 fired=0 bad=0 hits=0
  # With fewer the program is not loaded.
  for limit in $(seq 4 16); do
    starve EMFILE -e trace=%desc prlimit --nofile="$limit"
  done
  report "no more than 4 to 16 descriptors" "$tries" "$fired" "$bad" "$hits calls refused, every operation ended, builds afterwards"
}

# A folder $place/disk on a small disk of its own, for the command that follows.
on_small_disk() {
  mkdir -p "$place/disk"
  if [ "$(id -u)" -eq 0 ]; then
    unshare -m bash -c 'mount -t tmpfs -o size=24m,mode=755 tmpfs "$0" && exec "$@"' "$place/disk" "$@"
  else
    unshare -r -m bash -c 'mount -t tmpfs -o size=24m,mode=755 tmpfs "$0" && exec "$@"' "$place/disk" \
      unshare -U --map-user="$(id -u)" --map-group="$(id -g)" "$@"
  fi
}

row_disk() {
  local counts tries fired bad
  counts=$(on_small_disk timeout 300 "$launcher" --device "$place/disk/device" --theos "$files/theos" --no-filter \
    exec "$in_device/faults_subject" disk 2> "$place/errors") || counts="0 0 1"
  grep -E 'pages left|refused .* times|tweakbench:' "$place/errors" >&2
  read -r tries fired bad <<< "$counts"
  report "disk full in eight operations" "$tries" "$fired" "$bad" "$((tries - bad)) of $tries with settings whole and nobody dead"
}

row_removed() {
  local tries=0 fired=0 bad=0 status first
  for _ in 1 2 3; do
    tries=$((tries + 1))
    start removed sh -c "touch /var/tmp/up; while [ -e /var/tmp/up ]; do :; done; exec $in_device/faults_subject operate" \
      > /dev/null 2>&1 &
    first=$!
    until [ -e "$place/removed/var/tmp/up" ]; do kill -0 $first || break; done
    # What runs goes on making files meanwhile, so not all of it need go.
    rm -rf "$place/removed" 2> /dev/null
    [ -e "$place/removed/lock" ] || fired=$((fired + 1))
    status=0
    wait $first || status=$?
    [ "$status" -eq 0 ] || lost "ends with $status"
    builds_in removed || lost "the next start does not build"
    rm -rf "$place/removed"
  done
  report "the device removed while it runs" "$tries" "$fired" "$bad" "$((tries - bad)) of $tries ended, and what was left builds again"
}

row_two() {
  local tries=0 fired=0 bad=0 round number status running
  # Whoever finds the folder is not alone.
  local hold='mkdir /var/tmp/held || exit 99; n=0; while [ $n -lt 100000 ]; do n=$((n + 1)); done; rmdir /var/tmp/held'
  for round in 1 2 3 4; do
    running=()
    for number in 1 2 3 4 5; do
      start "two$round" sh -c "$hold" > /dev/null 2> "$place/two-$number" &
      running+=($!)
    done
    for number in 1 2 3 4 5; do
      tries=$((tries + 1))
      status=0
      wait "${running[number - 1]}" || status=$?
      [ "$status" -ne 99 ] || fired=$((fired + 1))
      [ "$status" -eq 0 ] || [ "$status" -eq 99 ] ||
        { bad=$((bad + 1)); complain "ends with $status: $(cat "$place/two-$number")"; }
    done
    builds_in "two$round" || lost "no build afterwards"
  done
  report "five launchers at once on one new device" "$tries" "$fired" "$bad" "$fired ran beside another one, builds afterwards"
}

row_clock() {
  local tries=0 fired=0 bad=0 date faketime
  faketime=$(find /usr/lib -name libfaketime.so.1 2> /dev/null | head -n 1)
  start clock "$in_device/faults_subject" prepare > /dev/null 2>&1
  for date in 1970-01-01 2039-06-01; do
    tries=$((tries + 1))
    start clock sh -c "find /var /Applications -exec touch -h -d $date {} + 2> /dev/null; test /var/Tweakyard/Projects/P/Makefile -$(
      [ $date = 1970-01-01 ] && echo ot || echo nt) /proc/self/stat" && fired=$((fired + 1))
    start clock "$in_device/faults_subject" build > /dev/null 2>&1 || lost "files of $date"
  done
  for date in 1970-01-02 2039-06-01; do
    [ -n "$faketime" ] || { complain "faketime is not installed"; break; }
    tries=$((tries + 1))
    [[ $(start clock env LD_PRELOAD="$faketime" FAKETIME="@$date 00:00:00" date +%Y) != "${date%%-*}" ]] || fired=$((fired + 1))
    start clock env LD_PRELOAD="$faketime" FAKETIME="@$date 00:00:00" "$in_device/faults_subject" build > /dev/null 2>&1 ||
      lost "in $date"
  done
  [ "$fired" -eq "$tries" ] || bad=$((bad + 1))
  report "files and clock of 1970 and 2039" "$tries" "$fired" "$bad" "$((tries - bad)) of $tries built"
}

snapshot() { find "$1" -printf '%p %m %s %T@ %u %l\n' | sort; cat "$1/precious"; }

row_names() {
  local names=0 strikes=0 bad=1 before home=$place/home
  mkdir -p "$home/.config" && echo kept > "$home/precious" && chmod -R a+rwX "$home"
  before=$(snapshot "$home")
  # The small disk bounds what is copied under a name that means more than a project. The second start is the one that
  # a link or a folder left behind would lead astray.
  # shellcheck disable=SC2016
  read -r names strikes < <(on_small_disk timeout 300 bash -c '"$@" names 1000 "$0"; "$@" prepare > /dev/null' "$home" \
    "$launcher" --device "$place/disk/device" --theos "$files/theos" --no-filter exec "$in_device/faults_subject" \
    2> /dev/null)
  [ "${names:-0}" -eq 1000 ] && [ "$(snapshot "$home")" = "$before" ] && bad=0
  report "nasty names in command lines" "${names:-0}" "${strikes:-0}" "$bad" "${strikes:-0} struck in the device, none outside it"
}
