#pragma once

#include <string>

/** Returns the text of a network-configuration document with nInterfaces interfaces that have all fields set.
 */
std::string configurationText(int nInterfaces);
