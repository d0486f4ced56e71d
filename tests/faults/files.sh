# Changing a settings file while the system turns against it. These rows need no device.

# A settings file of $keys values in folder settings: old and new are what it may be.
keys=200
make_settings() {
  rm -rf "$place/settings" && mkdir "$place/settings"
  if [ ! -e "$place/new-$keys" ]; then
    { printf '<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict><key>Choose</key><string>old</string>'
      printf '<key>Key%d</key><string>value</string>' $(seq "$keys")
      printf '</dict></plist>'; } > "$place/settings/list.plist"
    "$subject" update "$place/settings/list.plist" old && cp "$place/settings/list.plist" "$place/old-$keys"
    "$subject" update "$place/settings/list.plist" new && cp "$place/settings/list.plist" "$place/new-$keys"
  fi
  cp "$place/old-$keys" "$place/settings/list.plist"
}

is_old() { cmp -s "$place/settings/list.plist" "$place/old-$keys"; }
is_new() { cmp -s "$place/settings/list.plist" "$place/new-$keys"; }
strays() { find "$place/settings" -name '.tweakbench-*' | wc -l; }

# traced_update STRACE-OPTIONS...: leaves its status in $status and its record in trace.
traced_update() {
  make_settings
  status=0
  quietly timeout 20 strace -qq -o "$place/trace" "$@" "$subject" update "$place/settings/list.plist" new || status=$?
}

row_killed() {
  local tries=0 fired=0 bad=0 stray=0 old=0 name number rest settings=$place/killed/Applications/Tweakbench.app
  traced_update
  calls "$place/trace" > "$place/points"
  while read -r name number rest; do
    # The program has to be started to be killed, and lives no more when it exits.
    [ "$name" != execve ] && [ "$name" != exit_group ] || continue
    tries=$((tries + 1))
    traced_update -e trace="$name" -e inject="$name:signal=KILL:when=$number"
    [ "$status" -ne 137 ] || fired=$((fired + 1))
    stray=$((stray + $(strays)))
    if is_old; then old=$((old + 1)); elif ! is_new; then bad=$((bad + 1)); fi
    # What is left over must not be in the way of the next change.
    "$subject" update "$place/settings/list.plist" new && is_new || bad=$((bad + 1))
  done < "$place/points"
  # In a device, the next start tidies up.
  start killed strace -qq -o /dev/null -e inject=rename:signal=KILL "$in_device/faults_subject" \
    update /Applications/Tweakbench.app/Choose.plist new > /dev/null 2>&1
  compgen -G "$settings/.tweakbench-*" > /dev/null || lost "nothing is left to tidy up"
  start killed true
  ! compgen -G "$settings/.tweakbench-*" > /dev/null || lost "the next start leaves it"
  [ "$fired" -eq "$tries" ] || bad=$((bad + 1))
  report "kill -9 at every call of a settings update" "$tries" "$fired" "$bad" \
    "$((tries - bad)) of $tries old ($old) or new whole, $stray temporary files, gone at the next start"
}

row_calls() {
  local tries=0 fired=0 bad=0 lies=0 seen='' name number rest error when
  traced_update
  calls "$place/trace" > "$place/points"
  while read -r name number rest; do
    # What comes before is the loader's.
    [[ $rest != *settings/list.plist* ]] || seen=yes
    # No system answers a futex so, and the C library ends a process to which that happens.
    [ -n "$seen" ] && [ "$name" != exit_group ] && [ "$name" != futex ] || continue
    for error in EIO ENOSPC EDQUOT EROFS EACCES EMFILE EINTR; do
      for when in "$number" "$number+"; do
        # No system interrupts for ever; ten times in a row is a lot.
        [ "$error $when" != "EINTR $number+" ] || when="$number..$((number + 9))"
        tries=$((tries + 1))
        traced_update -e trace="$name" -e inject="$name:error=$error:when=$when"
        ! grep -q INJECTED "$place/trace" || fired=$((fired + 1))
        is_old || is_new || lost "$name $when $error: damaged"
        if [ "$status" -eq 0 ] && ! is_new; then
          lies=$((lies + 1))
          complain "$name $when $error: claims success"
        elif [ "$status" -gt 2 ]; then
          bad=$((bad + 1))
          complain "$name $when $error: ends with $status"
        fi
        # Where unlink itself fails, nobody can tidy up.
        [ "$(strays)" -eq 0 ] || [ "$name" = unlink ] || lost "$name $when $error: leaves a file"
      done
    done
  done < "$place/points"
  [ "$fired" -eq "$tries" ] || bad=$((bad + 1))
  report "each call fails once, or from then on" "$tries" "$fired" "$((bad + lies))" \
    "$((tries - bad)) of $tries whole, $lies false successes"
}

# Nothing fails here: what a power cut leaves depends on the order of the calls, so that is looked at.
row_order() {
  local saves ordered bad=0
  start order strace -y -qq -o /var/tmp/trace "$in_device/faults_subject" operate > /dev/null 2>&1
  # The temporary file is written, synced and renamed over the settings, and then its folder is synced.
  read -r saves ordered < <(awk '
    /^write\(.*\/\.tweakbench-/ { order = "write" }
    /^fsync\(.*\/\.tweakbench-/ { order = order " fsync" }
    /^rename\(.*\.plist"\)/ { order = order " rename"; ++saves }
    /^fsync\(.*Tweakbench\.app>\)/ { if (order == "write fsync rename") ++ordered }
    END { print saves + 0, ordered + 0 }' "$place/order/var/tmp/trace")
  [ "$saves" -eq "$ordered" ] || bad=$((saves - ordered))
  report "order of calls in every save of settings" "$saves" - "$bad" "$ordered of $saves write, fsync, rename, fsync of the folder"
}

row_memory() {
  local tries=0 fired=0 bad=0 kilobytes keys=10000
  for kilobytes in $(seq 5000 50 13000); do
    # It may die of this; the file may not.
    traced_update -e trace=openat,brk,mmap prlimit --as=$((kilobytes * 1024)) --core=0
    tries=$((tries + 1))
    # Not the loader's: that of the program which has come to the file.
    ! awk '/settings\/list.plist/ { reached = 1 } reached && /ENOMEM/ { found = 1 } END { exit !found }' "$place/trace" ||
      fired=$((fired + 1))
    if [ "$status" -eq 0 ]; then is_new; else is_old || is_new; fi || lost "limit $kilobytes"
  done
  report "out of memory in a settings update" "$tries" "$fired" "$bad" "$((tries - bad)) of $tries whole, no false success"
}

row_size_limit() {
  local tries=0 fired=0 bad=0 bytes status
  for bytes in 0 1 100 4096 6000; do
    make_settings
    status=0
    quietly prlimit --fsize="$bytes" "$subject" update "$place/settings/list.plist" new || status=$?
    tries=$((tries + 1))
    [ "$status" -eq 0 ] || fired=$((fired + 1))
    [ "$status" -eq 1 ] && is_old && [ "$(strays)" -eq 0 ] || lost "$bytes: ends with $status"
  done
  report "a limit on the size of files" "$tries" "$fired" "$bad" "$((tries - bad)) of $tries told as failures, no SIGXFSZ"
}
