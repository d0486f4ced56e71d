// The launcher's refusals.
#pragma once

#include "device/Refusal.h"

#include <string>

#include <gtest/gtest.h>

// The message of the Refusal that `action` throws; "none" if it throws none.
template <typename Action>
std::string refusalOf(const Action& action) {
  try {
    action();
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "none";
}

template <typename Action>
void expectRefusal(const Action& action, const std::string& reason) {
  const std::string said = refusalOf(action);
  EXPECT_NE(said.find(reason), std::string::npos) << "\"" << said << "\" does not say \"" << reason << "\"";
}
