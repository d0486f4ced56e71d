// The question that only the guard's own filter answers, shared by the filter and by who asks.
#pragma once

namespace guard {

// prctl() knows no such operation, so a kernel without our filter answers EINVAL, and so does a filter that
// is not ours.
constexpr unsigned long kProbeOperation = 0x54574742;
constexpr unsigned long kProbeArgument = 0x67756172;
// No error number that the kernel uses; below its limit of 4095.
constexpr int kProbeAnswer = 2787;

}  // namespace guard
