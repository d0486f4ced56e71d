# A build that is cut short: the application killed, its window closed, the launcher ended, at many moments.

# What no other program is called, so that nobody else's are looked for.
mark=31415926.$$

# Twenty steps, and a daemon that leaves its session, is deaf to being asked to end, and goes on.
write_building_project() {
  local project=$place/ended/var/Tweakyard/Projects/P
  mkdir -p "$project" "$place/ended/var/Tweakyard/tmp"
  touch "$place/ended/var/Tweakyard/tmp/SuccessfullyUpdated.log"
  printf 'package:\n\t@setsid nohup sh -c "trap \\"\\" TERM; (sleep %s &) & exec sleep %s" > /dev/null 2>&1 & mkdir -p packages\n' \
    "$mark" "$mark" > "$project/Makefile"
  printf '\t@echo %d > /var/tmp/moment; ls -R /Applications > packages/%d.deb\n' \
    $(for step in $(seq 20); do echo "$step" "$step"; done) >> "$project/Makefile"
  touch "$project/Tweak.x"
  chmod -R a+rwX "$place/ended/var/Tweakyard"
}

# family PROCESS: it and all that it started.
family() {
  local child
  echo "$1"
  for child in $(pgrep -P "$1"); do family "$child"; done
}

# end_build WAY MOMENT: starts the application, taps Make Package, waits until the build has come to that step, ends it.
end_build() {
  local way=$1 moment=$2 running now=0 victims
  rm -f "$place/ended/var/tmp/moment" "$place/ended/var/tmp/close"
  printf build > "$place/ended/var/tmp/step"
  "$launcher" --device "$place/ended" --theos "$files/theos" --no-filter exec \
    env QT_QPA_PLATFORM=offscreen "$in_device/as_the_application" > /dev/null 2>&1 &
  running=$!
  until read -r now < "$place/ended/var/tmp/moment" && [ "${now:-0}" -ge "$moment" ]; do
    kill -0 $running || return 1
  done 2> /dev/null
  case $way in
    application)
      victims=$(comm -12 <(family $running | sort) <(pgrep -f "^$in_device/as_the_application" | sort))
      # shellcheck disable=SC2086
      kill -KILL $victims
      ;;
    window) touch "$place/ended/var/tmp/close" ;;
    *) kill "-$way" $running ;;
  esac
  wait $running 2> /dev/null
  # The kernel takes the device's processes down with its first one, beside us.
  for ((turn = 0; turn < 2000; turn++)); do
    pgrep -f "$mark" > /dev/null || return 0
  done
  return 1
}

row_ended() {
  local way moment tries=0 fired=0 bad=0
  start ended "$in_device/faults_subject" prepare > /dev/null 2>&1
  for way in application window TERM HUP KILL; do
    for moment in $(seq 20); do
      tries=$((tries + 1))
      write_building_project
      end_build "$way" "$moment" || lost "$way at step $moment: processes are left"
      [ ! -e "$place/ended/var/tmp/moment" ] || fired=$((fired + 1))
      # The lock is free and the settings are whole.
      start ended "$in_device/faults_subject" update /Applications/Tweakbench.app/Choose.plist P > /dev/null 2>&1 ||
        lost "$way at step $moment: no clean start"
    done
  done
  start ended "$in_device/faults_subject" prepare > /dev/null 2>&1
  start ended "$in_device/faults_subject" build > /dev/null 2>&1 || lost "no build afterwards"
  [ "$fired" -eq "$tries" ] || bad=$((bad + 1))
  report "application, window or launcher ended" "$tries" "$fired" "$bad" \
    "$((tries - bad)) of $tries left no process and no lock"
}

# The programs that script/threads runs; a race is planted in one more, to show that it would be seen.
row_races() {
  local output tries fired=0 bad=0
  output=$(script/threads 2>&1) || { bad=1; tail -n 40 <<< "$output" >&2; }
  tries=$(grep -c ' Passed ' <<< "$output")
  ! grep -q 'WARNING: ThreadSanitizer: data race' < <(out/tsan/lib/tweakbench/tests/faults_subject race 2>&1) || fired=1
  report "a race planted for ThreadSanitizer" 1 "$fired" "$bad" "seen, and no other in $tries test programs"
}
