#include "Brisalon/Map/TreemapCanvas.h"

#include "Brisalon/Map/MapAccessible.h"
#include "Brisalon/Map/MapSceneNode.h"
#include "Brisalon/Map/TooltipPlacement.h"
#include "Brisalon/Platform/Workers.h"
#include "Brisalon/Theme/BoxBlur.h"
#include "Brisalon/Theme/Theme.h"

#include <QCursor>
#include <QElapsedTimer>
#include <QFocusEvent>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QQuickWindow>
#include <QtConcurrent>

#include <chrono>

namespace brisalon {

namespace {

/// A resized map that was painted in this time is painted at once, so that it
/// never lags behind its window; longer would eat up the frame.
constexpr double quickMilliseconds = 8;

/// A wait that the user must be told of, just below a tenth of a second.
constexpr std::chrono::milliseconds soonNoticed(80);

std::string_view bytes(const QByteArray& text)
{
    return {text.constData(), static_cast<std::size_t>(text.size())};
}

} // namespace

TreemapCanvas::TreemapCanvas(QQuickItem* parent) : QQuickItem(parent)
{
    MapAccessible::install();
    setFlag(ItemHasContents);
    setAcceptHoverEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton | Qt::RightButton);
    setActiveFocusOnTab(true);
    // One texel is one pixel; who scales the map (a transition) sets this for that
    // time.
    setSmooth(false);
    slowPainting_.setSingleShot(true);
    slowPainting_.setInterval(soonNoticed);
    connect(&slowPainting_, &QTimer::timeout, this, [this] { setCursor(Qt::BusyCursor); });
    connect(&painting_, &QFutureWatcherBase::finished, this,
            [this] { take(painting_.future().takeResult()); });
}

// The level

void TreemapCanvas::setLevel(const FileNodeValue& level)
{
    if (level == value_)
        return;
    const bool sameFolder = level.id() == value_.id();
    value_ = level;
    if (!sameFolder)
        endHover();
    levelOrSizeChanged();
    emit levelChanged();
}

const MapLevel& TreemapCanvas::laidOut()
{
    if (!level_)
        level_ = std::make_shared<const MapLevel>(value_, size());
    return *level_;
}

void TreemapCanvas::levelOrSizeChanged()
{
    level_.reset();
    pressed_.reset();
    if (hovered_) {
        hovered_.reset();
        hoverBlockAt(hoverPoint_);
    }
    findSelected();
    polish();
    noteUpToDate();
}

void TreemapCanvas::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        levelOrSizeChanged();
        emit hoverPointChanged();
    }
}

void TreemapCanvas::itemChange(ItemChange change, const ItemChangeData& data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemDevicePixelRatioHasChanged || change == ItemSceneChange) {
        polish();
        noteUpToDate();
    }
}

// Selection

void TreemapCanvas::setSelectedID(const QByteArray& id)
{
    if (id == selectedID_)
        return;
    selectedID_ = id;
    findSelected();
    emit selectedIDChanged();
}

void TreemapCanvas::findSelected()
{
    selected_.reset();
    if (!selectedID_.isEmpty())
        selected_ = laidOut().blockOf(bytes(selectedID_));
    update();
    emit selectedNodeChanged();
    emit appearanceChanged();
}

FileNodeValue TreemapCanvas::selectedNode() const
{
    return selected_ ? level_->value(*selected_) : FileNodeValue();
}

// Hover

void TreemapCanvas::hover(QHoverEvent* event)
{
    // Without a time when Qt itself asks what lies under a pointer that has not moved.
    if (event->timestamp() == 0)
        return;
    hoverPoint_ = event->position();
    emit hoverPointChanged();
    hoverBlockAt(hoverPoint_);
}

void TreemapCanvas::hoverLeaveEvent(QHoverEvent*)
{
    // A map that was put out of reach keeps its look while it goes away.
    if (isEnabled())
        endHover();
}

void TreemapCanvas::hoverBlockAt(QPointF point)
{
    const auto block = laidOut().blockAt(point);
    if (!block) {
        endHover();
        return;
    }
    if (block == hovered_)
        return;
    hovered_ = block;
    hoveredNode_ = level_->value(*block);
    hoverID_ = hoveredNode_.id();
    update();
    emit hoverChanged();
    emit appearanceChanged();
}

void TreemapCanvas::endHover()
{
    if (hoverID_.isEmpty())
        return;
    hovered_.reset();
    hoveredNode_ = {};
    hoverID_.clear();
    update();
    emit hoverChanged();
    emit appearanceChanged();
}

QPointF TreemapCanvas::tooltipPosition() const
{
    return brisalon::tooltipPosition(hoverPoint_, size());
}

// Clicks and keys

void TreemapCanvas::mousePressEvent(QMouseEvent* event)
{
    setFocusVisible(false);
    pressed_ = laidOut().blockAt(event->position());
    if (!pressed_) {
        event->ignore();
        return;
    }
    forceActiveFocus(Qt::MouseFocusReason);
    if (event->button() == Qt::RightButton) {
        emit selectRequested(level_->value(*std::exchange(pressed_, std::nullopt)));
        emit menuRequested(event->position());
    }
}

void TreemapCanvas::mouseReleaseEvent(QMouseEvent* event)
{
    const auto pressed = std::exchange(pressed_, std::nullopt);
    if (pressed && laidOut().blockAt(event->position()) == pressed)
        emit selectRequested(level_->value(*pressed));
}

void TreemapCanvas::mouseDoubleClickEvent(QMouseEvent* event)
{
    // The release that follows is part of the double click, not another click.
    pressed_.reset();
    if (const auto block = laidOut().blockAt(event->position()))
        emit zoomRequested(level_->value(*block));
}

void TreemapCanvas::keyPressEvent(QKeyEvent* event)
{
    const std::size_t count = laidOut().count();
    // Without a selection on this level the keys begin at the largest block.
    const auto beyond = [&](Qt::Edge edge) {
        return selected_ ? level_->neighbor(*selected_, edge) : std::optional<std::size_t>(0);
    };
    std::optional<std::size_t> next;
    switch (event->key()) {
    case Qt::Key_Left:
        next = beyond(Qt::LeftEdge);
        break;
    case Qt::Key_Right:
        next = beyond(Qt::RightEdge);
        break;
    case Qt::Key_Up:
        next = beyond(Qt::TopEdge);
        break;
    case Qt::Key_Down:
        next = beyond(Qt::BottomEdge);
        break;
    case Qt::Key_Home:
        next = 0;
        break;
    case Qt::Key_End:
        next = count - 1;
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (selected_)
            emit zoomRequested(selectedNode());
        return;
    case Qt::Key_Menu:
    case Qt::Key_F10:
        if (event->key() == Qt::Key_F10 && event->modifiers() != Qt::ShiftModifier)
            event->ignore();
        else if (selected_)
            emit menuRequested(level_->cell(*selected_).center());
        return;
    case Qt::Key_Escape:
        if (selected_)
            emit selectRequested({});
        else
            event->ignore();
        return;
    default:
        event->ignore();
        return;
    }
    setFocusVisible(true);
    if (next && count > 0)
        emit selectRequested(level_->value(*next));
}

void TreemapCanvas::focusInEvent(QFocusEvent* event)
{
    QQuickItem::focusInEvent(event);
    // A map that takes the focus because it has just appeared shows nothing.
    const Qt::FocusReason reason = event->reason();
    if (reason != Qt::ActiveWindowFocusReason)
        setFocusVisible(reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                        reason == Qt::ShortcutFocusReason);
}

void TreemapCanvas::focusOutEvent(QFocusEvent* event)
{
    QQuickItem::focusOutEvent(event);
    if (event->reason() != Qt::ActiveWindowFocusReason)
        setFocusVisible(false);
}

void TreemapCanvas::setFocusVisible(bool visible)
{
    if (visible == focusVisible_)
        return;
    focusVisible_ = visible;
    emit focusVisibleChanged();
}

// The picture

double TreemapCanvas::ratio() const
{
    return window() ? window()->effectiveDevicePixelRatio() : 1.0;
}

bool TreemapCanvas::showsLevel() const
{
    return level_ && picture_.level == level_ && picture_.ratio == ratio();
}

bool TreemapCanvas::isUpToDate() const
{
    const bool nothingToShow = !value_ || size().isEmpty() || (level_ && level_->count() == 0);
    return nothingToShow ? picture_.level == nullptr : showsLevel();
}

void TreemapCanvas::noteUpToDate()
{
    if (wasUpToDate_ == isUpToDate())
        return;
    wasUpToDate_ = !wasUpToDate_;
    // Most levels are painted in a frame or two; of one that takes long the pointer tells.
    if (wasUpToDate_) {
        slowPainting_.stop();
        unsetCursor();
    } else {
        slowPainting_.start();
    }
    emit upToDateChanged();
}

TreemapCanvas::PaintedPicture TreemapCanvas::paint(std::shared_ptr<const MapLevel> level,
                                                   double ratio)
{
    QElapsedTimer timer;
    timer.start();
    PaintedPicture painted;
    painted.picture = MapPicture::paint(std::move(level), ratio, Theme::panel().rgb());
    painted.milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    return painted;
}

void TreemapCanvas::updatePolish()
{
    if (laidOut().count() == 0) {
        picture_ = {};
        pictureReplaced();
        return;
    }
    // While another picture is being painted this one waits for it: one worker for
    // each map is enough, and of the requests in between only the last counts.
    if (showsLevel() || painting_.isRunning())
        return;
    const bool resized = picture_.level && picture_.level->value() == value_;
    if (resized && lastMilliseconds_ < quickMilliseconds)
        take(paint(level_, ratio()));
    else
        painting_.setFuture(QtConcurrent::run(&workers(), &TreemapCanvas::paint, level_, ratio()));
}

void TreemapCanvas::take(PaintedPicture painted)
{
    lastMilliseconds_ = painted.milliseconds;
    // Of another size it is arranged otherwise, but still nearer to what is wanted than an
    // earlier one of the same nodes; in place of anything else it would be seen to jump.
    const bool isSuccessor = picture_.level && picture_.level->value() == value_;
    if (painted.picture.level == level_ ||
        (isSuccessor && painted.picture.level->value() == value_)) {
        picture_ = std::move(painted.picture);
        pictureReplaced();
    }
    if (!isUpToDate())
        polish();
}

void TreemapCanvas::pictureReplaced()
{
    pictureChanged_ = true;
    update();
    noteUpToDate();
    emit appearanceChanged();
}

QSGNode* TreemapCanvas::updatePaintNode(QSGNode* old, UpdatePaintNodeData*)
{
    auto* node = static_cast<MapSceneNode*>(old);
    if (!picture_.level || picture_.layers.bright.isNull()) {
        delete node;
        return nullptr;
    }
    const bool isNew = !node || pictureChanged_;
    if (!node)
        node = new MapSceneNode(window(), picture_.layers);
    else if (isNew)
        node->replaceLayers(picture_.layers);
    pictureChanged_ = false;

    const auto filtering = smooth() ? QSGTexture::Linear : QSGTexture::Nearest;
    if (showsLevel())
        node->show(picture_, {hovered_, selected_, Theme::accent()}, filtering);
    else if (isNew)
        node->show(picture_, {}, filtering);
    const QSizeF painted = picture_.level->size();
    node->stretch(width() / painted.width(), height() / painted.height());
    return node;
}

TreemapCanvas::Blurred TreemapCanvas::blurred(const QRectF& area) const
{
    constexpr int reach = 9; // in pixels of the small layers
    if (!picture_.level)
        return {};
    constexpr double step = MapPicture::smallStep;
    const QRect wanted = QRectF(area.topLeft() / step, area.size() / step).toAlignedRect();
    const QRect sampled = wanted.adjusted(-reach, -reach, reach, reach);

    QImage image(sampled.size(), QImage::Format_RGB32);
    image.fill(Theme::panel());
    QPainter painter(&image);
    painter.translate(-sampled.topLeft());
    const MapLayers& layers = picture_.smallLayers;
    painter.drawImage(0, 0, hovered_ ? layers.dimmed : layers.bright);
    if (hovered_ && showsLevel()) {
        for (const auto& block : {hovered_, selected_}) {
            if (!block)
                continue;
            const QRectF cell = level_->cell(*block);
            const QRectF small(cell.topLeft() / step, cell.size() / step);
            painter.drawImage(small, layers.bright, small);
        }
    }
    painter.end();
    boxBlur(image, reach);
    return {image.copy(QRect({reach, reach}, wanted.size())),
            QRectF(wanted.topLeft() * step, QSizeF(wanted.size()) * step)};
}

} // namespace brisalon
