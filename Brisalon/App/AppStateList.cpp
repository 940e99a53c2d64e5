#include "Brisalon/App/AppStateList.h"

namespace brisalon {

void AppStateList::setAppState(AppState* state)
{
    if (state == state_)
        return;
    if (state_)
        state_->disconnect(this);
    state_ = state;
    follow(*state_);
    emit appStateChanged();
}

} // namespace brisalon
