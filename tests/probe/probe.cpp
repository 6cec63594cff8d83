#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QBuffer>
#include <QComboBox>
#include <QGenericPlugin>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPaintEvent>
#include <QPixmapCache>
#include <malloc.h>
#include <mutex>
#include <unordered_set>

extern Q_CORE_EXPORT quintptr qtHookData[]; // Qt's hooks for tools of this kind

namespace {

constexpr char s_szPainted[] = "painted";
constexpr int s_nAddHook = 3; // their places never change
constexpr int s_nRemoveHook = 4;

/** All QObjects of all threads that have been made since the probe was loaded. */
struct sLiving
{
    std::mutex oMutex;
    std::unordered_set<QObject*> oObjects;
};

sLiving& living()
{
    static auto& s_oLiving = *new sLiving; // outlives the last QObject
    return s_oLiving;
}

void onBorn(QObject* pObject)
{
    const std::lock_guard<std::mutex> oGuard(living().oMutex);
    living().oObjects.insert(pObject);
}

void onDied(QObject* pObject)
{
    const std::lock_guard<std::mutex> oGuard(living().oMutex);
    living().oObjects.erase(pObject);
}

QByteArray countAll()
{
    QPixmapCache::clear();   // has room for 10 MiB, which fill by and by
    QApplication::desktop(); // is made when it is needed first and kept
    const std::lock_guard<std::mutex> oGuard(living().oMutex);
    int nTimers = 0;
    for (QObject* pObject :
         living().oObjects) { // possibly one of another thread that is dying: only asked for
        nTimers += QAbstractEventDispatcher::instance()->registeredTimers(pObject).size();
    }
    const struct mallinfo2 oHeap = mallinfo2();
    const QJsonObject oCounts{{"objects", static_cast<qint64>(living().oObjects.size())},
                              {"timers", nTimers},
                              {"widgets", QApplication::allWidgets().size()},
                              {"topLevels", QApplication::topLevelWidgets().size()},
                              {"heap", static_cast<qint64>(oHeap.uordblks + oHeap.hblkhd)}};
    return QJsonDocument(oCounts).toJson(QJsonDocument::Compact) + '\n';
}

QJsonArray toJson(const QRect& oRect)
{
    return {oRect.x(), oRect.y(), oRect.width(), oRect.height()};
}

QJsonObject describe(QWidget* pWidget)
{
    const QWidget* pWindow = pWidget->window();
    QJsonObject oJson{{"name", pWidget->objectName()},
                      {"class", pWidget->metaObject()->className()},
                      {"parent", pWidget->parentWidget() ? pWidget->parentWidget()->objectName() : QString()},
                      {"visible", pWidget->isVisible()},
                      {"reachable", pWidget->visibleRegion().intersects(
                                        QRect(0, pWidget->height() / 2, pWidget->width(), 1))},
                      {"rect", toJson(QRect(pWidget->mapToGlobal(QPoint()), pWidget->size()))},
                      {"minimum", toJson(QRect(QPoint(), pWidget->minimumSizeHint()))},
                      {"flags", static_cast<int>(pWindow->windowFlags())},
                      {"font", pWidget->font().toString()},
                      {"color", pWidget->palette().color(QPalette::WindowText).name()},
                      {"enabled", pWidget->isEnabled()},
                      {"focus", pWidget->hasFocus()},
                      {"title", pWidget->windowTitle()},
                      {s_szPainted, toJson(pWidget->property(s_szPainted).toRect())},
                      {"hints", static_cast<int>(pWidget->inputMethodHints())}};
    pWidget->setProperty(s_szPainted, QVariant());
    for (const char* szProperty : {"text", "currentText", "checked"}) { // of fields and buttons
        if (pWidget->metaObject()->indexOfProperty(szProperty) >= 0) {
            oJson[szProperty] = QJsonValue::fromVariant(pWidget->property(szProperty));
        }
    }
    if (const auto* pComboBox = qobject_cast<const QComboBox*>(pWidget)) {
        oJson["items"] = pComboBox->count();
    }
    if (const auto* pLabel = qobject_cast<const QLabel*>(pWidget)) {
        oJson["buddy"] = pLabel->buddy() ? pLabel->buddy()->objectName() : QString();
        oJson["alignment"] = static_cast<int>(pLabel->alignment());
        oJson["wraps"] = pLabel->wordWrap();
        oJson["plain"] = pLabel->textFormat() == Qt::PlainText;
    }
    return oJson;
}

QByteArray describeAll()
{
    QJsonArray oAll;
    const QWidgetList oTopLevels = QApplication::topLevelWidgets();
    for (QWidget* pTopLevel : oTopLevels) {
        if (pTopLevel->parentWidget()) {
            continue; // a dialog, which is told with its parent's children
        }
        oAll.append(describe(pTopLevel));
        const QList<QWidget*> oChildren = pTopLevel->findChildren<QWidget*>();
        for (QWidget* pChild : oChildren) {
            oAll.append(describe(pChild));
        }
    }
    return QJsonDocument(oAll).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray grab(const QString& strName)
{
    const QWidgetList oWidgets = QApplication::allWidgets();
    for (QWidget* pWidget : oWidgets) {
        if (pWidget->objectName() == strName) {
            QByteArray oBytes;
            QBuffer oBuffer(&oBytes);
            pWidget->grab().save(&oBuffer, "PNG");
            return oBytes.toBase64() + '\n';
        }
    }
    return "\n";
}

} // namespace

/** Answers the line "count" on its local socket with numbers of what is alive in the program that it is
 * loaded into, its timers that run and the bytes of heap in use; "grab NAME" with a picture of that widget as
 * it paints itself, PNG in Base64; any other line with a description of all its widgets, the part of each
 * that was painted since the last answer included. */
class Probe : public QObject
{
    Q_OBJECT

public:
    explicit Probe(const QString& strPath)
    {
        qtHookData[s_nAddHook] = reinterpret_cast<quintptr>(&onBorn);
        qtHookData[s_nRemoveHook] = reinterpret_cast<quintptr>(&onDied);
        connect(&m_oServer, SIGNAL(newConnection()), this, SLOT(onNewConnection()));
        m_oServer.listen(strPath);
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override
    {
        if (pEvent->type() == QEvent::Paint) {
            const auto* pWidget = qobject_cast<QWidget*>(pWatched);
            const QRect oRect = static_cast<QPaintEvent*>(pEvent)->rect();
            const QRect oPainted = oRect.translated(pWidget ? pWidget->mapToGlobal(QPoint()) : QPoint());
            pWatched->setProperty(s_szPainted, oPainted | pWatched->property(s_szPainted).toRect());
        }
        return false;
    }

private slots:
    void onNewConnection()
    {
        connect(m_oServer.nextPendingConnection(), SIGNAL(readyRead()), this, SLOT(onReadyRead()));
    }

    void onReadyRead()
    {
        auto* pSocket = static_cast<QLocalSocket*>(sender());
        while (pSocket->canReadLine()) {
            const QByteArray oLine = pSocket->readLine().trimmed();
            if (oLine.startsWith("grab ")) {
                pSocket->write(grab(oLine.mid(5)));
            } else {
                pSocket->write(oLine == "count" ? countAll() : describeAll());
            }
        }
    }

private:
    QLocalServer m_oServer;
};

/** Loaded by Qt into the real program through QT_QPA_GENERIC_PLUGINS=probe:SOCKET, so that tests can look at
 * widgets. */
class ProbePlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "probe.json")

public:
    QObject* create(const QString& strName, const QString& strPath) override
    {
        Q_UNUSED(strName)
        return new Probe(strPath);
    }
};

#include "probe.moc"
