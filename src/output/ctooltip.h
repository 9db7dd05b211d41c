#pragma once
// cToolTip: one balloon tooltip attached to one child control, with a title and its icon,
// colours, centring and delays. The control gives one to every child that has a tooltip
// text when it starts, and clears the child's plain tooltip so that only the balloon shows.

#include <QPointer>
#include <QString>
#include <QWidget>
#include <map>
#include <memory>

namespace veldra {

class Bulle;

class cToolTip {
public:
    // Styles: 1 always shown, 64 balloon; Icon: 0 none, 1 information, 2 warning, 3 error.
    static constexpr qint32 kToujours = 1;
    static constexpr qint32 kBallon = 64;

    cToolTip();
    ~cToolTip();
    cToolTip(const cToolTip&) = delete;
    cToolTip& operator=(const cToolTip&) = delete;

    // Builds the tip of `Parent`; returns its window's handle, 0 when nothing was built (no
    // parent, a style other than 0, 1, 64, 65 or an icon other than 0 to 3). Every "|" of
    // `Text` breaks the line; without a title the tip is one line. Colours with the high bit
    // set are system colours; equal text and background colours fall back to the system's.
    // Times in milliseconds, -1 for the system's.
    quintptr Create(QWidget* Parent, const QString& Text, qint32 Style, bool Centered, qint32 Icon,
                    const QString& Title, qint32 ForeCol, qint32 BackCol, qint32 HoverTime,
                    qint32 PopupTime);

    qint32 BackCol() const { return backCol_; }
    bool Centered() const { return centered_; }
    qint32 ForeCol() const { return foreCol_; }
    qint32 HoverTime() const { return hoverTime_; }
    qint32 Icon() const { return icon_; }
    const QString& InitialText() const { return initialText_; }
    const QString& InitialTitle() const { return initialTitle_; }
    qint32 PopupTime() const { return popupTime_; }
    qint32 Style() const { return style_; }
    const QString& Text() const { return text_; }
    const QString& Title() const { return title_; }

    // The balloon, shown where the clerk would see it (tests, pictures), and hidden.
    QWidget* bulle() const;
    void montre();
    void cache();

private:
    friend class Bulle;
    void adopte(const QString& texte); // the child's tooltip changed after creation

    QPointer<QWidget> parent_;
    std::unique_ptr<Bulle> bulle_;
    qint32 backCol_ = 0, foreCol_ = 0, hoverTime_ = -1, popupTime_ = -1, icon_ = 0, style_ = 0;
    bool centered_ = false;
    QString text_, title_, initialText_, initialTitle_;
};

// A system colour (high bit set, index in the low bits) as plain RGB; others unchanged.
qint32 couleurSysteme(qint32 couleur);

// The key of a child in the tooltips' collection: its name, or for a member of a button
// array ("<array>_<index>" inside the container "<array>") "<array>(<index>)".
QString cleBulle(const QWidget& enfant);

using Bulles = std::map<QString, std::unique_ptr<cToolTip>>;
// One balloon for every child of `controle` whose tooltip text is not blank: style 65,
// centred for text boxes, the information icon, no title, the system's colours and times.
Bulles creeBulles(QWidget& controle);

} // namespace veldra
