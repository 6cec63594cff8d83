#pragma once

#include <QStringList>
#include <QVariant>

/** Calls the platform service and waits; returns the first value of the reply, or none after an error. */
QVariant callService(const char* szPath, const char* szInterface, const char* szMember,
                     const QVariantList& oArguments = {});

/** Makes the calls with which the panel finds the service. */
void findService();

/** Returns the names of all interfaces but loopback, and reads the settings of each as the panel does. */
QStringList interfaceNames();

/** Returns address, mask and gateway of an interface, as the service reports them. */
QStringList addressesOf(const QString& strName);
