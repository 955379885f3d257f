#pragma once

namespace taliro {

/// Gives up, for this process and all it starts, whatever showing a file has no need of: the network, more
/// memory and disk space than that takes, and staying on without the program that asked for it.
void enterSandbox(unsigned mostMegabytes);

/// Lets this process use the processor for `seconds` more; then it is killed.
void limitProcessorTime(unsigned seconds);

} // namespace taliro
