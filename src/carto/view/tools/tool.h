#pragma once
// A tool of a map view: what the mouse and the keyboard do on the map. The view forwards
// its input to the current tool after emitting its own notifications; only one tool is
// active at a time. A tool keeps its state in an explicit enum and draws what it is doing
// (rubber bands, handles) over the map in paintOverlay.

#include <QCursor>

class QKeyEvent;
class QMouseEvent;
class QPainter;

namespace carto {

class MapView;

class Tool {
public:
    explicit Tool(MapView& view) : view_(view) {}
    virtual ~Tool() = default;
    Tool(const Tool&) = delete;
    Tool& operator=(const Tool&) = delete;

    // Called when the tool stops being current: drops any work in progress.
    virtual void cancel() {}
    virtual void mousePress(QMouseEvent&) {}
    virtual void mouseMove(QMouseEvent&) {}
    virtual void mouseRelease(QMouseEvent&) {}
    virtual void mouseDoubleClick(QMouseEvent&) {}
    // True when the tool used the key.
    virtual bool keyPress(QKeyEvent&) { return false; }
    virtual void paintOverlay(QPainter&) const {}
    virtual QCursor cursor() const { return Qt::ArrowCursor; }

protected:
    MapView& view_;
};

} // namespace carto
