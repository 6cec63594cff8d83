#include "rootobject.h"

#include "OVIKAdaptor.h"

RootObject::RootObject(World& oWorld, QObject* pParent) : SimulatedObject(oWorld, pParent)
{
    new OVIKAdaptor(this);
    new AutostartAdaptor(this);
}

void RootObject::refuseAutostart()
{
    refuse(QDBusError::errorString(QDBusError::UnknownMethod),
           QStringLiteral("No such method 'q_autostart'"));
}

QDBusObjectPath RootObject::answerNoImage()
{
    return answer([] { return QDBusObjectPath(QStringLiteral("/")); });
}

int RootObject::answerZero()
{
    return answer([] { return 0; });
}

QDBusObjectPath RootObject::checkImage(const QString& /*imageType*/)
{
    return answerNoImage();
}

int RootObject::clearTimeCounters(int /*which*/)
{
    return answerZero();
}

QDBusObjectPath RootObject::downloadImage(const QString& /*imageType*/, const QString& /*source*/,
                                          const QString& /*sourceMd5*/, bool /*checkMd5*/)
{
    return answerNoImage();
}

QString RootObject::dualBootMode()
{
    return answer([] { return QString(); });
}

QDBusObjectPath RootObject::formatImage(const QString& /*imageType*/)
{
    return answerNoImage();
}

int RootObject::getBlightCounter()
{
    return answerZero();
}

int RootObject::getScreenOrientation()
{
    return answerZero();
}

int RootObject::getSysCounter()
{
    return answerZero();
}

int RootObject::lockScreen(const QString& /*display*/)
{
    return answerZero();
}

int RootObject::lockScreenSupported()
{
    return answerZero();
}

void RootObject::mouseNotification(int /*bPlugged*/)
{
    answer([] {});
}

int RootObject::mouseStatus(const QString& /*display*/)
{
    return answerZero();
}

int RootObject::restartSystem()
{
    return answerZero();
}

int RootObject::restartSystemWithImage(int /*imageType*/)
{
    return answerZero();
}

int RootObject::setScreenOrientation(int /*angle*/)
{
    return answerZero();
}

int RootObject::unlockScreen(const QString& /*display*/)
{
    return answerZero();
}

QDBusObjectPath RootObject::uploadImage(const QString& /*imageType*/, const QString& /*destination*/,
                                        bool /*checkMd5*/)
{
    return answerNoImage();
}

QDBusObjectPath RootObject::uploadRawImage(const QString& /*imageType*/, const QString& /*destination*/,
                                           bool /*checkMd5*/)
{
    return answerNoImage();
}
