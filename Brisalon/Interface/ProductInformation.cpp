#include "Brisalon/Interface/ProductInformation.h"

#include "Brisalon/Platform/BundleInformation.h"
#include "Brisalon/Platform/Workspace.h"

#include <QUrl>

namespace brisalon {

namespace {

constexpr char siteAddress[] = "https://brisalon.app";

QString textOr(const BundleInformation& bundle, std::string_view key, const char* fallback)
{
    return QString::fromStdString(bundle.text(key).value_or(fallback));
}

} // namespace

QString ProductInformation::versionText() const
{
    return "Version " + textOr(bundle_, BundleInformation::versionKey, "1.0.0") + " (" +
           textOr(bundle_, BundleInformation::buildKey, "1") + ")";
}

QString ProductInformation::siteLabel() const
{
    return QUrl(siteAddress).host();
}

void ProductInformation::openSite()
{
    workspace_.openAddress(siteAddress);
}

} // namespace brisalon
