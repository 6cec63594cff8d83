#include <QApplication>
#include <QGenericPlugin>
#include <QPointer>
#include <QScrollArea>
#include <QSocketNotifier>
#include <QWidget>
#include <QWindow>
#include <cstdio>
#include <ctime>
#include <unistd.h>
#include <valgrind/callgrind.h>

// Through these Qt's own tests send events to a program, in place of a window system.
extern Q_GUI_EXPORT void qt_handleMouseEvent(QWindow*, const QPointF& oLocal, const QPointF& oGlobal,
                                             Qt::MouseButtons, Qt::MouseButton, QEvent::Type,
                                             Qt::KeyboardModifiers, int nTimestamp);

namespace {

qint64 now()
{
    timespec oNow{};
    clock_gettime(CLOCK_MONOTONIC, &oNow);
    return qint64(oNow.tv_sec) * 1000000000 + oNow.tv_nsec;
}

QWidget* find(const QString& strName)
{
    const QWidgetList oWidgets = QApplication::allWidgets();
    for (QWidget* pWidget : oWidgets) {
        if (pWidget->isVisible() &&
            (strName[0] == '=' ? pWidget->property("text").toString() == strName.mid(1)
                               : pWidget->objectName() == strName)) {
            return pWidget;
        }
    }
    return nullptr;
}

} // namespace

/**
 * Touches widgets of the program that it is loaded into, and takes the time until a widget has been painted.
 *
 * Reads orders of three words, ACTION ARGUMENT TARGET, from the descriptor it is given and answers each with
 * a line of the monotonic time in nanoseconds before and after: when TARGET has been painted and sent to the
 * display, or when the action has returned, if TARGET is "-". TARGET is an object name, a class, or NAME=TEXT
 * for a widget that shows the text. The first answer, without an order, is for the first paint.
 *
 *     await - TARGET     only wait
 *     press NAME TARGET  a finger comes down on the middle of the widget, or on the right end of NAME@
 *     move PIXELS TARGET the finger moves down by this many pixels
 *     lift - TARGET      the finger leaves
 *     tap NAME TARGET    press, and lift without delay
 *     find NAME -        the widget is scrolled to; the second time is 0 if there is none
 *     call SLOT TARGET   a slot of the main window
 *
 * Where a widget has no name, =TEXT stands for the first that shows the text.
 * Under callgrind each answer is also a dump of what has been counted since the order.
 */
class Stopwatch : public QObject
{
    Q_OBJECT

public:
    explicit Stopwatch(int nDescriptor)
        : m_nDescriptor(nDescriptor), m_notifier(nDescriptor, QSocketNotifier::Read)
    {
        connect(&m_notifier, SIGNAL(activated(int)), this, SLOT(readOrder()));
        arm("QWidget");
    }

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override
    {
        if (pEvent->type() == QEvent::Paint && isTarget(pWatched)) {
            qApp->removeEventFilter(this);
            // After what painting itself has posted: the frame buffer gets the picture that way.
            QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::LowEventPriority);
        }
        return false;
    }

    void customEvent(QEvent* /*pEvent*/) override { answer(); }

private slots:
    void readOrder()
    {
        char aText[256] = {};
        if (read(m_nDescriptor, aText, sizeof aText - 1) <= 0) {
            m_notifier.setEnabled(false);
            return;
        }
        const QStringList oWords = QString::fromUtf8(aText).trimmed().split(' ');
        CALLGRIND_ZERO_STATS;
        m_nBegin = now();
        if (oWords[2] != "-") {
            arm(oWords[2]);
        }
        act(oWords[0], oWords[1]);
        if (oWords[2] == "-") {
            answer(oWords[0] != "find" || find(oWords[1]));
        }
    }

private:
    void answer(bool bDone = true) const
    {
        const qint64 nEnd = bDone ? now() : 0;
        CALLGRIND_DUMP_STATS;
        dprintf(m_nDescriptor, "%lld %lld\n", static_cast<long long>(m_nBegin), static_cast<long long>(nEnd));
    }

    void arm(const QString& strTarget)
    {
        m_strTarget = strTarget.section('=', 0, 0);
        m_strText = strTarget.section('=', 1);
        qApp->installEventFilter(this);
    }

    bool isTarget(const QObject* pObject) const
    {
        return (pObject->objectName() == m_strTarget || pObject->inherits(m_strTarget.toLatin1())) &&
               (m_strText.isEmpty() || pObject->property("text").toString() == m_strText);
    }

    void act(const QString& strAction, const QString& strArgument)
    {
        if (strAction == "press" || strAction == "tap") {
            placeFinger(strArgument);
            touch(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
        } else if (strAction == "move") {
            m_oFinger.ry() += strArgument.toInt();
            touch(QEvent::MouseMove, Qt::LeftButton, Qt::NoButton);
        } else if (strAction == "find") {
            scrollTo(find(strArgument));
        } else if (strAction == "call") {
            QMetaObject::invokeMethod(find("toolButton")->window(), strArgument.toLatin1());
        }
        if (strAction == "lift" || strAction == "tap") {
            touch(QEvent::MouseButtonRelease, Qt::NoButton, Qt::LeftButton);
        }
    }

    void placeFinger(QString strName)
    {
        const bool bAtEnd = strName.endsWith('@');
        const QWidget* pWidget = find(strName.remove('@'));
        QPoint oPoint = pWidget->rect().center();
        if (bAtEnd) {
            oPoint.setX(pWidget->width() - pWidget->height() / 3);
        }
        m_oFinger = pWidget->mapToGlobal(oPoint);
        m_pWindow = pWidget->window()->windowHandle();
    }

    void touch(QEvent::Type eType, Qt::MouseButtons eButtons, Qt::MouseButton eButton)
    {
        if (m_pWindow) {
            qt_handleMouseEvent(m_pWindow, m_pWindow->mapFromGlobal(m_oFinger), m_oFinger, eButtons, eButton,
                                eType, Qt::NoModifier, 0);
        }
    }

    static void scrollTo(QWidget* pWidget)
    {
        for (QWidget* pParent = pWidget; pParent; pParent = pParent->parentWidget()) {
            if (auto* pArea = qobject_cast<QScrollArea*>(pParent)) {
                pArea->ensureWidgetVisible(pWidget);
            }
        }
    }

    int m_nDescriptor;
    QSocketNotifier m_notifier;
    qint64 m_nBegin = 0;
    QString m_strTarget;
    QString m_strText;
    QPoint m_oFinger;
    QPointer<QWindow> m_pWindow;
};

/** Loaded through QT_QPA_GENERIC_PLUGINS=stopwatch:DESCRIPTOR. */
class StopwatchPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "stopwatch.json")

public:
    QObject* create(const QString& strName, const QString& strDescriptor) override
    {
        Q_UNUSED(strName)
        return new Stopwatch(strDescriptor.toInt());
    }
};

#include "stopwatch.moc"
