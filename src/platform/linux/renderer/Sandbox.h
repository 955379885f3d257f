#pragma once

namespace taliro {

/// Gives up, for this process and all it starts, whatever drawing a file has no need of: the network, more
/// memory, disk space and processor time than a picture takes, and staying on without the program that asked
/// for it.
void enterSandbox();

/// Lets this process use the processor for `seconds` more; then it is killed.
void limitProcessorTime(unsigned seconds);

} // namespace taliro
