#pragma once

#include <QtCore/qglobal.h>

/// Marks what liborvaneecproxyclient exports; everything without it stays inside the library.
#if defined(ORVANEECPROXYCLIENT_LIBRARY)
#define ORVANEECPROXYCLIENT_EXPORT Q_DECL_EXPORT
#else
#define ORVANEECPROXYCLIENT_EXPORT Q_DECL_IMPORT
#endif
