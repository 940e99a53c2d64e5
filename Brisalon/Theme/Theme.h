#pragma once

#include "BrisalonCore/Risk.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace brisalon {

/// The one place for what the whole interface shares: colours, text sizes and
/// fonts of the fixed dark look. A singleton in QML; from C++ the same values are
/// static functions. Sizes are in points, and one point is one device-independent
/// pixel. No state; any thread may read it once a QGuiApplication exists.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(QColor sidebar READ sidebar CONSTANT)
    Q_PROPERTY(QColor panel READ panel CONSTANT)
    Q_PROPERTY(QColor well READ well CONSTANT)
    Q_PROPERTY(QColor elevated READ elevated CONSTANT)
    Q_PROPERTY(QColor text READ text CONSTANT)
    Q_PROPERTY(QColor textSecondary READ textSecondary CONSTANT)
    Q_PROPERTY(QColor muted READ muted CONSTANT)
    Q_PROPERTY(QColor stroke READ stroke CONSTANT)
    Q_PROPERTY(QColor strokeStrong READ strokeStrong CONSTANT)
    Q_PROPERTY(QColor accent READ accent CONSTANT)
    Q_PROPERTY(QColor accentSoft READ accentSoft CONSTANT)
    Q_PROPERTY(QColor danger READ danger CONSTANT)
    Q_PROPERTY(QColor success READ success CONSTANT)
    Q_PROPERTY(QColor amber READ amber CONSTANT)
    Q_PROPERTY(QColor windowBackground READ windowBackground CONSTANT)
    Q_PROPERTY(QColor backgroundTop READ backgroundTop CONSTANT)
    Q_PROPERTY(QColor backgroundBottom READ backgroundBottom CONSTANT)

    Q_PROPERTY(int largeTitle READ largeTitle CONSTANT)
    Q_PROPERTY(int title READ title CONSTANT)
    Q_PROPERTY(int title2 READ title2 CONSTANT)
    Q_PROPERTY(int title3 READ title3 CONSTANT)
    Q_PROPERTY(int headline READ headline CONSTANT)
    Q_PROPERTY(int body READ body CONSTANT)
    Q_PROPERTY(int callout READ callout CONSTANT)
    Q_PROPERTY(int subheadline READ subheadline CONSTANT)
    Q_PROPERTY(int caption READ caption CONSTANT)
    Q_PROPERTY(int caption2 READ caption2 CONSTANT)

public:
    static QColor sidebar();
    static QColor panel();
    static QColor well();
    static QColor elevated();
    static QColor text();
    static QColor textSecondary();
    static QColor muted();
    static QColor stroke();
    static QColor strokeStrong();
    static QColor accent();
    static QColor accentSoft();
    static QColor danger();
    static QColor success();
    /// Warnings, and what should be looked at before it is removed.
    static QColor amber();
    /// What the window shows before its first frame.
    static QColor windowBackground();
    /// The two ends of the window's gradient, from the top-left corner to the
    /// bottom-right one.
    static QColor backgroundTop();
    static QColor backgroundBottom();

    static constexpr int largeTitle() { return 26; }
    static constexpr int title() { return 22; }
    static constexpr int title2() { return 17; }
    static constexpr int title3() { return 15; }
    static constexpr int headline() { return 13; }
    static constexpr int body() { return 13; }
    static constexpr int callout() { return 12; }
    static constexpr int subheadline() { return 11; }
    static constexpr int caption() { return 10; }
    static constexpr int caption2() { return 10; }

    /// The colour at that opacity (0 to 1), whatever its own was.
    Q_INVOKABLE static QColor faded(const QColor& color, double opacity);

    /// Fonts of the three designs at a size and a weight (QFont::Weight; QML's
    /// Font.Medium and so on). Each lists fallbacks, so that a desktop without the
    /// preferred family still gets a close one.
    Q_INVOKABLE static QFont system(int size, int weight = QFont::Normal);
    Q_INVOKABLE static QFont rounded(int size, int weight = QFont::Normal);
    Q_INVOKABLE static QFont monospaced(int size, int weight = QFont::Normal);

    Q_INVOKABLE static QColor riskColor(brisalon::Risk risk);
};

} // namespace brisalon
