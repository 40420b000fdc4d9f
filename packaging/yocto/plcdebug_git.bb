# The plug-in alone, for systems that are built from source with Yocto: a layer takes this file as
# recipes-automation/plcdebug/plcdebug_git.bb and needs wxwidgets (GTK 3, version 3.2) beside it.
SUMMARY = "PLC debugger plug-in for machine-control programs"
LICENSE = "MIT"
LIC_FILES_CHKSUM = "file://LICENSE;md5=483061657fab86cf735c1ca53984d2ce"

# Where this repository is kept, and what of it is built.
PLCDEBUG_REPOSITORY ?= "git://git.plcdebug.example/plcdebug.git;protocol=https;branch=main"
SRC_URI = "${PLCDEBUG_REPOSITORY}"
SRCREV ?= "${AUTOREV}"
S = "${WORKDIR}/git"

DEPENDS = "gtk+3 wxwidgets"
inherit cmake pkgconfig features_check
REQUIRED_DISTRO_FEATURES = "x11"
EXTRA_OECMAKE = "-DPLCDEBUG_PROGRAMS=OFF"

# Hosts load the libraries by names without a version.
SOLIBS = ".so"
FILES_SOLIBSDEV = ""
FILES:${PN} += "${datadir}/plcdebug"
