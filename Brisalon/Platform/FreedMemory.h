#pragma once

namespace brisalon {

/// Returns to the system what the process has freed but its allocator has kept. To be
/// called when much was freed. Any thread but the main one: it takes milliseconds for
/// every hundred megabytes.
void giveBackFreedMemory();

} // namespace brisalon
