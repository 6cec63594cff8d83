#include "keypadcontext.h"

#include <qpa/qplatforminputcontextplugin_p.h>

/** Loaded by Qt for QT_IM_MODULE=tarnixui-keypad. */
class KeypadPlugin : public QPlatformInputContextPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QPlatformInputContextFactoryInterface_iid FILE "keypad.json")

public:
    QPlatformInputContext* create(const QString& strKey, const QStringList& oParameters) override
    {
        Q_UNUSED(strKey)
        Q_UNUSED(oParameters)
        return new KeypadContext;
    }
};

#include "keypadplugin.moc"
