#pragma once
// img2Show: the picture of the photo viewer, stretched to the widget's size. A picture
// shown smaller than it is gets a smoothed copy at that size, made once per size; one
// shown larger is drawn from the visible part of the picture only, so a zoomed photo
// never costs a bitmap of its zoomed size.

#include <QImage>
#include <QWidget>

namespace veldra {

class VueImage : public QWidget {
    Q_OBJECT
public:
    explicit VueImage(QWidget* parent = nullptr);

    void setImage(const QImage& image);
    const QImage& image() const { return image_; }
    void vide();
    bool estVide() const { return image_.isNull(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage image_;
    QImage reduite_; // the picture at the widget's size, when that is smaller
};

} // namespace veldra
