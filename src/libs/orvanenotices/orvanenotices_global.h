#pragma once

#include <QtCore/qglobal.h>

/// Marks what liborvanenotices exports; everything without it stays inside the library.
#if defined(ORVANENOTICES_LIBRARY)
#define ORVANENOTICES_EXPORT Q_DECL_EXPORT
#else
#define ORVANENOTICES_EXPORT Q_DECL_IMPORT
#endif
