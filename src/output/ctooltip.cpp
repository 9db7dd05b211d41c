#include "output/ctooltip.h"

#include "carto/model/colour.h"

#include <QApplication>
#include <QCursor>
#include <QEvent>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QRegularExpression>
#include <QScreen>
#include <QStyle>
#include <QTimer>

namespace veldra {

namespace {

constexpr qint32 kBitSysteme = qint32(0x80000000u);
constexpr qint32 kTexteBouton = qint32(0x80000012u);
constexpr qint32 kFondInfo = qint32(0x80000018u);
constexpr int kQueue = 10; // the balloon's tail
constexpr int kMarge = 8;
constexpr int kAffichageDefaut = 10000; // ms a tip stays when the system decides

bool styleValide(qint32 s) {
    return s == 0 || s == cToolTip::kToujours || s == cToolTip::kBallon ||
           s == (cToolTip::kBallon | cToolTip::kToujours);
}

// "|" breaks the line; a tip without a title is one line.
QString texteAffiche(const QString& texte, const QString& titre) {
    QString t = texte;
    t.replace(u'|', QStringLiteral("\r\n"));
    if (titre.isEmpty())
        t.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    return t;
}

} // namespace

qint32 couleurSysteme(qint32 couleur) {
    if (!(couleur & kBitSysteme))
        return couleur;
    const QPalette p = QApplication::palette();
    QColor c;
    switch (couleur & 0x7FFFFFFF) {
    case 5: // window
        c = p.color(QPalette::Base);
        break;
    case 8: // window text
        c = p.color(QPalette::Text);
        break;
    case 15: // button face
        c = p.color(QPalette::Button);
        break;
    case 16: // button shadow
        c = p.color(QPalette::Dark);
        break;
    case 18: // button text
        c = p.color(QPalette::ButtonText);
        break;
    case 23: // tooltip text
        c = p.color(QPalette::ToolTipText);
        break;
    case 24: // tooltip background
        c = p.color(QPalette::ToolTipBase);
        break;
    default:
        c = p.color(QPalette::Window);
        break;
    }
    return carto::fromQColor(c);
}

// The balloon's window, and the watch on its child: when to show and hide, and the child's
// tooltip taken over when a module changes it.
class Bulle : public QWidget {
public:
    explicit Bulle(cToolTip& tip)
        : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint), tip_(tip) {
        setObjectName(QStringLiteral("cToolTip"));
        setAttribute(Qt::WA_TranslucentBackground);
        setAttribute(Qt::WA_ShowWithoutActivating);
        attente_.setSingleShot(true);
        duree_.setSingleShot(true);
        connect(&attente_, &QTimer::timeout, this, [this] { tip_.montre(); });
        connect(&duree_, &QTimer::timeout, this, &QWidget::hide);
    }

    void surveille(QWidget& enfant) {
        enfant.installEventFilter(this);
        // A child destroyed first takes its tip off the screen; the tip lives on, empty.
        connect(&enfant, &QObject::destroyed, this, &QWidget::hide);
    }

    void arme() {
        if (tip_.HoverTime() >= 0)
            attente_.start(tip_.HoverTime());
    }

    void affiche(QPoint coin) {
        adjustSize();
        resize(sizeHint());
        move(coin);
        show();
        raise();
        duree_.start(tip_.PopupTime() >= 0 ? tip_.PopupTime() : kAffichageDefaut);
    }

    QSize sizeHint() const override {
        const QRect texte = rectTexte();
        const QRect titre = rectTitre();
        const int largeur = std::max(texte.width(), titre.width()) + 2 * kMarge;
        const int hauteur = texte.height() + titre.height() + 2 * kMarge + queue();
        return {std::max(largeur, 3 * kQueue), hauteur};
    }

protected:
    bool eventFilter(QObject* objet, QEvent* event) override {
        switch (event->type()) {
        case QEvent::ToolTip: // the plain tooltip never shows: the balloon does
            if (tip_.HoverTime() < 0)
                tip_.montre();
            return true;
        case QEvent::Enter:
            arme();
            return false;
        case QEvent::Leave:
        case QEvent::MouseButtonPress:
        case QEvent::Hide:
            attente_.stop();
            hide();
            return false;
        case QEvent::ToolTipChange:
            // A module changed the child's tooltip: the balloon says it instead.
            if (auto* w = qobject_cast<QWidget*>(objet); w && !w->toolTip().isEmpty()) {
                tip_.adopte(w->toolTip().trimmed());
                w->setToolTip(QString());
            }
            return false;
        default:
            return false;
        }
    }

    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const QColor fond = carto::toQColor(tip_.BackCol());
        const QColor texte = carto::toQColor(tip_.ForeCol());
        const QRectF corps = QRectF(rect()).adjusted(0.5, queue() + 0.5, -0.5, -0.5);
        QPainterPath contour;
        contour.addRoundedRect(corps, ballon() ? 6 : 0, ballon() ? 6 : 0);
        if (ballon()) {
            QPainterPath queuePath;
            const double x = tip_.Centered() ? width() / 2.0 : 2.0 * kQueue;
            queuePath.moveTo(x - kQueue / 2.0, corps.top() + 1);
            queuePath.lineTo(x, 0.5);
            queuePath.lineTo(x + kQueue / 2.0, corps.top() + 1);
            queuePath.closeSubpath();
            contour = contour.united(queuePath);
        }
        p.fillPath(contour, fond);
        p.setPen(QPen(texte.lighter(180).value() > 200 ? QColor(90, 90, 90) : texte, 1));
        p.drawPath(contour);
        p.setPen(texte);
        const QRect titre = rectTitre().translated(kMarge, kMarge + queue());
        if (!tip_.Title().isEmpty()) { // the icon goes with a title
            int x = titre.left();
            if (const QIcon i = icone(); !i.isNull()) {
                i.paint(&p, QRect(x, titre.top(), 16, 16));
                x += 20;
            }
            p.setFont(policeTitre());
            p.drawText(QRect(x, titre.top(), titre.width(), titre.height()),
                       Qt::AlignLeft | Qt::AlignVCenter, tip_.Title());
        }
        p.setFont(font());
        p.drawText(rectTexte().translated(kMarge, kMarge + queue() + titre.height()),
                   Qt::AlignLeft | Qt::AlignTop, lignes());
    }

private:
    bool ballon() const { return tip_.Style() & cToolTip::kBallon; }
    int queue() const { return ballon() ? kQueue : 0; }
    QString lignes() const {
        QString t = tip_.Text();
        return t.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    }
    QFont policeTitre() const {
        QFont f = font();
        f.setBold(true);
        return f;
    }
    QIcon icone() const {
        switch (tip_.Icon()) {
        case 1:
            return style()->standardIcon(QStyle::SP_MessageBoxInformation);
        case 2:
            return style()->standardIcon(QStyle::SP_MessageBoxWarning);
        case 3:
            return style()->standardIcon(QStyle::SP_MessageBoxCritical);
        default:
            return {};
        }
    }
    QRect rectTexte() const {
        return fontMetrics().boundingRect(QRect(0, 0, 360, 2000), Qt::TextWordWrap, lignes());
    }
    QRect rectTitre() const {
        if (tip_.Title().isEmpty())
            return {};
        const QFontMetrics m(policeTitre());
        const int icone = tip_.Icon() != 0 ? 20 : 0;
        return {0, 0, m.horizontalAdvance(tip_.Title()) + icone, std::max(18, m.height()) + 4};
    }

    cToolTip& tip_;
    QTimer attente_, duree_;
};

cToolTip::cToolTip() = default;

cToolTip::~cToolTip() = default;

quintptr cToolTip::Create(QWidget* Parent, const QString& Text, qint32 Style, bool Centered,
                          qint32 Icon, const QString& Title, qint32 ForeCol, qint32 BackCol,
                          qint32 HoverTime, qint32 PopupTime) {
    bulle_.reset();
    parent_ = Parent;
    if (!Parent || !styleValide(Style) || Icon < 0 || Icon > 3)
        return 0;
    style_ = Style;
    icon_ = Icon;
    centered_ = Centered;
    initialText_ = Text;
    initialTitle_ = Title;
    title_ = Title;
    text_ = texteAffiche(Text, Title);
    foreCol_ = couleurSysteme(ForeCol);
    backCol_ = couleurSysteme(BackCol);
    if (foreCol_ == backCol_) {
        foreCol_ = couleurSysteme(kTexteBouton);
        backCol_ = couleurSysteme(kFondInfo);
    }
    hoverTime_ = HoverTime;
    popupTime_ = PopupTime;
    bulle_ = std::make_unique<Bulle>(*this);
    bulle_->surveille(*Parent);
    return quintptr(bulle_.get());
}

QWidget* cToolTip::bulle() const {
    return bulle_.get();
}

void cToolTip::montre() {
    if (!bulle_ || !parent_ || !parent_->isVisible())
        return;
    // Centred under the tool, or under the pointer.
    const QSize taille = bulle_->sizeHint();
    QPoint coin;
    if (centered_) {
        const QPoint bas = parent_->mapToGlobal(QPoint(parent_->width() / 2, parent_->height()));
        coin = {bas.x() - taille.width() / 2, bas.y() + 2};
    } else {
        const QPoint pointe = parent_->rect().contains(parent_->mapFromGlobal(QCursor::pos()))
                                  ? QCursor::pos()
                                  : parent_->mapToGlobal(parent_->rect().center());
        coin = {pointe.x() - 2 * kQueue, pointe.y() + 18};
    }
    bulle_->affiche(coin);
}

void cToolTip::cache() {
    if (bulle_)
        bulle_->hide();
}

void cToolTip::adopte(const QString& texte) {
    text_ = texteAffiche(texte, title_);
}

QString cleBulle(const QWidget& enfant) {
    static const QRegularExpression membre(QStringLiteral("^(.+)_(\\d+)$"));
    const QString nom = enfant.objectName();
    const QRegularExpressionMatch m = membre.match(nom);
    if (m.hasMatch() && enfant.parentWidget() &&
        enfant.parentWidget()->objectName() == m.captured(1))
        return m.captured(1) + u'(' + m.captured(2) + u')';
    return nom;
}

Bulles creeBulles(QWidget& controle) {
    Bulles bulles;
    for (QWidget* enfant : controle.findChildren<QWidget*>()) {
        const QString texte = enfant->toolTip().trimmed();
        if (texte.isEmpty() || enfant->objectName().isEmpty())
            continue;
        auto tip = std::make_unique<cToolTip>();
        const bool boite = qobject_cast<QLineEdit*>(enfant) != nullptr;
        if (tip->Create(enfant, texte, cToolTip::kBallon | cToolTip::kToujours, boite, 1, QString(),
                        kTexteBouton, kFondInfo, -1, -1) == 0)
            continue;
        enfant->setToolTip(QString());
        bulles[cleBulle(*enfant)] = std::move(tip);
    }
    return bulles;
}

} // namespace veldra
