#pragma once

#include "ec/eckeyboardloader.h"

class QTranslator;

namespace Orvane::KeyboardTools {

/// A language that the labels are shown in.
struct LabelLanguage {
    QString name;
    const QTranslator* translator = nullptr; ///< null for the texts' own language
};

/// What is odd in a keyboard though it can be used: functions without a key, keys that do or show nothing,
/// numbers that collide, labels that will be cut. In the order of the file. A keyboard with holes, where
/// something could not be read, is told nothing about what may be in them.
QList<EC::KeyboardProblem> findOddities(
    const EC::s_ECKeyboardConfig& keyboard, const QList<LabelLanguage>& languages);

} // namespace Orvane::KeyboardTools
