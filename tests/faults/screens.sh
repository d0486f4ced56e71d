# The interface among damaged files, and for a long time.

row_damage() {
  local tries=0 bad=1 output
  output=$(start damage env QT_QPA_PLATFORM=offscreen "$in_device/damage_tests" --gtest_output=json:/var/tmp/damage.json 2>&1) && bad=0
  [ "$bad" -eq 0 ] || tail -n 20 <<< "$output" >&2
  tries=$(grep -o '"looks": "[0-9]*"' "$place/damage/var/tmp/damage.json" | tr -dc 0-9)
  report "each file that is read, in ten bad states" "${tries:-0}" "${tries:-0}" "$bad" "$tries looks around, none hung"
  tries=$(grep -c '^\[       OK \]' <<< "$output")
  report "read-only, removed, no process and no thread" "$((tries - 1))" "$((tries - 1))" "$bad" "the screens went on"
}

# endure TEST: its numbers in $numbers.
endure() {
  status=0
  read -r _ numbers < <(start endurance env QT_QPA_PLATFORM=offscreen "$in_device/endurance" --gtest_brief=1 \
    --gtest_filter="Endurance.$1" 2> "$place/errors" | tee "$place/output" | grep -E '^(builds|dialogs|entries) ')
  grep -q '^\[  PASSED  \] 1 test' "$place/output" || { status=1; cat "$place/output" "$place/errors" >&2; }
}

row_builds() {
  endure BuildsLeaveNothingBehind
  set -- ${numbers:-0 ? ? ?}
  report "builds in a row" "$1" "$1" "$status" "grown by $2 MB, $3 descriptors, $4 processes"
}

row_dialogs() {
  endure DialogsLeaveNothingBehind
  set -- ${numbers:-0 ? ?}
  report "dialogs opened and dismissed" "$1" "$1" "$status" "grown by $2 MB, $3 descriptors"
}

row_entries() {
  endure AFolderOfAHundredThousandEntriesIsListed
  set -- ${numbers:-0 ?}
  report "entries in a project" "$1" "$1" "$status" "listed in $2 ms"
}
