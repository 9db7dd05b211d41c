#pragma once
// A widget that shows a map and lets the user act on it with tools.
//
// Drawing: the layers are rendered into a cached image on a worker thread from a snapshot
// of the features in view, so the event loop never waits for a whole-plan redraw. While a
// render is under way the last image is shown moved and scaled to the new view; a pan or a
// zoom never reads storage. Edits redraw only the area they touched. The selection, the
// legends and what the current tool is drawing are painted over the cached image.
//
// Tools are numbered: 1001 pan, 1003 zoom in, 1004 zoom out, 1007 select and move, 1008
// radius selection, 1009 rectangle selection, 1010 polygon selection, 1011 label tool,
// 1012 draw a line and 1014 draw a polygon into the insertion layer, plus custom tools
// created with a number, a type and a cursor. Notifications are signals emitted on the UI
// thread; by-reference arguments are read back after a direct connection returns.

#include "base/erreur.h"
#include "carto/model/map.h"
#include "carto/render/raster_image.h"
#include "carto/render/viewport.h"

#include <QCursor>
#include <QImage>
#include <QTimer>
#include <QWidget>
#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class QThreadPool;

namespace carto {

class Tool;

namespace tool {
inline constexpr int Pan = 1001;
inline constexpr int ZoomIn = 1003;
inline constexpr int ZoomOut = 1004;
inline constexpr int Select = 1007;
inline constexpr int RadiusSelect = 1008;
inline constexpr int RectangleSelect = 1009;
inline constexpr int PolygonSelect = 1010;
inline constexpr int Label = 1011;
inline constexpr int DrawLine = 1012;
inline constexpr int DrawPolygon = 1014;
} // namespace tool

// Types of custom tools.
enum class CustomToolType : int { Point = 0, Circle = 2, Rectangle = 3, BrokenLine = 4 };

// Editing modes of the select tool: whole features, vertices, adding vertices.
namespace editmode {
inline constexpr int Features = 1;
inline constexpr int Vertices = 2;
inline constexpr int AddVertices = 64;
} // namespace editmode

// Mouse pointer codes.
namespace pointer {
inline constexpr int Default = 0;
inline constexpr int Hourglass = 11;
inline constexpr int Custom = 40;
} // namespace pointer

// Mouse buttons and shift states as the notifications give them.
namespace mouse {
inline constexpr int Left = 1;
inline constexpr int Right = 2;
inline constexpr int Middle = 4;
int buttonCode(Qt::MouseButtons buttons);
int shiftCode(Qt::KeyboardModifiers modifiers); // 1 Shift, 2 Control, 4 Alt
} // namespace mouse

// Phase flags of the drawing and poly-tool notifications.
namespace phase {
inline constexpr int Started = 0;
inline constexpr int Finished = 1;
inline constexpr int PointAdded = 2;
inline constexpr int Cancelled = 3;
} // namespace phase

// Edit status codes.
namespace editstatus {
inline constexpr int Completed = 2;
}

class MapView : public QWidget {
    Q_OBJECT
public:
    explicit MapView(QWidget* parent = nullptr);
    ~MapView() override;

    Map& map() { return *map_; }
    const Map& map() const { return *map_; }

    // Where the view looks.
    const Viewport& viewport() const { return viewport_; }
    double zoom() const { return viewport_.zoom; }
    void setZoom(double width); // Erreur when not strictly positive
    Point centre() const { return viewport_.centre; }
    void setCentre(Point c);
    Rect bounds() const { return viewport_.visible(); }
    void setBounds(const Rect& r); // the view fits the rectangle
    Point toMap(QPointF screen) const { return viewport_.toMap(screen); }
    QPointF toScreen(Point p) const { return viewport_.toScreen(p); }
    // The width of the view on screen in paper units (centimetres).
    double paperWidth() const;
    double paperHeight() const;

    // Tools
    int currentTool() const { return currentTool_; }
    void setCurrentTool(int number); // Erreur for an unknown number
    void createCustomTool(int number, CustomToolType type, int cursor);
    bool hasTool(int number) const;
    int editingMode() const { return editingMode_; }
    void setEditingMode(int mode); // 1, 2 or 64
    Layer* insertionLayer() const { return insertionLayer_; }
    void setInsertionLayer(Layer* layer) { insertionLayer_ = layer; }

    int mousePointer() const { return mousePointer_; }
    void setMousePointer(int code);
    QString mouseIcon() const { return mouseIcon_; }
    void setMouseIcon(const QString& file); // Erreur when the file is not a cursor image

    // Snapping, while drawing or editing vertices: the snapper gives, for a map point, the
    // point it snaps to within a tolerance in map units (none: the pointer stays). The view
    // asks it with `tolerancePixels` turned into map units; Shift held suspends it. No
    // snapper: no snapping.
    using Snapper = std::function<std::optional<Point>(Point, double)>;
    void setSnapper(Snapper snapper, int tolerancePixels);
    const std::optional<Point>& snapMark() const { return snapMark_; }

    // Looks
    Colour backgroundColor() const { return background_; }
    void setBackgroundColor(Colour c);
    // Whether exported images show the selection.
    bool exportSelection = false;

    // Redraws everything from the features (after changes the map did not report).
    void refresh();
    // Waits for the render under way, if any, and shows it (tests, exports).
    void waitForRender();
    bool isRendering() const;

    // Exports the view as an image file (format 1: JPEG). Width and height in paper units
    // (centimetres); 0 keeps the view's size. Erreur when the file cannot be written.
    void exportImage(const QString& path, int format, double width = 0, double height = 0);
    // What the view shows, drawn at any pixel size over the same centre and zoom.
    QImage renderImage(QSize size, bool withSelection) const;

    // For tools: the selectable or editable layers under a point, topmost first.
    std::vector<Layer*> layersTopDown() const;
    void updateOverlay() { update(); }
    // Emitted by tools; the view itself emits nothing else for them.
    void notifyEdited() { emit editStatus(editstatus::Completed); }
    // What a tool could not do (a refused write, an impossible shape): one signal for all.
    void reportFailure(const veldra::Erreur& error) { emit failed(error); }

signals:
    void mouseDown(int button, int shift, double x, double y);
    void mouseMoved(int button, int shift, double x, double y);
    void mouseUp(int button, int shift, double x, double y);
    void keyDown(int keyCode, int shift);
    void doubleClicked();
    void selectionChanged();
    void toolUsed(int tool, double x1, double y1, double x2, double y2, double distance, bool shift,
                  bool control, bool& enableDefault);
    void featureDrawing(int tool, int flags, carto::Feature& feature, bool shift, bool control,
                        bool& enableDefault);
    void polyToolUsed(int tool, int flags, const std::vector<carto::Point>& points, bool shift,
                      bool control, bool& enableDefault);
    void editStatus(int status);
    void viewChanged();
    void dropped(QObject* source, double x, double y);
    // A tool failed; the view and the map are as they were before the attempt.
    void failed(const veldra::Erreur& error);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    struct RenderJob;
    Tool* activeTool() const;
    void setViewport(const Viewport& v);
    void applyCursor();
    void invalidate();                // full redraw, on a worker thread
    void markDirty(const Rect& area); // partial redraw, coalesced
    void flushDirty();
    void startRender();
    void collectRender();
    void cancelRender();
    bool containsLayer(const Layer* layer) const;
    // The event as the tool sees it: moved onto the snapped point when snapping applies.
    QMouseEvent snapped(const QMouseEvent& event);
    bool toolSnaps() const;
    RasterImage raster(const QString& source);

    std::unique_ptr<Map> map_;
    Viewport viewport_;
    Colour background_ = 0xFFFFFF;

    std::map<int, std::unique_ptr<Tool>> tools_;
    int currentTool_ = tool::Select;
    int editingMode_ = editmode::Features;
    Layer* insertionLayer_ = nullptr;
    int mousePointer_ = pointer::Default;
    QString mouseIcon_;
    QCursor iconCursor_;
    Snapper snapper_;
    int snapPixels_ = 8;
    std::optional<Point> snapMark_;
    std::map<QString, RasterImage> rasters_; // read once per map set

    // The cached drawing of the layers and the viewport it was drawn for.
    QImage cache_;
    Viewport cacheViewport_;
    bool cacheValid_ = false;
    Rect dirty_;
    QTimer renderTimer_;
    QTimer dirtyTimer_;

    std::unique_ptr<QThreadPool> pool_;
    std::shared_ptr<RenderJob> job_;
    std::mutex doneMutex_;
    std::shared_ptr<RenderJob> done_;
};

} // namespace carto
