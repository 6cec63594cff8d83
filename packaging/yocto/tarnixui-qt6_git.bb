# A starting point for images made with Yocto and Qt 6. It has never been built. It needs the layer meta-qt6 and a release
# whose CMake is 3.25 or newer, and builds the source tree that it lies in.
SUMMARY = "Front panel of a PLC device"
LICENSE = "CLOSED"

inherit qt6-cmake externalsrc

EXTERNALSRC = "${THISDIR}/../.."
DEPENDS = "qtbase qtbase-native"
EXTRA_OECMAKE = "-DCMAKE_BUILD_TYPE=Release -DTARNIXUI_QT=6 -DTARNIXUI_TESTS=OFF -DTARNIXUI_KEYPAD=OFF"

RDEPENDS:${PN} = "bash qtbase-plugins"
RRECOMMENDS:${PN} = "liberation-fonts tzdata-posix"
FILES:${PN}-dev += "${datadir}/dbus-1/interfaces"
