#pragma once

namespace brisalon {

/// Whether the desktop's OpenGL is drawn by a graphics processor. False where
/// there is none, where OpenGL cannot start, and where it is emulated on the main
/// processor, which is many times slower than Qt Quick's own software drawing.
/// Needs a QGuiApplication, on the main thread; takes a tenth of a second where
/// there is a device to ask.
bool hasGraphicsProcessor();

/// Makes Qt Quick draw in software where that is faster, unless the user's
/// environment has already chosen. Call before the first window is made.
void chooseGraphics();

} // namespace brisalon
