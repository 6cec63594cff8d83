#include <QApplication>
#include <QGenericPlugin>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <ctime>

/**
 * Writes the monotonic time in nanoseconds to standard error when the first paint of the program is on the
 * screen, and ends the program after the given number of milliseconds (0: never).
 */
class FirstPaint : public QObject
{
    Q_OBJECT

public:
    explicit FirstPaint(int nMilliseconds) : m_nMilliseconds(nMilliseconds)
    {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override
    {
        if (pEvent->type() == QEvent::Paint && pWatched->isWidgetType()) {
            qApp->removeEventFilter(this);
            QMetaObject::invokeMethod(this, "onPainted", Qt::QueuedConnection);
        }
        return false;
    }

private slots:
    void onPainted()
    {
        timespec oNow{};
        clock_gettime(CLOCK_MONOTONIC, &oNow);
        std::fprintf(stderr, "painted %lld%09ld\n", static_cast<long long>(oNow.tv_sec), oNow.tv_nsec);
        if (m_nMilliseconds > 0) {
            QTimer::singleShot(m_nMilliseconds, qApp, SLOT(quit()));
        }
    }

private:
    int m_nMilliseconds;
};

/** Loaded through QT_QPA_GENERIC_PLUGINS=firstpaint:MILLISECONDS. */
class FirstPaintPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "firstpaint.json")

public:
    QObject* create(const QString& strName, const QString& strMilliseconds) override
    {
        Q_UNUSED(strName)
        return new FirstPaint(strMilliseconds.toInt());
    }
};

#include "firstpaint.moc"
