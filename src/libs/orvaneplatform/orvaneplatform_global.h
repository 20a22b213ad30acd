#pragma once

#include <QtCore/qglobal.h>

/// Marks what liborvaneplatform exports; everything without it stays inside the library.
#if defined(ORVANEPLATFORM_LIBRARY)
#define ORVANEPLATFORM_EXPORT Q_DECL_EXPORT
#else
#define ORVANEPLATFORM_EXPORT Q_DECL_IMPORT
#endif
