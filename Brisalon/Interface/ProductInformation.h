#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace brisalon {

class BundleInformation;
class Workspace;

/// What the About panel tells of the product, and the way to its maker's site.
/// Main thread.
class ProductInformation : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one that its window shows.")

    Q_PROPERTY(QString siteLabel READ siteLabel CONSTANT)

public:
    /// Both outlive this.
    ProductInformation(const BundleInformation& bundle, Workspace& workspace)
        : bundle_(bundle), workspace_(workspace)
    {
    }

    /// "Version 1.0.0 (1)": what the bundle says of version and build at this moment,
    /// and these when it says nothing.
    Q_INVOKABLE QString versionText() const;

    /// The host of the site's address; empty if that is no address.
    QString siteLabel() const;
    /// Opens the site in the browser.
    Q_INVOKABLE void openSite();

private:
    const BundleInformation& bundle_;
    Workspace& workspace_;
};

} // namespace brisalon
