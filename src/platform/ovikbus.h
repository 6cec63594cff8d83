#pragma once

#include <QDBusConnection>

#include <functional>

/** Finds the bus that has the platform service. */
namespace ovikbus {

/** The service's name. */
constexpr char s_szService[] = "com.quen.OVIK";

/** The path of its root object. */
constexpr char s_szRootPath[] = "/";

/**
 * Connects to the system bus, or to the session bus if only that has the service or there is no system bus.
 *
 * Blocks up to 5 s for each call that it makes. Calls fnFound once when the service has replied, with the
 * connection that the search began with, even if the service is on another one. Steps and failures are
 * logged as warnings.
 *
 * Returns a connection that the caller owns. It may lack the service if only the system bus can be reached.
 * Returns null if no bus can be reached, or if a session bus can be reached but no bus has the service.
 */
QDBusConnection* connectToService(const std::function<void(const QDBusConnection&)>& fnFound);

} // namespace ovikbus
