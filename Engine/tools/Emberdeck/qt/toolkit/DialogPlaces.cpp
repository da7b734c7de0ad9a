#include "qt/toolkit/DialogPlaces.h"

#include <algorithm>
#include <cstdio>

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QPointer>
#include <QScreen>
#include <QStyle>
#include <QTimer>

#include "qsnumber.h"

namespace
{

constexpr const char* c_szSection = "Places";

// What people come back to: by class, templates by their numbers.
constexpr const char* c_Names[] = {
    "FxPropertiesDialog",   // a key's or prefab's properties
    "FunctionCurveDialog",  // a curve
    "EditVectorDialog",     // a vector
    "SourceControlHistory", // what has become of a file
    "ChangeDescription",    // what a change is about
    "ManualWindow",         // the manual
    "QFileDialog",          // a file
    "template150",          // the types of effects
    "template167",          // the effects of another library
    "template184",          // find
};

// Empty: its place isn't kept.
std::string NameOf(const QDialog& dialog)
{
    for (const char* pszName : c_Names)
        if (dialog.objectName() == QLatin1String(pszName) ||
            QLatin1String(dialog.metaObject()->className()) == QLatin1String(pszName))
            return pszName;
    return std::string();
}

// Another of the kind that is open already, as the properties of a key under those of its prefab.
const QDialog* OtherOf(const QDialog& dialog, const std::string& sName)
{
    const QDialog* pOther = nullptr;
    for (const QWidget* pWidget : QApplication::topLevelWidgets())
        if (const auto* p = qobject_cast<const QDialog*>(pWidget);
            p && p != &dialog && p->isVisible() && NameOf(*p) == sName)
            pOther = p;
    return pOther;
}

bool IsSizable(const QDialog& dialog)
{
    return dialog.minimumSize() != dialog.maximumSize();
}

// What the window manager adds around a window; a guess before it has.
QMargins FrameOf(const QWidget& dialog)
{
    const QRect rcFrame = dialog.frameGeometry(), rc = dialog.geometry();
    const QMargins frame(rc.left() - rcFrame.left(), rc.top() - rcFrame.top(), rcFrame.right() - rc.right(),
                         rcFrame.bottom() - rc.bottom());
    if (frame.top() > 0)
        return frame;
    const int nEdge = 4;
    return QMargins(nEdge, dialog.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &dialog) + nEdge,
                    nEdge, nEdge);
}

// The screen that has most to do with a place: where its middle is, else the owner's.
QRect RoomFor(const QWidget& dialog, const QRect& rc)
{
    const QScreen* pScreen = QGuiApplication::screenAt(rc.center());
    if (!pScreen && dialog.parentWidget())
        pScreen = dialog.parentWidget()->screen();
    if (!pScreen)
        pScreen = QGuiApplication::primaryScreen();
    return pScreen ? pScreen->availableGeometry() : rc;
}

} // namespace

DialogPlaces::DialogPlaces(IProfile& profile) : m_Profile(profile)
{
    qApp->installEventFilter(this);
}

DialogPlaces::~DialogPlaces()
{
    qApp->removeEventFilter(this);
}

QRect DialogPlaces::FitInto(const QRect& rcFrame, const QRect& rcRoom)
{
    const QSize size = rcFrame.size().boundedTo(rcRoom.size());
    return QRect(std::clamp(rcFrame.left(), rcRoom.left(), rcRoom.left() + rcRoom.width() - size.width()),
                 std::clamp(rcFrame.top(), rcRoom.top(), rcRoom.top() + rcRoom.height() - size.height()),
                 size.width(), size.height());
}

QRect DialogPlaces::FitOnScreen(const QWidget& window, const QRect& rc)
{
    const QMargins frame = FrameOf(window);
    return FitInto(rc.marginsAdded(frame), RoomFor(window, rc)).marginsRemoved(frame);
}

bool DialogPlaces::ReadPlace(const std::string& sPlace, QRect& rc)
{
    int x = 0, y = 0, nWidth = 0, nHeight = 0;
    if (std::sscanf(sPlace.c_str(), "%6d %6d %6d %6d", &x, &y, &nWidth, &nHeight) != 4 ||
        std::min(nWidth, nHeight) <= 0)
        return false;
    rc = QRect(x, y, nWidth, nHeight);
    return true;
}

std::string DialogPlaces::WritePlace(const QRect& rc)
{
    return QSFormat("%d %d %d %d", rc.x(), rc.y(), rc.width(), rc.height());
}

bool DialogPlaces::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if ((pEvent->type() != QEvent::Show && pEvent->type() != QEvent::Hide) || pEvent->spontaneous())
        return false;
    auto* pDialog = qobject_cast<QDialog*>(pWatched);
    if (!pDialog || !pDialog->isWindow())
        return false;
    if (pEvent->type() == QEvent::Hide)
    {
        Keep(*pDialog);
        return false;
    }
    Restore(*pDialog);
    // Again with its frame.
    QTimer::singleShot(0, pDialog, [p = QPointer<QDialog>(pDialog)] { KeepOnScreen(*p); });
    return false;
}

void DialogPlaces::Restore(QDialog& dialog)
{
    const std::string sName = NameOf(dialog);
    const std::string sPlace = sName.empty() ? std::string() : m_Profile.GetString(c_szSection, sName);
    QRect rc;
    if (const QDialog* pOther = sName.empty() ? nullptr : OtherOf(dialog, sName))
    {
        // A step below and right of the one that it covers, whose title can be read then.
        const int nStep = FrameOf(*pOther).top();
        dialog.setGeometry(
            FitOnScreen(dialog, QRect(pOther->geometry().topLeft() + QPoint(nStep, nStep), dialog.size())));
    }
    else if (ReadPlace(sPlace, rc))
    {
        const QSize size = IsSizable(dialog) ? rc.size() : dialog.size();
        dialog.setGeometry(FitOnScreen(dialog, QRect(rc.topLeft(), size)));
    }
    else if (IsSizable(dialog))
    {
        // Where it stands is still the toolkit's to find.
        const QMargins frame = FrameOf(dialog);
        const QRect rcOwner =
            dialog.parentWidget() ? dialog.parentWidget()->window()->geometry() : dialog.geometry();
        const QSize room = RoomFor(dialog, rcOwner).marginsRemoved(frame).size();
        if (dialog.width() > room.width() || dialog.height() > room.height())
            dialog.resize(dialog.size().boundedTo(room));
    }
}

void DialogPlaces::KeepOnScreen(QWidget& window)
{
    if (!window.isVisible() || window.isMaximized() || window.isFullScreen())
        return;
    const QRect rc = FitOnScreen(window, window.geometry());
    if (rc != window.geometry())
        window.setGeometry(rc);
}

void DialogPlaces::Keep(const QDialog& dialog)
{
    const std::string sName = NameOf(dialog);
    if (sName.empty() || dialog.isMaximized() || dialog.isMinimized() || OtherOf(dialog, sName))
        return;
    const std::string sPlace = WritePlace(dialog.geometry());
    if (m_Profile.GetString(c_szSection, sName) != sPlace)
        m_Profile.WriteString(c_szSection, sName, sPlace);
}
