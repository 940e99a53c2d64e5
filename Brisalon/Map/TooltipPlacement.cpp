#include "Brisalon/Map/TooltipPlacement.h"

#include <algorithm>

namespace brisalon {

QPointF tooltipPosition(QPointF pointer, QSizeF canvas)
{
    return {std::min(std::max(pointer.x() + 14, 8.0), std::max(canvas.width() - 240, 8.0)),
            std::min(std::max(pointer.y() + 16, 8.0), std::max(canvas.height() - 80, 8.0))};
}

} // namespace brisalon
