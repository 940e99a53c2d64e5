#pragma once

#include "Brisalon/App/CoreValues.h"
#include "Brisalon/Map/MapPicture.h"

#include <QColor>
#include <QFutureWatcher>
#include <QQuickItem>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

namespace brisalon {

/// The map: one level of the tree as blocks that can be hovered, clicked and
/// double-clicked. Owns no model data; its parent gives it the level and the
/// selected node's id and carries out what the signals ask for. The only state of
/// its own is the hover.
///
/// The picture of the level is painted on a worker thread, and again whenever the
/// level, the size or the device pixel ratio changes. Until it is ready the last
/// one stays; a picture of a level that is no longer wanted is never shown. A
/// hover or a selection moves images only.
class TreemapCanvas : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    /// The node whose children are the blocks; none shows nothing.
    Q_PROPERTY(brisalon::FileNodeValue level READ level WRITE setLevel NOTIFY levelChanged)
    /// The id of the selected node, whether or not it is on this level; empty when
    /// nothing is selected.
    Q_PROPERTY(QByteArray selectedID READ selectedID WRITE setSelectedID NOTIFY selectedIDChanged)
    /// The id of the block under the pointer; empty when there is none. Another
    /// level (another node, not a new scan of the same one) ends the hover until
    /// the pointer moves.
    Q_PROPERTY(QByteArray hoverID READ hoverID NOTIFY hoverChanged)
    Q_PROPERTY(brisalon::FileNodeValue hoveredNode READ hoveredNode NOTIFY hoverChanged)
    /// Where the pointer is while a block is hovered, in this item's coordinates;
    /// afterwards, where it was last.
    Q_PROPERTY(QPointF hoverPoint READ hoverPoint NOTIFY hoverPointChanged)
    /// Where the tooltip belongs for that point.
    Q_PROPERTY(QPointF tooltipPosition READ tooltipPosition NOTIFY hoverPointChanged)
    /// The selected block's node, none when it is not on this level.
    Q_PROPERTY(brisalon::FileNodeValue selectedNode READ selectedNode NOTIFY selectedNodeChanged)
    /// Whether what is on screen is the level at this size: false while its picture
    /// is being painted.
    Q_PROPERTY(bool upToDate READ isUpToDate NOTIFY upToDateChanged)
    /// Whether the keyboard focus came by the keyboard, and so should be seen.
    Q_PROPERTY(bool focusVisible READ isFocusVisible NOTIFY focusVisibleChanged)

public:
    explicit TreemapCanvas(QQuickItem* parent = nullptr);

    FileNodeValue level() const { return value_; }
    void setLevel(const FileNodeValue& level);
    QByteArray selectedID() const { return selectedID_; }
    void setSelectedID(const QByteArray& id);

    QByteArray hoverID() const { return hoverID_; }
    FileNodeValue hoveredNode() const { return hoveredNode_; }
    QPointF hoverPoint() const { return hoverPoint_; }
    QPointF tooltipPosition() const;
    FileNodeValue selectedNode() const;
    /// The position on this level of the selected block.
    std::optional<std::size_t> selectedBlock() const { return selected_; }
    bool isUpToDate() const;
    bool isFocusVisible() const { return focusVisible_; }

    /// The level's blocks as they are shown, laid out if they have not been since
    /// the level or the size changed. Valid until either changes.
    const MapLevel& laidOut();

    /// A blurred picture of the map as it is shown now, and the area that it is of,
    /// in points; at a fraction of the map's resolution, to be drawn stretched.
    struct Blurred {
        QImage image;
        QRectF area;
    };
    /// Of an area at least that large; without an image while nothing is shown.
    Blurred blurred(const QRectF& area) const;

signals:
    void levelChanged();
    void selectedIDChanged();
    void selectedNodeChanged();
    void hoverChanged();
    void hoverPointChanged();
    void upToDateChanged();
    void focusVisibleChanged();
    /// The map looks different: another picture, hover or selection.
    void appearanceChanged();

    /// A click on a block, or a key that moved to it: an arrow, Home for the largest
    /// block, End for the smallest. No node: Escape, which ends a selection on this
    /// level.
    void selectRequested(const brisalon::FileNodeValue& node);
    /// A double click on a block, whose first click has selected it, or the Return
    /// key on the selected one.
    void zoomRequested(const brisalon::FileNodeValue& node);
    /// The context menu of the selected block, at a point in this item's coordinates.
    void menuRequested(QPointF point);

protected:
    void hoverEnterEvent(QHoverEvent* event) override { hover(event); }
    void hoverMoveEvent(QHoverEvent* event) override { hover(event); }
    void hoverLeaveEvent(QHoverEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void updatePolish() override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;

private:
    struct PaintedPicture {
        MapPicture picture;
        double milliseconds;
    };

    void levelOrSizeChanged();
    void hover(QHoverEvent* event);
    void hoverBlockAt(QPointF point);
    void endHover();
    void findSelected();
    static PaintedPicture paint(std::shared_ptr<const MapLevel> level, double ratio);
    void take(PaintedPicture painted);
    void pictureReplaced();
    void noteUpToDate();
    void setFocusVisible(bool visible);
    double ratio() const;
    bool showsLevel() const;

    FileNodeValue value_;
    /// Null when it must be laid out again.
    std::shared_ptr<const MapLevel> level_;

    QByteArray selectedID_;
    std::optional<std::size_t> selected_;

    std::optional<std::size_t> hovered_;
    QByteArray hoverID_;
    FileNodeValue hoveredNode_;
    QPointF hoverPoint_;

    std::optional<std::size_t> pressed_;
    bool focusVisible_ = false;

    /// What is shown; without layers while nothing is.
    MapPicture picture_;
    bool pictureChanged_ = false;
    bool wasUpToDate_ = true;
    QTimer slowPainting_;
    double lastMilliseconds_ = 0;
    QFutureWatcher<PaintedPicture> painting_;
};

} // namespace brisalon
