#include "carto/view/map_view.h"

#include "base/erreur.h"
#include "carto/render/overlay.h"
#include "carto/render/scene.h"
#include "carto/view/tools/tool.h"
#include "carto/view/tools/tool_factory.h"

#include <QDragEnterEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QThreadPool>
#include <QWheelEvent>
#include <cmath>

namespace carto {

using veldra::Erreur;
namespace err = veldra::err;

namespace mouse {

int buttonCode(Qt::MouseButtons buttons) {
    int code = 0;
    if (buttons & Qt::LeftButton)
        code |= Left;
    if (buttons & Qt::RightButton)
        code |= Right;
    if (buttons & Qt::MiddleButton)
        code |= Middle;
    return code;
}

int shiftCode(Qt::KeyboardModifiers modifiers) {
    int code = 0;
    if (modifiers & Qt::ShiftModifier)
        code |= 1;
    if (modifiers & Qt::ControlModifier)
        code |= 2;
    if (modifiers & Qt::AltModifier)
        code |= 4;
    return code;
}

} // namespace mouse

namespace {

// Key codes as hosts know them: letters and digits are their ASCII capitals, the rest
// follow the usual virtual-key numbers.
int keyCode(int qtKey) {
    if ((qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9) || (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z))
        return qtKey;
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24)
        return 112 + (qtKey - Qt::Key_F1);
    switch (qtKey) {
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_Tab:
        return 9;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Shift:
        return 16;
    case Qt::Key_Control:
        return 17;
    case Qt::Key_Alt:
        return 18;
    case Qt::Key_Escape:
        return 27;
    case Qt::Key_Space:
        return 32;
    case Qt::Key_PageUp:
        return 33;
    case Qt::Key_PageDown:
        return 34;
    case Qt::Key_End:
        return 35;
    case Qt::Key_Home:
        return 36;
    case Qt::Key_Left:
        return 37;
    case Qt::Key_Up:
        return 38;
    case Qt::Key_Right:
        return 39;
    case Qt::Key_Down:
        return 40;
    case Qt::Key_Insert:
        return 45;
    case Qt::Key_Delete:
        return 46;
    default:
        return qtKey & 0xFFFF;
    }
}

constexpr int kStandardTools[] = {tool::Pan,           tool::ZoomIn,       tool::ZoomOut,
                                  tool::Select,        tool::RadiusSelect, tool::RectangleSelect,
                                  tool::PolygonSelect, tool::Label,        tool::DrawLine,
                                  tool::DrawPolygon};

bool isStandardTool(int number) {
    return std::find(std::begin(kStandardTools), std::end(kStandardTools), number) !=
           std::end(kStandardTools);
}

// The thread pool hands a job over through Qt's own locks, which ThreadSanitizer cannot
// see; a build under it is told of the hand-over, every other build does nothing.
#ifdef VELDRA_TSAN
extern "C" void __tsan_acquire(void* addr);
extern "C" void __tsan_release(void* addr);
void handOver(void* job) {
    __tsan_release(job);
}
void takeOver(void* job) {
    __tsan_acquire(job);
}
#else
void handOver(void*) {}
void takeOver(void*) {}
#endif

// Settles a burst of view changes (a pan drag, a wheel) before rendering again; the
// cached picture follows the pointer meanwhile.
constexpr int kRenderDelayMs = 30;

} // namespace

struct MapView::RenderJob {
    Scene scene;
    QImage image;
    std::atomic<bool> cancel{false};
};

MapView::MapView(QWidget* parent)
    : QWidget(parent), map_(std::make_unique<Map>()), pool_(std::make_unique<QThreadPool>()) {
    pool_->setMaxThreadCount(1);
    viewport_.size = size();
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    setAttribute(Qt::WA_OpaquePaintEvent);

    renderTimer_.setSingleShot(true);
    renderTimer_.setInterval(kRenderDelayMs);
    connect(&renderTimer_, &QTimer::timeout, this, &MapView::startRender);
    dirtyTimer_.setSingleShot(true);
    dirtyTimer_.setInterval(0);
    connect(&dirtyTimer_, &QTimer::timeout, this, &MapView::flushDirty);

    connect(map_.get(), &Map::layersChanged, this, [this] {
        rasters_.clear();
        if (insertionLayer_ && !containsLayer(insertionLayer_))
            insertionLayer_ = nullptr;
        for (auto& [number, t] : tools_)
            t->cancel();
        invalidate();
    });
    connect(map_.get(), &Map::datasetsChanged, this, &MapView::invalidate);
    connect(map_.get(), &Map::changed, this, [this](const Change& c) {
        if (c.has(Change::Display))
            invalidate();
        else if (c.touchesFeatures())
            markDirty(c.area);
        else
            update(); // what tools may do changed: their handles with it
    });
    connect(map_.get(), &Map::selectionChanged, this, [this](Layer*) {
        update();
        emit selectionChanged();
    });

    for (const int number : kStandardTools)
        tools_[number] = makeStandardTool(*this, number);
    applyCursor();
}

MapView::~MapView() {
    cancelRender();
    pool_->waitForDone();
    // Tools may refer to the map in their destructors; they go first.
    tools_.clear();
}

bool MapView::containsLayer(const Layer* layer) const {
    for (const Layer* l : map_->layers())
        if (l == layer)
            return true;
    return false;
}

// ---- where the view looks

void MapView::setViewport(const Viewport& v) {
    if (v == viewport_)
        return;
    viewport_ = v;
    update();
    renderTimer_.start();
    emit viewChanged();
}

void MapView::setZoom(double width) {
    if (!(width > 0) || !std::isfinite(width))
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Le zoom doit être un nombre strictement positif."));
    Viewport v = viewport_;
    v.zoom = width;
    setViewport(v);
}

void MapView::setCentre(Point c) {
    if (!std::isfinite(c.x) || !std::isfinite(c.y))
        throw Erreur(err::AppelIncorrect, QStringLiteral("Le centre de la carte est incorrect."));
    Viewport v = viewport_;
    v.centre = c;
    setViewport(v);
}

void MapView::setBounds(const Rect& r) {
    if (r.isNull())
        return;
    setViewport(viewport_.fitting(r));
}

double MapView::paperWidth() const {
    return width() / double(std::max(1, logicalDpiX())) * 2.54;
}

double MapView::paperHeight() const {
    return height() / double(std::max(1, logicalDpiY())) * 2.54;
}

// ---- tools

Tool* MapView::activeTool() const {
    const auto it = tools_.find(currentTool_);
    return it == tools_.end() ? nullptr : it->second.get();
}

bool MapView::hasTool(int number) const {
    return tools_.contains(number);
}

void MapView::setCurrentTool(int number) {
    if (!hasTool(number))
        throw Erreur(err::OutilInconnu, QStringLiteral("L'outil %1 n'existe pas.").arg(number));
    if (Tool* t = activeTool())
        t->cancel();
    currentTool_ = number;
    applyCursor();
    update();
}

void MapView::createCustomTool(int number, CustomToolType type, int cursor) {
    if (isStandardTool(number))
        throw Erreur(err::OutilInconnu,
                     QStringLiteral("Le numéro %1 est celui d'un outil standard.").arg(number));
    switch (type) {
    case CustomToolType::Point:
    case CustomToolType::Circle:
    case CustomToolType::Rectangle:
    case CustomToolType::BrokenLine:
        break;
    default:
        throw Erreur(err::OutilInconnu,
                     QStringLiteral("Type d'outil inconnu : %1.").arg(int(type)));
    }
    if (number == currentTool_)
        if (Tool* t = activeTool())
            t->cancel();
    tools_[number] = makeCustomTool(*this, number, type, cursor);
    applyCursor();
}

void MapView::setEditingMode(int mode) {
    if (mode != editmode::Features && mode != editmode::Vertices && mode != editmode::AddVertices)
        throw Erreur(err::OutilInconnu, QStringLiteral("Mode d'édition inconnu : %1.").arg(mode));
    editingMode_ = mode;
    update();
}

void MapView::setMousePointer(int code) {
    mousePointer_ = code;
    applyCursor();
}

void MapView::setMouseIcon(const QString& file) {
    const QPixmap icon(file);
    if (icon.isNull())
        throw Erreur(err::ImageIllisible,
                     QStringLiteral("Le curseur « %1 » ne peut pas être lu.").arg(file));
    mouseIcon_ = file;
    iconCursor_ = QCursor(icon);
    applyCursor();
}

void MapView::applyCursor() {
    switch (mousePointer_) {
    case pointer::Default:
        if (const Tool* t = activeTool())
            setCursor(t->cursor());
        else
            unsetCursor();
        break;
    case pointer::Hourglass:
        setCursor(Qt::WaitCursor);
        break;
    case pointer::Custom:
        setCursor(mouseIcon_.isEmpty() ? QCursor(Qt::ArrowCursor) : iconCursor_);
        break;
    default:
        setCursor(toolCursor(mousePointer_));
        break;
    }
}

std::vector<Layer*> MapView::layersTopDown() const {
    std::vector<Layer*> out = map_->layers();
    std::reverse(out.begin(), out.end());
    return out;
}

// ---- looks and rendering

void MapView::setBackgroundColor(Colour c) {
    if (c == background_)
        return;
    background_ = c;
    invalidate();
}

void MapView::refresh() {
    invalidate();
}

void MapView::invalidate() {
    dirty_ = Rect{};
    dirtyTimer_.stop();
    renderTimer_.start(0);
}

void MapView::markDirty(const Rect& area) {
    dirty_ = dirty_.united(area);
    if (!dirtyTimer_.isActive())
        dirtyTimer_.start();
}

RasterImage MapView::raster(const QString& source) {
    auto it = rasters_.find(source);
    if (it == rasters_.end())
        it = rasters_.emplace(source, readRaster(source)).first;
    return it->second;
}

void MapView::flushDirty() {
    const Rect area = dirty_;
    dirty_ = Rect{};
    if (area.isNull())
        return;
    // A partial redraw needs a picture of this very view that no render will replace.
    if (!cacheValid_ || !(cacheViewport_ == viewport_) || job_ || renderTimer_.isActive()) {
        renderTimer_.start(0);
        return;
    }
    const double pad = 3 * viewport_.unitsPerPixel();
    const Rect grown{area.xmin - pad, area.ymin - pad, area.xmax + pad, area.ymax + pad};
    const QRectF clip = QRectF(viewport_.toScreen({grown.xmin, grown.ymax}),
                               viewport_.toScreen({grown.xmax, grown.ymin}))
                            .intersected(QRectF(QPointF(0, 0), QSizeF(viewport_.size)));
    if (clip.isEmpty())
        return;
    if (clip.width() * clip.height() > 0.4 * viewport_.size.width() * viewport_.size.height()) {
        renderTimer_.start(0);
        return;
    }
    const Scene scene =
        buildScene(*map_, viewport_, grown, [this](const QString& s) { return raster(s); });
    QPainter p(&cache_);
    p.setClipRect(clip);
    p.fillRect(clip, toQColor(background_));
    p.setRenderHint(QPainter::Antialiasing);
    paintScene(p, scene);
    update(clip.toAlignedRect());
}

void MapView::cancelRender() {
    if (job_)
        job_->cancel = true;
    job_.reset();
}

void MapView::startRender() {
    renderTimer_.stop();
    cancelRender();
    if (viewport_.size.isEmpty())
        return;
    auto job = std::make_shared<RenderJob>();
    job->scene = buildScene(*map_, viewport_, viewport_.visible(),
                            [this](const QString& s) { return raster(s); });
    job->image = QImage(viewport_.size, QImage::Format_ARGB32_Premultiplied);
    job->image.fill(toQColor(background_));
    job_ = job;
    handOver(job.get()); // the job is the worker's until it is done
    pool_->start([this, job] {
        takeOver(job.get());
        {
            QPainter p(&job->image);
            p.setRenderHint(QPainter::Antialiasing);
            paintScene(p, job->scene, &job->cancel);
        }
        if (job->cancel)
            return;
        {
            const std::lock_guard lock(doneMutex_);
            done_ = job;
        }
        QMetaObject::invokeMethod(this, &MapView::collectRender, Qt::QueuedConnection);
    });
}

void MapView::collectRender() {
    std::shared_ptr<RenderJob> done;
    {
        const std::lock_guard lock(doneMutex_);
        done.swap(done_);
    }
    if (!done || done != job_)
        return; // superseded by a newer render
    job_.reset();
    cache_ = std::move(done->image);
    cacheViewport_ = done->scene.viewport;
    cacheValid_ = true;
    update();
    if (!dirty_.isNull())
        flushDirty();
}

void MapView::waitForRender() {
    if (dirtyTimer_.isActive()) {
        dirtyTimer_.stop();
        flushDirty();
    }
    if (renderTimer_.isActive())
        startRender();
    pool_->waitForDone();
    collectRender();
}

bool MapView::isRendering() const {
    return job_ != nullptr || renderTimer_.isActive();
}

QImage MapView::renderImage(QSize size, bool withSelection) const {
    QImage image(size, QImage::Format_RGB32);
    image.fill(toQColor(background_));
    Viewport v = viewport_;
    v.size = size;
    // The same map width at any pixel size, so an export shows what the view shows.
    const Scene scene = buildScene(*map_, v, v.visible(), [this](const QString& s) {
        return const_cast<MapView*>(this)->raster(s);
    });
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    paintScene(p, scene);
    if (withSelection)
        paintSelection(p, *map_, v);
    paintLegends(p, *map_, size);
    return image;
}

// ---- Qt events

void MapView::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QColor background = toQColor(background_);
    if (!cacheValid_) {
        p.fillRect(rect(), background);
    } else if (cacheViewport_ == viewport_) {
        p.drawImage(0, 0, cache_);
    } else {
        // The last picture, moved and scaled to where the view now looks.
        p.fillRect(rect(), background);
        const Rect e = cacheViewport_.visible();
        const QRectF target(viewport_.toScreen({e.xmin, e.ymax}),
                            viewport_.toScreen({e.xmax, e.ymin}));
        p.drawImage(target, cache_);
    }
    p.setRenderHint(QPainter::Antialiasing);
    paintSelection(p, *map_, viewport_);
    paintLegends(p, *map_, size());
    if (const Tool* t = activeTool())
        t->paintOverlay(p);
    if (snapMark_) {
        // The point the pointer snapped to: a small square, seen on any background.
        const QPointF c = viewport_.toScreen(*snapMark_);
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(Qt::white, 3));
        p.drawRect(QRectF(c.x() - 5, c.y() - 5, 10, 10));
        p.setPen(QPen(QColor(220, 0, 120), 1.5));
        p.drawRect(QRectF(c.x() - 5, c.y() - 5, 10, 10));
    }
}

void MapView::resizeEvent(QResizeEvent*) {
    Viewport v = viewport_;
    v.size = size();
    setViewport(v);
}

void MapView::setSnapper(Snapper snapper, int tolerancePixels) {
    snapper_ = std::move(snapper);
    snapPixels_ = std::max(1, tolerancePixels);
    if (!snapper_ && snapMark_) {
        snapMark_.reset();
        update();
    }
}

bool MapView::toolSnaps() const {
    if (!snapper_)
        return false;
    if (currentTool_ == tool::DrawPolygon || currentTool_ == tool::DrawLine)
        return true;
    if (currentTool_ == tool::Select)
        return editingMode_ == editmode::Vertices || editingMode_ == editmode::AddVertices;
    return currentTool_ < 1000; // the custom tools: corners, centres and points
}

QMouseEvent MapView::snapped(const QMouseEvent& event) {
    const std::optional<Point> before = snapMark_;
    snapMark_.reset();
    QPointF at = event.position();
    if (toolSnaps() && !(event.modifiers() & Qt::ShiftModifier) && viewport_.pixelsPerUnit() > 0) {
        try {
            snapMark_ = snapper_(viewport_.toMap(at), snapPixels_ / viewport_.pixelsPerUnit());
        } catch (const veldra::Erreur&) {
            snapMark_.reset(); // a snapper that fails leaves the pointer where it is
        }
        if (snapMark_)
            at = viewport_.toScreen(*snapMark_);
    }
    if (before != snapMark_)
        update();
    return QMouseEvent(event.type(), at, mapToGlobal(at), event.button(), event.buttons(),
                       event.modifiers());
}

void MapView::mousePressEvent(QMouseEvent* event) {
    QMouseEvent e = snapped(*event);
    const QPointF at = e.position();
    emit mouseDown(mouse::buttonCode(e.button()), mouse::shiftCode(e.modifiers()), at.x(), at.y());
    if (Tool* t = activeTool())
        t->mousePress(e);
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
    QMouseEvent e = snapped(*event);
    const QPointF at = e.position();
    emit mouseMoved(mouse::buttonCode(e.buttons()), mouse::shiftCode(e.modifiers()), at.x(),
                    at.y());
    if (Tool* t = activeTool())
        t->mouseMove(e);
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
    QMouseEvent e = snapped(*event);
    const QPointF at = e.position();
    emit mouseUp(mouse::buttonCode(e.button()), mouse::shiftCode(e.modifiers()), at.x(), at.y());
    if (Tool* t = activeTool())
        t->mouseRelease(e);
}

void MapView::mouseDoubleClickEvent(QMouseEvent* event) {
    QMouseEvent e = snapped(*event);
    emit doubleClicked();
    if (Tool* t = activeTool())
        t->mouseDoubleClick(e);
}

void MapView::wheelEvent(QWheelEvent* event) {
    const int steps = event->angleDelta().y() / 120;
    if (steps == 0)
        return;
    // The map point under the pointer stays under it.
    const QPointF at = event->position();
    const Point before = viewport_.toMap(at);
    Viewport v = viewport_;
    v.zoom = viewport_.zoom * std::pow(0.8, steps);
    const Point after = v.toMap(at);
    v.centre = {v.centre.x + before.x - after.x, v.centre.y + before.y - after.y};
    setViewport(v);
    event->accept();
}

void MapView::keyPressEvent(QKeyEvent* event) {
    emit keyDown(keyCode(event->key()), mouse::shiftCode(event->modifiers()));
    if (Tool* t = activeTool(); t && t->keyPress(*event))
        return;
    QWidget::keyPressEvent(event);
}

void MapView::dragEnterEvent(QDragEnterEvent* event) {
    event->acceptProposedAction();
}

void MapView::dragMoveEvent(QDragMoveEvent* event) {
    event->acceptProposedAction();
}

void MapView::dropEvent(QDropEvent* event) {
    const QPointF at = event->position();
    emit dropped(event->source(), at.x(), at.y());
    event->acceptProposedAction();
}

// ---- export

void MapView::exportImage(const QString& path, int format, double width, double height) {
    if (format != 1)
        throw Erreur(err::FormatInconnu,
                     QStringLiteral("Format d'image inconnu : %1.").arg(format));
    QSize size = this->size();
    if (width > 0 && height > 0)
        size = QSize(std::max(1, int(std::lround(width / 2.54 * logicalDpiX()))),
                     std::max(1, int(std::lround(height / 2.54 * logicalDpiY()))));
    const QImage image = renderImage(size, exportSelection);
    if (!image.save(path, "JPG", 90))
        throw Erreur(err::EcritureImpossible,
                     QStringLiteral("L'image « %1 » ne peut pas être écrite.").arg(path));
}

} // namespace carto
