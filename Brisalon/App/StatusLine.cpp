#include "Brisalon/App/StatusLine.h"

namespace brisalon {

namespace {

bool isOfProgress(bool isScanning, const ScanProgressValue& progress)
{
    return isScanning && progress.isPresent();
}

} // namespace

QString StatusLine::text(bool isScanning, const ScanProgressValue& progress,
                         const QString& failureText, const QString& statusMessage)
{
    if (isOfProgress(isScanning, progress))
        return "Scanning · " + progress.itemsText() + " · " + progress.bytesText();
    if (isOfFailures(isScanning, progress, failureText))
        return failureText;
    return statusMessage.isEmpty() ? QStringLiteral("Ready") : statusMessage;
}

bool StatusLine::isOfFailures(bool isScanning, const ScanProgressValue& progress,
                              const QString& failureText)
{
    return !isOfProgress(isScanning, progress) && !failureText.isEmpty();
}

} // namespace brisalon
