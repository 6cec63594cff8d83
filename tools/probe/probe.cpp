#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QAbstractItemView>
#include <QApplication>
#include <QBuffer>
#include <QGenericPlugin>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPixmapCache>
#include <malloc.h>
#include <mutex>
#include <unordered_set>

extern Q_CORE_EXPORT quintptr qtHookData[]; // Qt's hooks for tools like this

namespace {

constexpr int s_nAddHook = 3; // places that Qt guarantees
constexpr int s_nRemoveHook = 4;

// All QObjects of all threads that were created since the probe was loaded; they outlive the last QObject.
auto& g_oMutex = *new std::mutex;
auto& g_oLiving = *new std::unordered_set<QObject*>;

void onBorn(QObject* pObject)
{
    const std::lock_guard<std::mutex> oGuard(g_oMutex);
    g_oLiving.insert(pObject);
}

void onDied(QObject* pObject)
{
    const std::lock_guard<std::mutex> oGuard(g_oMutex);
    g_oLiving.erase(pObject);
}

QByteArray countAll()
{
    QPixmapCache::clear(); // grows up to 10 MiB
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QApplication::desktop(); // created on first use
#endif
    const std::lock_guard<std::mutex> oGuard(g_oMutex);
    int nTimers = 0;
    for (QObject* pObject : g_oLiving) { // one of another thread may be dying: not dereferenced
        nTimers += static_cast<int>(QAbstractEventDispatcher::instance()->registeredTimers(pObject).size());
    }
    const struct mallinfo2 oHeap = mallinfo2();
    const QJsonObject oCounts{{"objects", static_cast<qint64>(g_oLiving.size())},
                              {"timers", nTimers},
                              {"heap", static_cast<qint64>(oHeap.uordblks + oHeap.hblkhd)}};
    return QJsonDocument(oCounts).toJson(QJsonDocument::Compact) + '\n';
}

QJsonArray toJson(const QRect& oRect)
{
    return {oRect.x(), oRect.y(), oRect.width(), oRect.height()};
}

// The texts of the entries that are on screen, with their rectangles.
QJsonObject describeEntries(const QAbstractItemView& oView)
{
    QJsonObject oEntries;
    const QAbstractItemModel* pModel = oView.isVisible() ? oView.model() : nullptr;
    for (int nRow = 0; pModel && nRow < pModel->rowCount(); ++nRow) {
        for (int nColumn = 0; nColumn < pModel->columnCount(); ++nColumn) {
            const QModelIndex oIndex = pModel->index(nRow, nColumn);
            const QRect oRect = oView.visualRect(oIndex) & oView.viewport()->rect();
            if (!oRect.isEmpty()) {
                const QPoint oOrigin = oView.viewport()->mapToGlobal(QPoint());
                oEntries[oIndex.data().toString()] = toJson(oRect.translated(oOrigin));
            }
        }
    }
    return oEntries;
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
                      {"flags", static_cast<int>(pWindow->windowFlags())}};
    for (const char* szProperty : {"text", "currentText", "checked"}) { // of fields and buttons
        if (pWidget->metaObject()->indexOfProperty(szProperty) >= 0) {
            oJson[szProperty] = QJsonValue::fromVariant(pWidget->property(szProperty));
        }
    }
    if (const auto* pButton = qobject_cast<const QAbstractButton*>(pWidget)) {
        oJson["icon"] = !pButton->icon().isNull();
    }
    if (const auto* pView = qobject_cast<const QAbstractItemView*>(pWidget)) {
        oJson["entries"] = describeEntries(*pView);
    }
    if (const auto* pLabel = qobject_cast<const QLabel*>(pWidget)) {
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
            continue; // a dialog, listed with its parent's children
        }
        const QWidgetList oWidgets = QWidgetList{pTopLevel} + pTopLevel->findChildren<QWidget*>();
        for (QWidget* pWidget : oWidgets) {
            oAll.append(describe(pWidget));
        }
    }
    return QJsonDocument(oAll).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray grab(const QString& strName)
{
    QByteArray oBytes;
    const QWidgetList oWidgets = QApplication::allWidgets();
    for (QWidget* pWidget : oWidgets) {
        if (pWidget->objectName() == strName && oBytes.isEmpty()) {
            QBuffer oBuffer(&oBytes);
            pWidget->grab().save(&oBuffer, "PNG");
        }
    }
    return oBytes.toBase64() + '\n';
}

} // namespace

/**
 * Loaded by Qt into the real program with QT_QPA_GENERIC_PLUGINS=probe:SOCKET. Answers each line on the local
 * socket with one line: "count" with the number of live objects, running timers and bytes of heap, in JSON;
 * "grab NAME" with a picture of that widget as it paints itself, PNG in Base64; any other with all widgets,
 * in JSON.
 */
class ProbePlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "probe.json")

public:
    QObject* create(const QString& /*strName*/, const QString& strPath) override
    {
        qtHookData[s_nAddHook] = reinterpret_cast<quintptr>(&onBorn);
        qtHookData[s_nRemoveHook] = reinterpret_cast<quintptr>(&onDied);
        auto* pServer = new QLocalServer;
        connect(pServer, &QLocalServer::newConnection, pServer, [pServer] {
            QLocalSocket* pSocket = pServer->nextPendingConnection();
            connect(pSocket, &QLocalSocket::readyRead, pSocket, [pSocket] { answer(*pSocket); });
        });
        pServer->listen(strPath);
        return pServer;
    }

private:
    static void answer(QLocalSocket& oSocket)
    {
        while (oSocket.canReadLine()) {
            const QByteArray oLine = oSocket.readLine().trimmed();
            if (oLine.startsWith("grab ")) {
                oSocket.write(grab(oLine.mid(5)));
            } else {
                oSocket.write(oLine == "count" ? countAll() : describeAll());
            }
        }
    }
};

#include "probe.moc"
