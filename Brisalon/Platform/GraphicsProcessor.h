#pragma once

namespace brisalon {

/// Whether the machine has a device that can draw at all, told without starting
/// any graphics. False is certain; true only makes it worth asking the driver.
bool hasGraphicsDevice();

/// Whether the desktop's OpenGL is drawn by a graphics processor. False where
/// there is none, where OpenGL cannot start, and where it is emulated on the main
/// processor, which is many times slower than Qt Quick's own software drawing.
/// Needs a QGuiApplication, on the main thread; takes a tenth of a second where
/// there is a device to ask.
bool hasGraphicsProcessor();

} // namespace brisalon
