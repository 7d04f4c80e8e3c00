#pragma once

namespace navro {

// Gives large blocks (a decoded picture, say) pages of their own, which go back to the system as
// soon as the block is freed. The allocator would otherwise start serving blocks of the size it
// last freed from its heaps, and keep those pages after they are free. Called once, first thing.
// Defined by the platform library.
void returnLargeBlocksWhenFreed();

// Gives the free pages of the process's heap back to the system, after a large part of it was
// freed at once. The allocator keeps them otherwise, for the next allocations. Defined by the
// platform library.
void returnFreeHeapToSystem();

} // namespace navro
