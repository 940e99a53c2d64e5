#include "Brisalon/Map/NodeColor.h"

#include <cstdint>

namespace brisalon {

QColor NodeColor::color(HogKind kind, std::string_view name)
{
    switch (kind) {
    case HogKind::caches:
        return QColor::fromRgbF(0.32f, 0.62f, 0.98f);
    case HogKind::logs:
        return QColor::fromRgbF(0.48f, 0.56f, 0.72f);
    case HogKind::trash:
        return QColor::fromRgbF(0.52f, 0.54f, 0.62f);
    case HogKind::installer:
        return QColor::fromRgbF(0.98f, 0.62f, 0.18f);
    case HogKind::xcodeDerivedData:
        return QColor::fromRgbF(0.18f, 0.78f, 0.58f);
    case HogKind::xcodeSimulators:
        return QColor::fromRgbF(0.14f, 0.62f, 0.54f);
    case HogKind::docker:
        return QColor::fromRgbF(0.24f, 0.52f, 0.94f);
    case HogKind::nodeModules:
        return QColor::fromRgbF(0.44f, 0.78f, 0.28f);
    case HogKind::homebrew:
        return QColor::fromRgbF(0.94f, 0.54f, 0.20f);
    case HogKind::iosBackup:
        return QColor::fromRgbF(0.94f, 0.32f, 0.42f);
    case HogKind::timeMachineSnapshot:
        return QColor::fromRgbF(0.68f, 0.42f, 0.92f);
    case HogKind::none:
        break;
    }
    return hashed(name);
}

QColor NodeColor::hashed(std::string_view name)
{
    std::uint64_t hash = 5381;
    for (const char byte : name)
        hash = hash * 33 + static_cast<unsigned char>(byte);
    const auto degrees = name.empty() ? 341 : static_cast<int>(hash % 360);
    return QColor::fromHsvF(static_cast<float>(degrees) / 360.0f, 0.42f, 0.72f).toRgb();
}

QColor NodeColor::ofFile(const LargeFileEntry& file)
{
    return color(file.hogKind, file.name);
}

} // namespace brisalon
