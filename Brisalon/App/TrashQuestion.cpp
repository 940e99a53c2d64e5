#include "Brisalon/App/TrashQuestion.h"

#include "Brisalon/App/DisplayText.h"
#include "BrisalonCore/ByteFormat.h"

namespace brisalon {

TrashQuestion::TrashQuestion(const std::optional<TrashRequest>& request)
    : isPresent(request.has_value()), title("Move to Trash?")
{
    if (!request)
        return;
    title = QStringLiteral("Move %1 item(s) to Trash?").arg(request->urls.size());
    message = QStringLiteral("This will move %1 to Trash so you can restore it if needed.")
                  .arg(displayText(ByteFormat::string(request->bytes)));
    if (request->blockedCount >= 1)
        message += QStringLiteral(" %1 protected path(s) were skipped.").arg(request->blockedCount);
}

} // namespace brisalon
