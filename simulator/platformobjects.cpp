#include "platformobjects.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDomDocument>
#include <QFile>
#include <QRegularExpression>
#include <QTextStream>
#include <QTimer>

#include <iostream>

namespace {

constexpr int s_nVersionCharacters = 20;
constexpr int s_nRefused = -1;

/** The interface of each object, by path. */
const QMap<QString, QString> s_oInterfaces = {{"/", "com.quen.OVIK"},
                                              {"/MainOSInfo", "com.quen.OVIK.PartitionInfo"},
                                              {"/NetworkManager", "com.quen.OVIK.NetworkManager"},
                                              {"/ServiceManager", "com.quen.OVIK.ServiceManager"},
                                              {"/SystemInfo", "com.quen.OVIK.SystemInfo"}};

/** Returns the child element of that kind and name; null when there is none. */
QDomElement childNamed(const QDomElement& oParent, const QString& strKind, const QString& strName)
{
    QDomElement oChild = oParent.firstChildElement(strKind);
    while (!oChild.isNull() && oChild.attribute("name") != strName) {
        oChild = oChild.nextSiblingElement(strKind);
    }
    return oChild;
}

/** Returns the D-Bus types of a method's arguments in one direction, "in" or "out". */
QStringList typesOf(const QDomElement& oMethod, const QString& strDirection)
{
    QStringList oTypes;
    for (auto o = oMethod.firstChildElement(); !o.isNull(); o = o.nextSiblingElement()) {
        if (o.attribute("direction") == strDirection) {
            oTypes += o.attribute("type");
        }
    }
    return oTypes;
}

/** Returns the D-Bus signature of values that are to be sent. */
QString signatureOf(const QVariantList& oValues)
{
    QString strSignature;
    for (const QVariant& oValue : oValues) {
        QDBusArgument oArgument;
        oArgument.appendVariant(oValue);
        strSignature += oArgument.currentSignature();
    }
    return strSignature;
}

/** Returns the empty value of a basic type, an array of bytes or texts, or a structure of these. */
QVariant emptyValue(const QString& strType)
{
    static const QHash<QString, QVariant> s_oValues = {{"as", QStringList()},
                                                       {"ay", QByteArray()},
                                                       {"b", false},
                                                       {"d", 0.0},
                                                       {"i", 0},
                                                       {"n", QVariant::fromValue(qint16(0))},
                                                       {"o", QVariant::fromValue(QDBusObjectPath("/"))},
                                                       {"q", QVariant::fromValue(quint16(0))},
                                                       {"s", QString("")},
                                                       {"t", quint64(0)},
                                                       {"u", 0U},
                                                       {"x", qint64(0)},
                                                       {"y", QVariant::fromValue(uchar(0))}};
    static const QRegularExpression s_oMember(QStringLiteral("a?[a-z]"));
    if (!strType.startsWith('(')) {
        return s_oValues.value(strType);
    }
    QDBusArgument oStructure;
    oStructure.beginStructure();
    for (auto it = s_oMember.globalMatch(strType); it.hasNext();) {
        oStructure.appendVariant(emptyValue(it.next().captured()));
    }
    oStructure.endStructure();
    return QVariant::fromValue(oStructure);
}

/** Returns an error reply for what is not as described, and reports it on standard error. */
QDBusMessage complaint(const QDBusMessage& oCall, QDBusError::ErrorType eError, const QString& strText)
{
    if (!oCall.interface().isEmpty()) { // q_autostart has none, and exists nowhere
        std::cerr << "ovik-simulator: " << qPrintable(oCall.path()) << ' ' << qPrintable(oCall.member())
                  << ": " << qPrintable(strText) << std::endl;
    }
    return oCall.createErrorReply(eError, strText);
}

} // namespace

PlatformObjects::PlatformObjects(World& oWorld, int nLeaseDelayMs)
    : m_oWorld(oWorld), m_oNetwork(nLeaseDelayMs)
{
    QFile oFile(":/com.quen.OVIK.xml");
    QDomDocument oDocument;
    if (!oFile.open(QIODevice::ReadOnly) || !oDocument.setContent(&oFile)) {
        qFatal("no description of the interfaces");
    }
    m_oDescription = oDocument.documentElement();
    addAnswers();
}

void PlatformObjects::addAnswers()
{
    const QVariantList oMainInfo = {2, 21, 11, 26};
    const QVariantList oSystemInfo = {21, 11, 26, "\1\2\3", "PLC07", 0x10, 0x20, "QN", 7};
    m_oAnswers = {
        {"/MainOSInfo info",
         [this, oMainInfo](const auto&) { return record(QVariantList(oMainInfo) << m_oVersion); }},
        {"/NetworkManager applyNewConfiguration", [this](const auto&) { return m_oNetwork.apply(), 0; }},
        {"/NetworkManager getConfigJSON", [this](const auto&) { return json(m_oNetwork.toJSON()); }},
        {"/NetworkManager getInterfaceConfig",
         [this](const auto& o) { return json(m_oNetwork.interfaceJSON(o[0].toString())); }},
        {"/NetworkManager setInterfaceConfigJSON",
         [this](const auto& o) {
             const QString strName = o[0].toString();
             return isKnown(strName) && m_oNetwork.merge(strName, o[1].toString()) ? 0 : s_nRefused;
         }},
        {"/ServiceManager disable",
         [this](const auto& o) { return m_oEnabledServices.removeAll(o[0].toString()), 0; }},
        {"/ServiceManager enable",
         [this](const auto& o) { return m_oEnabledServices.append(o[0].toString()), 0; }},
        {"/ServiceManager enabled",
         [this](const auto& o) { return m_oEnabledServices.contains(o[0].toString()); }},
        {"/SystemInfo info", [this, oSystemInfo](const auto&) { return record(oSystemInfo); }},
    };
}

void PlatformObjects::setVersion(const QString& strVersion)
{
    m_oVersion = strVersion.toLatin1().leftJustified(s_nVersionCharacters, '\0', true);
}

QDomElement PlatformObjects::interfaceAt(const QString& strPath) const
{
    return childNamed(m_oDescription, "interface", s_oInterfaces.value(strPath));
}

/** Returns the description of the called method; null if the object has no such method. */
QDomElement PlatformObjects::methodOf(const QDBusMessage& oCall) const
{
    const QDomElement oMethod = childNamed(interfaceAt(oCall.path()), "method", oCall.member());
    const QString strInterface = oCall.interface();
    const bool bHere = strInterface.isEmpty() || strInterface == s_oInterfaces.value(oCall.path());
    return bHere && oCall.signature() == typesOf(oMethod, "in").join(QString()) ? oMethod : QDomElement();
}

QString PlatformObjects::introspect(const QString& strPath) const
{
    QString strXML;
    QTextStream oStream(&strXML);
    interfaceAt(strPath).save(oStream, 1);
    for (const QString& strObject : s_oInterfaces.keys()) {
        if (strPath == "/" && strObject != strPath) {
            oStream << QStringLiteral("<node name=\"%1\"/>\n").arg(strObject.mid(1));
        }
    }
    return strXML;
}

bool PlatformObjects::handleMessage(const QDBusMessage& oCall, const QDBusConnection& oConnection)
{
    const bool bNoRoot = m_oWorld.is("root-late") && oCall.path() == "/";
    if (bNoRoot || !s_oInterfaces.contains(oCall.path())) {
        const QString strText = QStringLiteral("No such object path '%1'").arg(oCall.path());
        return oConnection.send(complaint(oCall, QDBusError::UnknownObject, strText));
    }
    if (oCall.interface().startsWith("org.freedesktop.DBus.")) {
        return false; // Qt answers introspection
    }
    m_oWorld.noteCall(oCall);
    if (!m_oWorld.is("slow")) {
        answer(oCall, oConnection);
        return true;
    }
    // By name: a connection object would keep it open when the service has to leave the bus.
    const QString strConnection = oConnection.name();
    QTimer::singleShot(m_oWorld.number(), this, [=] { QDBusConnection(strConnection).send(replyTo(oCall)); });
    return true;
}

void PlatformObjects::answer(const QDBusMessage& oCall, const QDBusConnection& oConnection)
{
    if (m_oWorld.concerns("errors", oCall.member())) {
        oConnection.send(oCall.createErrorReply("com.quen.OVIK.Error.Failed", "Simulated failure"));
    } else if (m_oWorld.concerns("refuses", oCall.member()) &&
               typesOf(methodOf(oCall), "out") == QStringList("i")) {
        oConnection.send(oCall.createReply(s_nRefused));
    } else if (m_oWorld.concerns("vanishes", oCall.member())) {
        emit vanishing();
    } else if (m_oWorld.is("wrong-types") && m_oWorld.argument().isEmpty()) {
        oConnection.send(oCall.createReply(QStringList("of a type that no member replies with")));
    } else if (!m_oWorld.concerns("silent", oCall.member())) {
        oConnection.send(replyTo(oCall));
    }
}

/** Carries out the call and returns the reply of a healthy service. */
QDBusMessage PlatformObjects::replyTo(const QDBusMessage& oCall)
{
    const QDomElement oMethod = methodOf(oCall);
    if (oMethod.isNull()) {
        return complaint(oCall, QDBusError::UnknownMethod,
                         QStringLiteral("No such method '%1'").arg(oCall.member()));
    }
    const QVariantList oArguments = oCall.arguments();
    if (oCall.member() == "getInterfaceConfig" && !isKnown(oArguments[0].toString())) {
        return oCall.createErrorReply(
            "com.quen.OVIK.Error.UnknownInterface",
            QStringLiteral("No such network interface: %1").arg(oArguments[0].toString()));
    }
    const auto fnAnswer = m_oAnswers.value(oCall.path() + QLatin1Char(' ') + oCall.member());
    QVariantList oValues;
    for (const QString& strType : typesOf(oMethod, "out")) {
        oValues += fnAnswer ? fnAnswer(oArguments) : emptyValue(strType);
    }
    const QString strSignature = signatureOf(oValues);
    const QString strDescribed = typesOf(oMethod, "out").join(QString());
    if (strSignature != strDescribed) {
        return complaint(oCall, QDBusError::InvalidSignature,
                         QStringLiteral("The answer has the signature '%1', described is '%2'")
                             .arg(strSignature, strDescribed));
    }
    return oCall.createReply(oValues);
}

bool PlatformObjects::isKnown(const QString& strInterface)
{
    return !m_oNetwork.interfaceJSON(strInterface).isEmpty() &&
           !m_oWorld.concerns("unknown-interface", strInterface);
}

/** Returns the text as the present world alters it. */
QVariant PlatformObjects::json(const QString& strJSON)
{
    if (m_oWorld.is("malformed-json")) {
        return m_oWorld.argument().isEmpty() ? strJSON.left(strJSON.size() / 2) : m_oWorld.argument();
    }
    if (m_oWorld.is("wrong-types")) {
        return QStringLiteral(
            R"({ "version" : "1", "name" : "eth0", "dhcp" : "no", "ip_address" : 3232235796, )"
            R"("interfaces" : [ { "name" : 0 } ] })");
    }
    return strJSON;
}

/** Returns a D-Bus structure of bytes and byte arrays, the arrays as long as the present world wants them. */
QVariant PlatformObjects::record(const QVariantList& oFields)
{
    const bool bResized = m_oWorld.is("short-records");
    QDBusArgument oRecord;
    oRecord.beginStructure();
    for (const QVariant& oField : oFields) {
        if (oField.userType() == QMetaType::Int) {
            oRecord << static_cast<uchar>(oField.toInt());
            continue;
        }
        const QByteArray oBytes = oField.toByteArray();
        oRecord << (bResized ? oBytes.leftJustified(m_oWorld.number(), '\xff', true) : oBytes);
    }
    oRecord.endStructure();
    return QVariant::fromValue(oRecord);
}
