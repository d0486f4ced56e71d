// Writes that the system refuses are told by their result.
#pragma once

// From now on neither a pipe that nobody reads any more nor a file that has reached the size limit ends the
// process; the write fails with EPIPE or EFBIG instead. Commands that are started do not inherit this: a
// build depends on the first of the two. Call it once, before there are threads.
void surviveRefusedWrites();
