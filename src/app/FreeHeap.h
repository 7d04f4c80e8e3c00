#pragma once

namespace navro {

// Gives the free pages of the process's heap back to the system, after a large part of it was
// freed at once. The allocator keeps them otherwise, for the next allocations. Defined by the
// platform library.
void returnFreeHeapToSystem();

} // namespace navro
