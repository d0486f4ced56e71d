# The interface among damaged files, and for a long time. Its tests print their own rows.

# screens PROGRAM TEST: runs it in a device of its own; what it reports becomes rows of the table.
screens() {
  local output title tries fired outcome status=0 rows=0
  output=$(start "${2//[^[:alpha:]]/}" env QT_QPA_PLATFORM=offscreen "$in_device/$1" --gtest_brief=1 --gtest_filter="$2" 2>&1) || status=1
  [ "$status" -eq 0 ] || tail -n 30 <<< "$output" >&2
  while IFS='|' read -r _ title tries fired outcome; do
    rows=$((rows + 1))
    report "$title" "$tries" "$fired" "$status" "$outcome"
  done < <(grep '^fault|' <<< "$output")
  [ "$rows" -gt 0 ] || report "$2" 0 0 1 "reports nothing"
}

row_damage() { screens damage_tests 'Damaged.*'; }
row_builds() { screens endurance Endurance.BuildsLeaveNothingBehind; }
row_dialogs() { screens endurance Endurance.DialogsLeaveNothingBehind; }
row_entries() { screens endurance Endurance.AFolderOfAHundredThousandEntriesIsListed; }
row_logs() { screens endurance Endurance.ALargeLogIsShown; }
