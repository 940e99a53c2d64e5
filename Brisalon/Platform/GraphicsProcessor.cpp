#include "Brisalon/Platform/GraphicsProcessor.h"

#include <QByteArray>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <algorithm>
#include <array>
#include <string_view>

namespace brisalon {

namespace {

/// OpenGL's name for what draws; empty when OpenGL cannot start.
QByteArray rendererName()
{
    QOpenGLContext context;
    QOffscreenSurface surface;
    surface.create();
    if (!context.create() || !context.makeCurrent(&surface))
        return {};
    const GLubyte* const name = context.functions()->glGetString(GL_RENDERER);
    return QByteArray(reinterpret_cast<const char*>(name)).toLower();
}

} // namespace

bool hasGraphicsProcessor()
{
    if (!hasGraphicsDevice())
        return false;
    const QByteArray name = rendererName();
    static constexpr std::array<std::string_view, 4> emulations{"llvmpipe", "softpipe", "swrast",
                                                                "software rasterizer"};
    return !name.isEmpty() &&
           std::none_of(emulations.begin(), emulations.end(), [&](std::string_view emulation) {
               return std::string_view(name).find(emulation) != std::string_view::npos;
           });
}

} // namespace brisalon
