#include "Brisalon/App/AppStateFields.h"
#include "Brisalon/Services/FullDiskAccess.h"

#include <QDateTime>

namespace brisalon {

void AppState::refreshPermission()
{
    const bool wasGranted = hasFullDiskAccess_;
    assign(hasFullDiskAccess_, FullDiskAccess::isGranted(services_.fileAccess),
           &AppState::hasFullDiskAccessChanged);
    if (wasGranted || !hasFullDiskAccess_)
        return;
    setFDAJustGranted(true);
    preferences_.setFDABannerDismissedUntil(std::nullopt);
    emit shouldShowFDABannerChanged();
}

bool AppState::shouldShowFDABanner() const
{
    if (hasFullDiskAccess_)
        return false;
    const auto dismissedUntil = preferences_.fdaBannerDismissedUntil();
    if (dismissedUntil && *dismissedUntil > services_.now())
        return false;
    return !fdaJustGranted_;
}

void AppState::openSettings()
{
    FullDiskAccess::openSettings(services_.fileAccess, services_.workspace);
}

void AppState::revealAppInFinder()
{
    FullDiskAccess::revealAppInFinder(services_.workspace, services_.bundle);
}

void AppState::dismissFDABanner()
{
    // Calendar days: a change of the clocks in between does not shift the hour.
    const auto now =
        std::chrono::duration_cast<std::chrono::milliseconds>(services_.now().time_since_epoch());
    const QDateTime until = QDateTime::fromMSecsSinceEpoch(now.count()).addDays(7);
    preferences_.setFDABannerDismissedUntil(
        UIPreferences::Date(std::chrono::milliseconds(until.toMSecsSinceEpoch())));
    emit shouldShowFDABannerChanged();
}

void AppState::setFDAJustGranted(bool isGranted)
{
    assign(fdaJustGranted_, isGranted, &AppState::fdaJustGrantedChanged);
}

} // namespace brisalon
