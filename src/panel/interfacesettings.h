#pragma once

#include "network/networkinterfacedetails.h"

#include <QList>

/**
 * Reads the current settings of an interface from the platform service, through OVIKPlatform.
 *
 * Blocks until the service has answered.
 * @return empty texts if the platform client is not connected; after an error reply, and before the first
 * answer, what was read last, possibly of another interface
 */
sNetworkInterfaceDetails readInterfaceSettings(const QString& strName);

/**
 * Reads the settings of every interface that the operating system reports, in its order, without loopback and
 * CAN. Each has its name even if it could not be read.
 */
QList<sNetworkInterfaceDetails> readAllInterfaceSettings();

/**
 * Sends the addresses and the DHCP flag of the record to the platform service, for the interface that the
 * record names. A text that is no IPv4 address counts as 0.0.0.0.
 * @return what OVIKPlatform::SetNetworkSettings() returns; true also if the interface could not be selected
 */
bool writeInterfaceSettings(const sNetworkInterfaceDetails& oDetails);

/** Returns three interfaces that do not exist, eth0 to eth2, for development. */
QList<sNetworkInterfaceDetails> testInterfaceSettings();
