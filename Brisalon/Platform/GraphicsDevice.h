#pragma once

namespace brisalon {

/// Whether the machine has a device that can draw at all, told without starting
/// any graphics. False is certain; true only makes it worth asking the driver.
bool hasGraphicsDevice();

} // namespace brisalon
